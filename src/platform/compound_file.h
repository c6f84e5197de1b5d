#pragma once

// Our reader and writer of compound files: storages and streams inside one
// file, as backups and archives use them. The byte layout is in
// docs/formats/compound.md.
//
// A created file spools what it is given to the disk and is laid out when it
// is closed; an opened file is only read, piece by piece as it is asked for,
// and every size and link in it is checked before it is trusted. Neither
// holds the file's contents in memory.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/status.h"

namespace qb {

namespace compound {
class FileImpl;
}

enum class ElementType : std::uint8_t { kStorage = 1, kStream = 2 };

struct ElementInfo {
    std::u16string name;
    ElementType type = ElementType::kStream;
    std::uint64_t size = 0;  // streams only
};

class CompoundStream;

// The elements of one storage, handed out one at a time in the container's
// name order (the order of its sibling tree).
class CompoundEnum {
  public:
    // Fills `out` and answers true, or answers false when none are left.
    bool next(ElementInfo* out);
    // Opens the stream last handed out by next(), as openStream() of its
    // name would, without looking the name up.
    Status openStream(CompoundStream* out);

  private:
    friend class CompoundStorage;
    std::shared_ptr<compound::FileImpl> file_;
    std::uint32_t storage_ = 0;
    std::vector<std::uint32_t> elements_;
    std::size_t at_ = 0;
};

// One stream, open for reading (its bytes are read from the file as they are
// asked for, a window at a time) or for writing (its bytes are appended).
class CompoundStream {
  public:
    CompoundStream() = default;
    CompoundStream(CompoundStream&&) noexcept = default;
    CompoundStream& operator=(CompoundStream&&) noexcept = default;

    // Reads up to `size` bytes at the current position; `got` answers how
    // many (0 at the end).
    Status read(void* buffer, std::size_t size, std::size_t* got);
    // Reads exactly `size` bytes, or fails naming the stream.
    Status readExact(void* buffer, std::size_t size);
    Status write(const void* data, std::size_t size);
    std::uint64_t size() const;
    // The bytes not yet read.
    std::uint64_t remaining() const;
    bool isOpen() const { return file_ != nullptr; }
    void release();

  private:
    friend class CompoundStorage;
    friend class CompoundEnum;
    Status openRead(const std::shared_ptr<compound::FileImpl>& file, std::uint32_t node);
    Status fill();

    std::shared_ptr<compound::FileImpl> file_;
    std::uint32_t node_ = 0;
    bool writable_ = false;
    // Read side: the stream's sectors (or mini sectors), and a window of its
    // bytes starting at `windowAt`; the buffers are kept for the next open.
    std::vector<std::uint32_t> chain_;
    bool mini_ = false;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
    std::uint64_t windowAt_ = 0;
    std::vector<std::uint8_t> window_;
};

// One storage of an open file. A handle: copies name the same storage.
class CompoundStorage {
  public:
    // Creating replaces an element of the same name.
    Status createStream(std::u16string_view name, CompoundStream* out);
    Status openStream(std::u16string_view name, CompoundStream* out);
    Status createStorage(std::u16string_view name, CompoundStorage* out);
    Status openStorage(std::u16string_view name, CompoundStorage* out);
    Status enumElements(CompoundEnum* out);
    bool isOpen() const { return file_ != nullptr; }
    void release() { file_.reset(); }

  private:
    friend class CompoundFile;
    friend class CompoundEnum;
    std::shared_ptr<compound::FileImpl> file_;
    std::uint32_t node_ = 0;
};

// The file and its root storage.
class CompoundFile {
  public:
    // Creates (or empties) the file at `path` for writing.
    static Status create(const std::string& path, std::unique_ptr<CompoundFile>* out);
    // Opens the file for reading; the header, the allocation tables and the
    // directory are checked here.
    static Status open(const std::string& path, std::unique_ptr<CompoundFile>* out);
    // The same, over bytes already in memory.
    static Status openBytes(std::vector<std::uint8_t> bytes, std::unique_ptr<CompoundFile>* out);

    // A created file that was not closed is written out here, quietly.
    ~CompoundFile();
    CompoundFile(const CompoundFile&) = delete;
    CompoundFile& operator=(const CompoundFile&) = delete;

    CompoundStorage root();
    // Writes a created file out and closes it; answers why a write failed.
    // Opened files just close.
    Status close();

  private:
    explicit CompoundFile(std::shared_ptr<compound::FileImpl> impl);
    std::shared_ptr<compound::FileImpl> impl_;
};

}  // namespace qb
