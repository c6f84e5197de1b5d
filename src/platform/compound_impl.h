#pragma once

// Inside of compound_file: the state an open file shares with its handles.
// Not for use outside the compound_* files.
//
// Neither side holds the file's contents. The writer spools every element's
// name and bytes to an unnamed scratch file as they come and keeps 17 bytes
// per element; closing lays the file out from the spool in one sequential
// pass. The reader keeps the allocation tables' sector lists and reads
// directory entries and stream bytes from the file when they are asked for.

#include <cstdint>
#include <cstdio>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/file_writer.h"
#include "platform/status.h"

namespace qb {
struct ElementInfo;
}

namespace qb::compound {

inline constexpr std::uint32_t kMaxRegSect = 0xFFFFFFFA;
inline constexpr std::uint32_t kDifSect = 0xFFFFFFFC;
inline constexpr std::uint32_t kFatSect = 0xFFFFFFFD;
inline constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
inline constexpr std::uint32_t kFreeSect = 0xFFFFFFFF;
inline constexpr std::uint32_t kNoStream = 0xFFFFFFFF;

inline constexpr std::uint8_t kTypeUnused = 0;
inline constexpr std::uint8_t kTypeStorage = 1;
inline constexpr std::uint8_t kTypeStream = 2;
inline constexpr std::uint8_t kTypeRoot = 5;

inline constexpr std::uint32_t kHeaderSize = 512;
inline constexpr std::uint32_t kDirEntrySize = 128;
inline constexpr std::uint32_t kNameBytes = 64;
inline constexpr std::uint32_t kMiniSectorSize = 64;
inline constexpr std::uint32_t kMiniStreamCutoff = 4096;
inline constexpr std::uint32_t kHeaderFatSlots = 109;

// Where an opened file's bytes come from.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t size() const = 0;
    // Reads `size` bytes at `offset`; bytes past the end read as zero.
    virtual Status read(std::uint64_t offset, void* buffer, std::size_t size) = 0;
};

// One directory entry of an opened file, decoded.
struct DirEntry {
    std::uint8_t type = kTypeUnused;
    std::u16string name;
    std::uint32_t left = kNoStream;
    std::uint32_t right = kNoStream;
    std::uint32_t child = kNoStream;
    std::uint32_t start = kEndOfChain;
    std::uint64_t size = 0;
};

// A read storage's children in name order, listed the first time they are
// asked for. A storage whose tree is in strict name order (every file we
// write) is searched by halving; any other gets a map by name key, the
// first of equal names winning.
struct Listing {
    std::vector<std::uint32_t> children;
    bool ordered = true;
    std::size_t cursor = 0;  // after the child found last by name
    bool keyed = false;
    std::unordered_map<std::u16string, std::uint32_t> byKey;
};

// One element being written: its name (64 bytes) and then its bytes lie in
// the spool from `spoolAt`. A storage's `size` is its index in `storages`.
struct Written {
    std::uint64_t spoolAt = 0;
    std::uint32_t size = 0;
    std::uint32_t next = kNoStream;  // the next sibling created
};

// A storage being written. Children created in name order (the usual case)
// need no lookup: a name after the last cannot repeat an earlier one. The
// first child out of order switches the storage to a map by name key.
struct WrittenStorage {
    std::uint32_t node = 0;
    std::uint32_t first = kNoStream;
    std::uint32_t last = kNoStream;
    std::u16string lastName;
    bool inOrder = true;
    std::unordered_map<std::u16string, std::uint32_t> byKey;
    // Worked out when the file is closed.
    std::vector<std::uint32_t> sorted;
    std::uint32_t descendants = 0;
    bool hasStorages = false;
};

class FileImpl {
  public:
    ~FileImpl();

    bool writable = false;
    std::string path;

    // Reading.
    std::unique_ptr<ByteSource> source;
    std::uint32_t sectorSize = 512;
    std::uint32_t sectorCount = 0;  // sectors after the header
    bool version3 = true;
    std::vector<std::uint32_t> fat;
    std::vector<std::uint32_t> dirSectors;
    std::uint32_t entryCount = 0;
    std::vector<std::uint32_t> miniFatSectors;
    std::uint64_t miniFatEntries = 0;
    std::vector<std::uint32_t> miniStreamSectors;
    std::uint64_t miniStreamSize = 0;
    std::vector<bool> reached;  // directory entries already placed in a tree
    std::unordered_map<std::uint32_t, Listing> listings;

    // Writing.
    std::unique_ptr<FileWriter> out;
    std::unique_ptr<FileWriter> spool;
    std::deque<Written> written;
    std::vector<std::uint8_t> writtenType;
    std::vector<WrittenStorage> storages;
    std::uint32_t spoolOwner = kNoStream;  // whose bytes end the spool
    bool closed = false;

    // Reader (compound_reader.cpp).
    Status load();
    Status entry(std::uint32_t index, DirEntry* out);
    // Only the type byte of an entry (unused for an entry not in use).
    Status entryType(std::uint32_t index, std::uint8_t* out);
    Status listChildren(std::uint32_t storage);
    // The sectors (or mini sectors) of a stream, checked against its size.
    Status streamChain(std::uint32_t node, const DirEntry& e, std::vector<std::uint32_t>* out);
    // Reads `size` bytes of a stream from `offset`, `chain` being its
    // sectors or mini sectors.
    Status readStream(const std::vector<std::uint32_t>& chain, bool mini, std::uint64_t offset,
                      std::uint8_t* buffer, std::size_t size);

    // Writer (compound_writer.cpp).
    Status addElement(std::uint32_t storage, std::u16string_view name, std::uint8_t type,
                      std::uint32_t* out);
    Status append(std::uint32_t node, const void* data, std::size_t size);
    Status writeOut();

    // Both: the child of `storage` with that name, or kNoStream.
    Status find(std::uint32_t storage, std::u16string_view name, std::uint32_t* out);
    // The children of a storage in name order.
    Status children(std::uint32_t storage, std::vector<std::uint32_t>* out);
    Status describe(std::uint32_t node, ElementInfo* out);
    std::uint8_t typeOf(std::uint32_t node);

  private:
    std::uint64_t entryOffset(std::uint32_t index) const;
    std::string elementName(std::uint32_t node);
    Status findRead(std::uint32_t storage, std::u16string_view name, std::uint32_t* out);
    Status findWritten(std::uint32_t storage, std::u16string_view name, std::uint32_t* out);
    Status writtenChildren(std::uint32_t storage, std::vector<std::uint32_t>* out);
    Status writtenName(std::uint32_t node, std::u16string* out);
};

}  // namespace qb::compound
