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

auto named(const char* text) {
    return [text] { return std::string(text); };
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

// Follows a chain through a table of `tableSize` links, `next` answering
// one, whose links must stay below `limit`: exactly `needed` links ending in
// ENDOFCHAIN, or with kUntilEnd up to ENDOFCHAIN and no longer than `limit`
// (a longer one must loop). `what` names the chain, worked out only for a
// message.
template <typename Next, typename What>
Status follow(Next next, std::uint64_t tableSize, std::uint32_t limit, std::uint32_t start,
              std::uint64_t needed, What what, const char* unit, std::vector<std::uint32_t>* out) {
    out->clear();
    std::uint64_t bound = needed == kUntilEnd ? limit : needed;
    std::uint32_t s = start;
    while (out->size() < bound) {
        if (s == kEndOfChain) {
            if (needed == kUntilEnd) return Status::ok();
            return Status::corruption(stringPrintf("%s ends after %zu %ss, its size needs %llu",
                                                   what().c_str(), out->size(), unit,
                                                   static_cast<unsigned long long>(needed)));
        }
        if (s >= limit || s >= tableSize) {
            return Status::corruption(stringPrintf("%s reaches %s %s, outside the %u there are",
                                                   what().c_str(), unit, sectorWord(s).c_str(),
                                                   limit));
        }
        out->push_back(s);
        Status read = next(s, &s);
        if (!read.isOk()) return read;
    }
    if (s == kEndOfChain) return Status::ok();
    if (needed == kUntilEnd) {
        return Status::corruption(what() + " loops (a chain longer than the file)");
    }
    return Status::corruption(stringPrintf("%s does not end after the %llu %ss its size needs",
                                           what().c_str(), static_cast<unsigned long long>(needed),
                                           unit));
}

template <typename What>
Status follow(const std::vector<std::uint32_t>& table, std::uint32_t limit, std::uint32_t start,
              std::uint64_t needed, What what, const char* unit, std::vector<std::uint32_t>* out) {
    auto next = [&table](std::uint32_t at, std::uint32_t* link) {
        *link = table[at];
        return Status::ok();
    };
    return follow(next, table.size(), limit, start, needed, what, unit, out);
}

// The file, read through a few cached blocks: directory entries, table
// sectors and small streams are read a few bytes at a time, mostly in file
// order, from two or three places at once.
class FileSource : public ByteSource {
  public:
    FileSource(int fd, std::uint64_t size) : fd_(fd), size_(size) {}
    ~FileSource() override { ::close(fd_); }
    std::uint64_t size() const override { return size_; }
    Status read(std::uint64_t offset, void* buffer, std::size_t size) override {
        auto* p = static_cast<std::uint8_t*>(buffer);
        if (size >= kBlock) return readDirect(offset, p, size);
        while (size > 0) {
            const std::uint64_t number = offset / kBlock;
            Block& block = blockOf(number);
            if (block.number != number) {
                Status s = readDirect(number * kBlock, block.bytes.data(), kBlock);
                if (!s.isOk()) {
                    block.number = kNone;
                    return s;
                }
                block.number = number;
            }
            const auto at = static_cast<std::size_t>(offset % kBlock);
            const std::size_t n = std::min(size, kBlock - at);
            std::memcpy(p, block.bytes.data() + at, n);
            p += n;
            offset += n;
            size -= n;
        }
        return Status::ok();
    }

  private:
    static constexpr std::size_t kBlock = std::size_t{1} << 14;
    static constexpr std::size_t kBlocks = 64;
    static constexpr std::uint64_t kNone = ~std::uint64_t{0};
    struct Block {
        std::uint64_t number = kNone;
        std::uint64_t lastUse = 0;
        std::vector<std::uint8_t> bytes = std::vector<std::uint8_t>(kBlock);
    };

    // The block holding `number`, or the one used longest ago to read it
    // into. Any block may hold any part of the file: a restore reads the
    // directory, the allocation tables and the streams' sectors side by
    // side, and blocks tied to places would keep evicting each other.
    Block& blockOf(std::uint64_t number) {
        if (last_->number == number) return *last_;
        Block* oldest = &blocks_[0];
        for (Block& b : blocks_) {
            if (b.number == number) {
                oldest = &b;
                break;
            }
            if (b.lastUse < oldest->lastUse) oldest = &b;
        }
        oldest->lastUse = ++uses_;
        last_ = oldest;
        return *oldest;
    }

    Status readDirect(std::uint64_t offset, std::uint8_t* p, std::size_t size) {
        std::size_t want =
            offset >= size_
                ? 0
                : static_cast<std::size_t>(std::min<std::uint64_t>(size, size_ - offset));
        std::memset(p + want, 0, size - want);
        std::size_t done = 0;
        while (done < want) {
            ssize_t n = ::pread(fd_, p + done, want - done, static_cast<off_t>(offset + done));
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return Status::ioError(std::string("cannot read: ") + std::strerror(errno));
            done += static_cast<std::size_t>(n);
        }
        return Status::ok();
    }

    int fd_;
    std::uint64_t size_;
    Block blocks_[kBlocks];
    std::uint64_t uses_ = 0;
    Block* last_ = &blocks_[0];
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

std::string FileImpl::elementName(std::uint32_t node) {
    DirEntry e;
    entry(node, &e);
    std::string text(1, '"');
    text.append(utf16ToUtf8(e.name));
    text.push_back('"');
    return text;
}

std::uint64_t FileImpl::entryOffset(std::uint32_t index) const {
    const std::uint64_t at = std::uint64_t{index} * kDirEntrySize;
    const std::uint64_t sector = dirSectors[static_cast<std::size_t>(at / sectorSize)];
    return (sector + 1) * sectorSize + at % sectorSize;
}

Status FileImpl::entryType(std::uint32_t index, std::uint8_t* out) {
    return source->read(entryOffset(index) + 0x42, out, 1);
}

Status FileImpl::entry(std::uint32_t index, DirEntry* out) {
    std::uint8_t e[kDirEntrySize];
    Status s = source->read(entryOffset(index), e, sizeof e);
    if (!s.isOk()) return s;
    out->type = e[0x42];
    out->name.clear();
    if (out->type == kTypeUnused) {
        *out = DirEntry{};
        return Status::ok();
    }
    const std::uint16_t nameBytes = get16(e + 0x40);
    for (std::uint32_t k = 0; k + 2 < nameBytes && k + 2 <= kNameBytes; k += 2) {
        out->name.push_back(static_cast<char16_t>(get16(e + k)));
    }
    out->left = get32(e + 0x44);
    out->right = get32(e + 0x48);
    out->child = get32(e + 0x4C);
    out->start = get32(e + 0x74);
    out->size = version3 ? get32(e + 0x78) : get64(e + 0x78);
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
    version3 = major == 3;
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

    s = follow(fat, sectorCount, get32(h + 0x30), kUntilEnd, named("the directory"), "sector",
               &dirSectors);
    if (!s.isOk()) return s;
    if (dirSectors.empty()) return Status::corruption("the file has no directory");
    entryCount = static_cast<std::uint32_t>(dirSectors.size() * (sectorSize / kDirEntrySize));
    // Every entry is checked now; afterwards they are read again as needed.
    DirEntry root;
    for (std::uint32_t i = 0; i < entryCount; ++i) {
        std::uint8_t e[kDirEntrySize];
        s = source->read(entryOffset(i), e, sizeof e);
        if (!s.isOk()) return s;
        std::uint8_t type = e[0x42];
        if (type == kTypeUnused) continue;
        if (type != kTypeStorage && type != kTypeStream && type != kTypeRoot) {
            return Status::corruption(
                stringPrintf("directory entry %u has the unknown type %u", i, type));
        }
        std::uint16_t nameBytes = get16(e + 0x40);
        if (nameBytes < 2 || nameBytes > 64 || nameBytes % 2 != 0) {
            return Status::corruption(
                stringPrintf("directory entry %u has a name length of %u bytes", i, nameBytes));
        }
    }
    s = entry(0, &root);
    if (!s.isOk()) return s;
    if (root.type != kTypeRoot) {
        return Status::corruption("the first directory entry is not the root storage");
    }
    reached.assign(entryCount, false);
    reached[0] = true;

    s = follow(fat, sectorCount, get32(h + 0x3C), kUntilEnd, named("the mini FAT"), "sector",
               &miniFatSectors);
    if (!s.isOk()) return s;
    miniFatEntries = std::uint64_t{miniFatSectors.size()} * perSector;

    miniStreamSize = root.size;
    std::uint64_t needed = unitsFor(miniStreamSize, sectorSize);
    if (needed > sectorCount) {
        return Status::corruption(
            stringPrintf("the mini stream declares %llu bytes, the file holds %u sectors",
                         static_cast<unsigned long long>(miniStreamSize), sectorCount));
    }
    if (needed == 0) return Status::ok();
    return follow(fat, sectorCount, root.start, needed, named("the mini stream"), "sector",
                  &miniStreamSectors);
}

Status FileImpl::listChildren(std::uint32_t storage) {
    if (listings.count(storage) != 0) return Status::ok();
    DirEntry parent;
    Status s = entry(storage, &parent);
    if (!s.isOk()) return s;
    Listing listing;
    std::vector<std::uint32_t> stack;
    std::vector<std::uint32_t>& order = listing.children;
    DirEntry e;
    std::u16string previous;
    std::uint32_t at = parent.child;
    while (at != kNoStream || !stack.empty()) {
        while (at != kNoStream) {
            if (at >= entryCount) {
                return Status::corruption(
                    stringPrintf("the tree of %s links to entry %u, the directory has %u",
                                 elementName(storage).c_str(), at, entryCount));
            }
            s = entry(at, &e);
            if (!s.isOk()) return s;
            if (e.type != kTypeStorage && e.type != kTypeStream) {
                return Status::corruption(stringPrintf(
                    "the tree of %s links to entry %u, which is %s", elementName(storage).c_str(),
                    at, e.type == kTypeRoot ? "the root" : "unused"));
            }
            if (reached[at]) {
                return Status::corruption(
                    stringPrintf("the tree of %s reaches entry %u a second time",
                                 elementName(storage).c_str(), at));
            }
            reached[at] = true;
            stack.push_back(at);
            at = e.left;
        }
        at = stack.back();
        stack.pop_back();
        s = entry(at, &e);
        if (!s.isOk()) return s;
        if (!order.empty() && compareNames(previous, e.name) >= 0) listing.ordered = false;
        previous.swap(e.name);
        order.push_back(at);
        at = e.right;
    }
    listings.emplace(storage, std::move(listing));
    return Status::ok();
}

Status FileImpl::findRead(std::uint32_t storage, std::u16string_view name, std::uint32_t* out) {
    Status s = listChildren(storage);
    if (!s.isOk()) return s;
    Listing& listing = listings[storage];
    DirEntry e;
    if (listing.ordered) {
        // Names are mostly asked for in order: the one after the last found
        // is tried first.
        if (listing.cursor < listing.children.size()) {
            s = entry(listing.children[listing.cursor], &e);
            if (!s.isOk()) return s;
            if (compareNames(e.name, name) == 0) {
                *out = listing.children[listing.cursor++];
                return Status::ok();
            }
        }
        std::size_t low = 0;
        std::size_t high = listing.children.size();
        while (low < high) {
            std::size_t middle = low + (high - low) / 2;
            s = entry(listing.children[middle], &e);
            if (!s.isOk()) return s;
            int order = compareNames(e.name, name);
            if (order == 0) {
                *out = listing.children[middle];
                listing.cursor = middle + 1;
                return Status::ok();
            }
            if (order < 0) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return Status::ok();
    }
    if (!listing.keyed) {
        for (std::uint32_t child : listing.children) {
            s = entry(child, &e);
            if (!s.isOk()) return s;
            listing.byKey.emplace(nameKey(e.name), child);
        }
        listing.keyed = true;
    }
    auto it = listing.byKey.find(nameKey(name));
    if (it != listing.byKey.end()) *out = it->second;
    return Status::ok();
}

Status FileImpl::streamChain(std::uint32_t node, const DirEntry& n,
                             std::vector<std::uint32_t>* out) {
    out->clear();
    if (n.size == 0) return Status::ok();
    auto what = [&] { return "the chain of stream " + elementName(node); };
    if (n.size < kMiniStreamCutoff) {
        std::uint64_t miniSectors =
            std::min<std::uint64_t>(unitsFor(miniStreamSize, kMiniSectorSize), miniFatEntries);
        const std::uint32_t perSector = sectorSize / 4;
        auto next = [&](std::uint32_t at, std::uint32_t* link) {
            std::uint8_t raw[4];
            const std::uint64_t sector = miniFatSectors[at / perSector];
            Status s = source->read((sector + 1) * sectorSize + std::uint64_t{at % perSector} * 4,
                                    raw, sizeof raw);
            *link = get32(raw);
            return s;
        };
        return follow(next, miniFatEntries, static_cast<std::uint32_t>(miniSectors), n.start,
                      unitsFor(n.size, kMiniSectorSize), what, "mini sector", out);
    }
    std::uint64_t needed = unitsFor(n.size, sectorSize);
    if (needed > sectorCount) {
        return Status::corruption(stringPrintf(
            "stream %s declares %llu bytes, the file holds %u sectors", elementName(node).c_str(),
            static_cast<unsigned long long>(n.size), sectorCount));
    }
    return follow(fat, sectorCount, n.start, needed, what, "sector", out);
}

Status FileImpl::readStream(const std::vector<std::uint32_t>& chain, bool mini,
                            std::uint64_t offset, std::uint8_t* buffer, std::size_t size) {
    while (size > 0) {
        std::uint64_t fileAt = 0;
        std::size_t n = 0;
        if (mini) {
            // A mini sector lies inside one sector of the mini stream; past
            // the mini stream's size it reads as zeros.
            const std::uint64_t at =
                std::uint64_t{chain[offset / kMiniSectorSize]} * kMiniSectorSize +
                offset % kMiniSectorSize;
            n = std::min<std::size_t>(size, kMiniSectorSize - offset % kMiniSectorSize);
            const std::uint64_t valid = at < miniStreamSize ? miniStreamSize - at : 0;
            if (valid < n) std::memset(buffer + valid, 0, n - valid);
            if (valid > 0) {
                fileAt = (std::uint64_t{miniStreamSectors[at / sectorSize]} + 1) * sectorSize +
                         at % sectorSize;
                Status s = source->read(
                    fileAt, buffer, static_cast<std::size_t>(std::min<std::uint64_t>(n, valid)));
                if (!s.isOk()) return s;
            }
        } else {
            // Neighbouring sectors are read in one go.
            std::size_t i = static_cast<std::size_t>(offset / sectorSize);
            std::size_t j = i + 1;
            while (j < chain.size() && chain[j] == chain[j - 1] + 1) ++j;
            fileAt = (std::uint64_t{chain[i]} + 1) * sectorSize + offset % sectorSize;
            n = static_cast<std::size_t>(std::min<std::uint64_t>(
                size, std::uint64_t{j - i} * sectorSize - offset % sectorSize));
            Status s = source->read(fileAt, buffer, n);
            if (!s.isOk()) return s;
        }
        buffer += n;
        offset += n;
        size -= n;
    }
    return Status::ok();
}

}  // namespace qb::compound
