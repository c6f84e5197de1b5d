#pragma once

// Items of bytes made on a thread of their own and taken, in the order made,
// on the caller's: while the caller stores or writes one item, the next ones
// are being made. Items travel in a few chunks of about 128 KiB, so the two
// threads meet once per chunk rather than once per item, a thread is woken
// only when it waits, and what the pipe holds is bounded however many items
// pass through it (a single item larger than a chunk makes its chunk larger).

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace qb {

class ChunkPipe {
  public:
    ChunkPipe();
    // Stops the making thread and waits for it.
    ~ChunkPipe();
    ChunkPipe(const ChunkPipe&) = delete;
    ChunkPipe& operator=(const ChunkPipe&) = delete;

    // Runs `make` on a thread of its own; it hands its items over with put().
    // The pipe ends when `make` returns: what it did before returning (the
    // resources it let go of, the results it left) is seen by the caller
    // once next() has answered false.
    void start(std::function<void(ChunkPipe&)> make);

    // On the making thread: adds an item, with a number of the maker's
    // choosing. False once the caller wants no more: `make` should return.
    bool put(std::uint32_t tag, std::string_view bytes);

    // On the caller's thread: the next item, valid until the next call.
    // False at the end.
    bool next(std::uint32_t* tag, std::string_view* bytes);

    // Chunks handed over and not yet taken by the caller: a maker that
    // finds some waiting is ahead of the caller.
    int waiting() const;

  private:
    struct Shared;
    std::unique_ptr<Shared> shared_;
};

}  // namespace qb
