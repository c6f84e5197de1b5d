// Reading a compound file: every number in it is checked against the file
// before it is used as a size, an index or a link.

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/compound_file.h"
#include "platform/compound_impl.h"
#include "platform/compound_names.h"
#include "platform/string_printf.h"
#include "platform/text.h"

namespace qb::compound {
namespace {

constexpr std::uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr std::uint64_t kUntilEnd = static_cast<std::uint64_t>(-1);

std::uint16_t get16(const std::uint8_t* p) {
    return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}
std::uint32_t get32(const std::uint8_t* p) {
    return std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 |
           std::uint32_t{p[3]} << 24;
}
std::uint64_t get64(const std::uint8_t* p) {
    return std::uint64_t{get32(p)} | std::uint64_t{get32(p + 4)} << 32;
}

std::uint64_t unitsFor(std::uint64_t size, std::uint64_t unit) {
    return (size + unit - 1) / unit;
}

std::string sectorWord(std::uint32_t s) {
    switch (s) {
        case kFreeSect:
            return "FREESECT";
        case kEndOfChain:
            return "ENDOFCHAIN";
        case kFatSect:
            return "FATSECT";
        case kDifSect:
            return "DIFSECT";
        default:
            return std::to_string(s);
    }
}

// Follows a chain through `table` whose links must stay below `limit`:
// exactly `needed` links ending in ENDOFCHAIN, or with kUntilEnd up to
// ENDOFCHAIN and no longer than `limit` (a longer one must loop).
Status follow(const std::vector<std::uint32_t>& table, std::uint32_t limit, std::uint32_t start,
              std::uint64_t needed, const std::string& what, const char* unit,
              std::vector<std::uint32_t>* out) {
    out->clear();
    std::uint64_t bound = needed == kUntilEnd ? limit : needed;
    std::uint32_t s = start;
    while (out->size() < bound) {
        if (s == kEndOfChain) {
            if (needed == kUntilEnd) return Status::ok();
            return Status::corruption(stringPrintf("%s ends after %zu %ss, its size needs %llu",
                                                   what.c_str(), out->size(), unit,
                                                   static_cast<unsigned long long>(needed)));
        }
        if (s >= limit || s >= table.size()) {
            return Status::corruption(stringPrintf("%s reaches %s %s, outside the %u there are",
                                                   what.c_str(), unit, sectorWord(s).c_str(),
                                                   limit));
        }
        out->push_back(s);
        s = table[s];
    }
    if (s == kEndOfChain) return Status::ok();
    if (needed == kUntilEnd) {
        return Status::corruption(what + " loops (a chain longer than the file)");
    }
    return Status::corruption(stringPrintf("%s does not end after the %llu %ss its size needs",
                                           what.c_str(), static_cast<unsigned long long>(needed),
                                           unit));
}

class FileSource : public ByteSource {
  public:
    FileSource(int fd, std::uint64_t size) : fd_(fd), size_(size) {}
    ~FileSource() override { ::close(fd_); }
    std::uint64_t size() const override { return size_; }
    Status read(std::uint64_t offset, void* buffer, std::size_t size) override {
        auto* p = static_cast<std::uint8_t*>(buffer);
        std::memset(p, 0, size);
        if (offset >= size_) return Status::ok();
        std::size_t want = static_cast<std::size_t>(std::min<std::uint64_t>(size, size_ - offset));
        std::size_t done = 0;
        while (done < want) {
            ssize_t n = ::pread(fd_, p + done, want - done, static_cast<off_t>(offset + done));
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return Status::ioError(std::string("cannot read: ") + std::strerror(errno));
            done += static_cast<std::size_t>(n);
        }
        return Status::ok();
    }

  private:
    int fd_;
    std::uint64_t size_;
};

class MemorySource : public ByteSource {
  public:
    explicit MemorySource(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}
    std::uint64_t size() const override { return bytes_.size(); }
    Status read(std::uint64_t offset, void* buffer, std::size_t size) override {
        auto* p = static_cast<std::uint8_t*>(buffer);
        std::memset(p, 0, size);
        if (offset >= bytes_.size()) return Status::ok();
        std::size_t n =
            static_cast<std::size_t>(std::min<std::uint64_t>(size, bytes_.size() - offset));
        std::memcpy(p, bytes_.data() + offset, n);
        return Status::ok();
    }

  private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace

Status openFileSource(const std::string& path, std::unique_ptr<ByteSource>* out) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        int e = errno;
        std::string why = std::strerror(e);
        return e == ENOENT ? Status::notFound("no such file") : Status::ioError(why);
    }
    off_t end = ::lseek(fd, 0, SEEK_END);
    if (end < 0) {
        ::close(fd);
        return Status::ioError(std::string("cannot read: ") + std::strerror(errno));
    }
    *out = std::make_unique<FileSource>(fd, static_cast<std::uint64_t>(end));
    return Status::ok();
}

std::unique_ptr<ByteSource> memorySource(std::vector<std::uint8_t> bytes) {
    return std::make_unique<MemorySource>(std::move(bytes));
}

std::string FileImpl::elementName(std::uint32_t node) const {
    std::string text(1, '"');
    text.append(utf16ToUtf8(nodes[node].name));
    text.push_back('"');
    return text;
}

Status FileImpl::readSectors(const std::vector<std::uint32_t>& sectors, std::uint64_t size,
                             std::vector<std::uint8_t>* out) {
    out->assign(static_cast<std::size_t>(size), 0);
    std::size_t done = 0;
    // Neighbouring sectors are read in one go.
    for (std::size_t i = 0; i < sectors.size() && done < size;) {
        std::size_t j = i + 1;
        while (j < sectors.size() && sectors[j] == sectors[j - 1] + 1) ++j;
        std::uint64_t offset = (std::uint64_t{sectors[i]} + 1) * sectorSize;
        std::size_t n = static_cast<std::size_t>(
            std::min<std::uint64_t>(std::uint64_t{j - i} * sectorSize, size - done));
        Status s = source->read(offset, out->data() + done, n);
        if (!s.isOk()) return s;
        done += n;
        i = j;
    }
    return Status::ok();
}

Status FileImpl::load() {
    std::uint64_t fileSize = source->size();
    if (fileSize == 0) return Status::corruption("the file is empty");
    if (fileSize < kHeaderSize) {
        return Status::corruption(stringPrintf("the file is too short for a header (%llu bytes)",
                                               static_cast<unsigned long long>(fileSize)));
    }
    std::uint8_t h[kHeaderSize];
    Status s = source->read(0, h, sizeof h);
    if (!s.isOk()) return s;
    if (std::memcmp(h, kSignature, sizeof kSignature) != 0) {
        return Status::corruption("not a compound file (bad signature)");
    }
    std::uint16_t major = get16(h + 0x1A);
    std::uint16_t shift = get16(h + 0x1E);
    if (get16(h + 0x1C) != 0xFFFE) return Status::corruption("bad byte order mark");
    if ((major != 3 || shift != 9) && (major != 4 || shift != 12)) {
        return Status::corruption(
            stringPrintf("unsupported version %u with sector shift %u", major, shift));
    }
    if (get16(h + 0x20) != 6) return Status::corruption("mini sectors are not 64 bytes");
    if (get32(h + 0x38) != kMiniStreamCutoff) {
        return Status::corruption("the mini stream cutoff is not 4096");
    }
    sectorSize = 1u << shift;
    std::uint64_t sectors = fileSize > sectorSize ? unitsFor(fileSize - sectorSize, sectorSize) : 0;
    if (sectors > kMaxRegSect) return Status::corruption("the file is too large");
    sectorCount = static_cast<std::uint32_t>(sectors);
    const std::uint32_t perSector = sectorSize / 4;

    std::uint32_t fatCount = get32(h + 0x2C);
    std::uint32_t difatCount = get32(h + 0x48);
    if (fatCount > sectorCount || difatCount > sectorCount) {
        return Status::corruption(
            stringPrintf("the header declares %u FAT and %u DIFAT sectors, the file has %u sectors",
                         fatCount, difatCount, sectorCount));
    }
    std::vector<std::uint32_t> fatSectors;
    for (std::uint32_t i = 0; i < kHeaderFatSlots && fatSectors.size() < fatCount; ++i) {
        fatSectors.push_back(get32(h + 0x4C + 4 * i));
    }
    std::vector<std::uint8_t> block(sectorSize);
    std::uint32_t next = get32(h + 0x44);
    for (std::uint32_t k = 0; k < difatCount && fatSectors.size() < fatCount; ++k) {
        if (next >= sectorCount) {
            return Status::corruption("the DIFAT reaches sector " + sectorWord(next) +
                                      ", outside the file");
        }
        s = source->read((std::uint64_t{next} + 1) * sectorSize, block.data(), sectorSize);
        if (!s.isOk()) return s;
        for (std::uint32_t i = 0; i + 1 < perSector && fatSectors.size() < fatCount; ++i) {
            fatSectors.push_back(get32(block.data() + 4 * i));
        }
        next = get32(block.data() + sectorSize - 4);
    }
    if (fatSectors.size() < fatCount) {
        return Status::corruption(stringPrintf("the FAT sector list holds %zu of the %u declared",
                                               fatSectors.size(), fatCount));
    }
    fat.assign(std::size_t{fatCount} * perSector, kFreeSect);
    for (std::size_t i = 0; i < fatSectors.size(); ++i) {
        if (fatSectors[i] >= sectorCount) {
            return Status::corruption("FAT sector " + std::to_string(i) + " is sector " +
                                      sectorWord(fatSectors[i]) + ", outside the file");
        }
        s = source->read((std::uint64_t{fatSectors[i]} + 1) * sectorSize, block.data(), sectorSize);
        if (!s.isOk()) return s;
        for (std::uint32_t j = 0; j < perSector; ++j) {
            fat[i * perSector + j] = get32(block.data() + 4 * j);
        }
    }

    std::vector<std::uint32_t> chainSectors;
    s = follow(fat, sectorCount, get32(h + 0x30), kUntilEnd, "the directory", "sector",
               &chainSectors);
    if (!s.isOk()) return s;
    if (chainSectors.empty()) return Status::corruption("the file has no directory");
    std::vector<std::uint8_t> dir;
    s = readSectors(chainSectors, std::uint64_t{chainSectors.size()} * sectorSize, &dir);
    if (!s.isOk()) return s;
    std::size_t entries = dir.size() / kDirEntrySize;
    nodes.assign(entries, Node{});
    for (std::size_t i = 0; i < entries; ++i) {
        const std::uint8_t* e = dir.data() + i * kDirEntrySize;
        Node& n = nodes[i];
        n.type = e[0x42];
        if (n.type == kTypeUnused) continue;
        if (n.type != kTypeStorage && n.type != kTypeStream && n.type != kTypeRoot) {
            return Status::corruption(
                stringPrintf("directory entry %zu has the unknown type %u", i, n.type));
        }
        std::uint16_t nameBytes = get16(e + 0x40);
        if (nameBytes < 2 || nameBytes > 64 || nameBytes % 2 != 0) {
            return Status::corruption(
                stringPrintf("directory entry %zu has a name length of %u bytes", i, nameBytes));
        }
        for (std::uint16_t k = 0; k + 2 < nameBytes; k += 2) {
            n.name.push_back(static_cast<char16_t>(get16(e + k)));
        }
        n.left = get32(e + 0x44);
        n.right = get32(e + 0x48);
        n.child = get32(e + 0x4C);
        n.start = get32(e + 0x74);
        n.size = major == 3 ? get32(e + 0x78) : get64(e + 0x78);
    }
    if (nodes[0].type != kTypeRoot) {
        return Status::corruption("the first directory entry is not the root storage");
    }
    reached.assign(entries, false);
    reached[0] = true;

    s = follow(fat, sectorCount, get32(h + 0x3C), kUntilEnd, "the mini FAT", "sector",
               &chainSectors);
    if (!s.isOk()) return s;
    std::vector<std::uint8_t> table;
    s = readSectors(chainSectors, std::uint64_t{chainSectors.size()} * sectorSize, &table);
    if (!s.isOk()) return s;
    miniFat.resize(table.size() / 4);
    for (std::size_t i = 0; i < miniFat.size(); ++i) miniFat[i] = get32(table.data() + 4 * i);

    miniStreamSize = nodes[0].size;
    std::uint64_t needed = unitsFor(miniStreamSize, sectorSize);
    if (needed > sectorCount) {
        return Status::corruption(
            stringPrintf("the mini stream declares %llu bytes, the file holds %u sectors",
                         static_cast<unsigned long long>(miniStreamSize), sectorCount));
    }
    if (needed == 0) return Status::ok();
    return follow(fat, sectorCount, nodes[0].start, needed, "the mini stream", "sector",
                  &miniStreamSectors);
}

Status FileImpl::loadMiniStream() {
    if (miniStreamLoaded) return Status::ok();
    Status s = readSectors(miniStreamSectors, miniStreamSize, &miniStream);
    if (!s.isOk()) return s;
    // A last mini sector cut short by the stream's size reads as zeros.
    miniStream.resize(static_cast<std::size_t>(unitsFor(miniStreamSize, kMiniSectorSize)) *
                      kMiniSectorSize);
    miniStreamLoaded = true;
    return Status::ok();
}

Status FileImpl::listChildren(std::uint32_t storage) {
    Node& parent = nodes[storage];
    if (parent.listed) return Status::ok();
    std::vector<std::uint32_t> stack;
    std::vector<std::uint32_t> order;
    std::uint32_t at = parent.child;
    while (at != kNoStream || !stack.empty()) {
        while (at != kNoStream) {
            if (at >= nodes.size()) {
                return Status::corruption(
                    stringPrintf("the tree of %s links to entry %u, the directory has %zu",
                                 elementName(storage).c_str(), at, nodes.size()));
            }
            std::uint8_t type = nodes[at].type;
            if (type != kTypeStorage && type != kTypeStream) {
                return Status::corruption(stringPrintf(
                    "the tree of %s links to entry %u, which is %s", elementName(storage).c_str(),
                    at, type == kTypeRoot ? "the root" : "unused"));
            }
            if (reached[at]) {
                return Status::corruption(
                    stringPrintf("the tree of %s reaches entry %u a second time",
                                 elementName(storage).c_str(), at));
            }
            reached[at] = true;
            stack.push_back(at);
            at = nodes[at].left;
        }
        at = stack.back();
        stack.pop_back();
        order.push_back(at);
        at = nodes[at].right;
    }
    for (std::uint32_t child : order) {
        parent.byKey.emplace(nameKey(nodes[child].name), child);
    }
    parent.children = std::move(order);
    parent.listed = true;
    return Status::ok();
}

Status FileImpl::readStream(std::uint32_t node, std::vector<std::uint8_t>* out) {
    const Node& n = nodes[node];
    out->clear();
    if (n.size == 0) return Status::ok();
    std::string what = "the chain of stream " + elementName(node);
    std::vector<std::uint32_t> sectors;
    if (n.size < kMiniStreamCutoff) {
        std::uint64_t miniSectors =
            std::min<std::uint64_t>(unitsFor(miniStreamSize, kMiniSectorSize), miniFat.size());
        Status s = follow(miniFat, static_cast<std::uint32_t>(miniSectors), n.start,
                          unitsFor(n.size, kMiniSectorSize), what, "mini sector", &sectors);
        if (!s.isOk()) return s;
        s = loadMiniStream();
        if (!s.isOk()) return s;
        out->resize(static_cast<std::size_t>(n.size));
        std::size_t done = 0;
        for (std::uint32_t m : sectors) {
            std::size_t piece = std::min<std::size_t>(kMiniSectorSize, out->size() - done);
            std::memcpy(out->data() + done, miniStream.data() + std::size_t{m} * kMiniSectorSize,
                        piece);
            done += piece;
        }
        return Status::ok();
    }
    std::uint64_t needed = unitsFor(n.size, sectorSize);
    if (needed > sectorCount) {
        return Status::corruption(stringPrintf(
            "stream %s declares %llu bytes, the file holds %u sectors", elementName(node).c_str(),
            static_cast<unsigned long long>(n.size), sectorCount));
    }
    Status s = follow(fat, sectorCount, n.start, needed, what, "sector", &sectors);
    if (!s.isOk()) return s;
    return readSectors(sectors, n.size, out);
}

}  // namespace qb::compound
