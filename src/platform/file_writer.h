#pragma once

// The one way this system writes a file the user asked for (exports,
// reports, backups, archives, list and note files): buffered, every write
// checked, and all or nothing. The bytes go to a temporary file beside the
// target, which is renamed over the target only when the file is complete;
// a writer that fails or is dropped before commit() removes its temporary
// file, so no half-written file ever carries the chosen name.
//
// A target that exists and is not a regular file (a device, a pipe) is
// written in place: there is nothing to rename over.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/status.h"

namespace qb {

class FileWriter {
  public:
    static constexpr std::size_t kDefaultBuffer = std::size_t{1} << 16;

    explicit FileWriter(std::string path, std::size_t bufferBytes = kDefaultBuffer);
    // Removes the temporary file when commit() has not succeeded.
    ~FileWriter();
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    // Creates the temporary file. The message names the target.
    Status open();
    // Instead of open(): a scratch file beside the target that never gets a
    // name (nothing is left behind whatever happens) and that can be read
    // back; commit() does not apply. Its writes count and fail like any
    // other, and its messages name the target too.
    Status openScratch();
    bool isOpen() const { return fd_ >= 0; }

    // Appends bytes. After the first failure every call answers that
    // failure again and writes nothing.
    Status write(const void* bytes, std::size_t count);
    Status write(std::string_view bytes) { return write(bytes.data(), bytes.size()); }
    // Cuts the file back to `size` bytes (no more than written so far).
    Status truncate(std::uint64_t size);
    // Overwrites bytes already written, at `offset`.
    Status writeAt(std::uint64_t offset, const void* bytes, std::size_t count);

    // Reads back bytes already written (buffered ones included).
    Status readAt(std::uint64_t offset, void* bytes, std::size_t count);

    // Writes what is buffered, closes the file and puts it in place.
    Status commit();
    // Drops the temporary file; the target stays as it was.
    void abandon();

    // Bytes written so far, buffered ones included.
    std::uint64_t size() const { return flushed_ + used_; }
    // The first failure, or ok.
    const Status& status() const { return status_; }
    const std::string& path() const { return path_; }

  private:
    Status flush();
    Status fail(const char* what, int error);

    std::string path_;
    std::string tempPath_;  // empty when writing in place
    std::size_t capacity_;
    char* buffer_ = nullptr;
    std::size_t used_ = 0;
    std::uint64_t flushed_ = 0;
    int fd_ = -1;
    Status status_;
};

// The test seam: makes the Nth system write of the process from now on fail
// with `error` (ENOSPC, EIO, ...); every FileWriter counts its writes to the
// disk, and putting a file in place (close and rename) counts as one more.
// nth 0 turns the fault off. QUILLARBOR_FAIL_WRITE=N:ENOSPC (or N:EIO) in
// the environment sets the same fault when the process starts, so that
// tests of the command line can use it.
void setWriteFault(std::uint64_t nth, int error);
// Writes counted since the fault was last set.
std::uint64_t writesCounted();
// Whether the fault has been hit since it was last set.
bool writeFaultHit();

}  // namespace qb
