#pragma once

// Inside of compound_file: the state an open file shares with its handles.
// Not for use outside the compound_* files.

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/file_writer.h"
#include "platform/status.h"

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
inline constexpr std::uint32_t kMiniSectorSize = 64;
inline constexpr std::uint32_t kMiniStreamCutoff = 4096;
inline constexpr std::uint32_t kHeaderFatSlots = 109;

struct Node {
    std::u16string name;
    std::uint8_t type = kTypeUnused;
    // As read from the directory.
    std::uint32_t left = kNoStream;
    std::uint32_t right = kNoStream;
    std::uint32_t child = kNoStream;
    std::uint32_t start = kEndOfChain;
    std::uint64_t size = 0;
    // A storage's children in name order, and by name key; a read storage
    // lists them the first time they are asked for.
    bool listed = false;
    std::vector<std::uint32_t> children;
    std::unordered_map<std::u16string, std::uint32_t> byKey;
    // A written stream's bytes; a replaced element is dropped.
    std::vector<std::uint8_t> data;
    bool dropped = false;
};

// Where an opened file's bytes come from.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t size() const = 0;
    // Reads `size` bytes at `offset`; bytes past the end read as zero.
    virtual Status read(std::uint64_t offset, void* buffer, std::size_t size) = 0;
};

class FileImpl {
  public:
    ~FileImpl();

    bool writable = false;
    std::string path;
    std::vector<Node> nodes;

    // Reading.
    std::unique_ptr<ByteSource> source;
    std::uint32_t sectorSize = 512;
    std::uint32_t sectorCount = 0;  // sectors after the header
    std::vector<std::uint32_t> fat;
    std::vector<std::uint32_t> miniFat;
    std::vector<std::uint32_t> miniStreamSectors;
    std::uint64_t miniStreamSize = 0;
    bool miniStreamLoaded = false;
    std::vector<std::uint8_t> miniStream;
    std::vector<bool> reached;  // directory entries already placed in a tree

    // Writing.
    std::unique_ptr<FileWriter> out;
    bool closed = false;

    // Reader (compound_reader.cpp).
    Status load();
    Status listChildren(std::uint32_t storage);
    Status readStream(std::uint32_t node, std::vector<std::uint8_t>* out);

    // Writer (compound_writer.cpp).
    Status writeOut();

    // Both: the child of `storage` with that name, or kNoStream.
    Status find(std::uint32_t storage, std::u16string_view name, std::uint32_t* out);

  private:
    Status chain(std::uint32_t start, std::uint64_t needed, const char* what,
                 std::vector<std::uint32_t>* out);
    Status readSectors(const std::vector<std::uint32_t>& sectors, std::uint64_t size,
                       std::vector<std::uint8_t>* out);
    Status loadMiniStream();
    std::string elementName(std::uint32_t node) const;
};

}  // namespace qb::compound
