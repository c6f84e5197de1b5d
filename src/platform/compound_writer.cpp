// Writing a compound file in one pass: the layout is worked out first, then
// every sector is written in order. The sector order is described in
// docs/formats/compound.md.

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/compound_impl.h"
#include "platform/compound_names.h"

namespace qb::compound {
namespace {

constexpr std::uint32_t kSectorSize = 512;
constexpr std::uint32_t kPerSector = kSectorSize / 4;
constexpr std::uint32_t kDifatSlots = kPerSector - 1;

std::uint64_t unitsFor(std::uint64_t size, std::uint64_t unit) {
    return (size + unit - 1) / unit;
}

void put16(std::uint8_t* p, std::uint16_t v) {
    p[0] = static_cast<std::uint8_t>(v);
    p[1] = static_cast<std::uint8_t>(v >> 8);
}
void put32(std::uint8_t* p, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}

// Sequential writes to the file; the first failure is kept and later writes
// are skipped.
class Emitter {
  public:
    explicit Emitter(FileWriter& out) : out_(out) {}
    void bytes(const void* data, std::size_t size) {
        if (size > 0) out_.write(data, size);
        written_ += size;
    }
    // Zeros up to the next sector boundary.
    void pad() {
        static const std::uint8_t kZeros[kSectorSize] = {};
        std::size_t rest = (kSectorSize - written_ % kSectorSize) % kSectorSize;
        bytes(kZeros, rest);
    }
    void words(const std::vector<std::uint32_t>& values) {
        std::vector<std::uint8_t> raw(values.size() * 4);
        for (std::size_t i = 0; i < values.size(); ++i) put32(raw.data() + 4 * i, values[i]);
        bytes(raw.data(), raw.size());
    }

  private:
    FileWriter& out_;
    std::uint64_t written_ = 0;
};

// A chain of `count` sectors from `first`, entered into `table`.
void link(std::vector<std::uint32_t>& table, std::uint32_t first, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        table[first + i] = i + 1 < count ? first + i + 1 : kEndOfChain;
    }
}

}  // namespace

Status FileImpl::writeOut() {
    // Directory order: depth first, each storage's children in name order.
    std::vector<std::uint32_t> order;
    std::vector<std::uint32_t> dirId(nodes.size(), kNoStream);
    std::vector<std::vector<std::uint32_t>> sorted(nodes.size());
    auto number = [&](auto& self, std::uint32_t storage) -> void {
        std::vector<std::uint32_t>& kids = sorted[storage];
        kids = nodes[storage].children;
        std::sort(kids.begin(), kids.end(), [&](std::uint32_t a, std::uint32_t b) {
            return compareNames(nodes[a].name, nodes[b].name) < 0;
        });
        for (std::uint32_t kid : kids) {
            dirId[kid] = static_cast<std::uint32_t>(order.size());
            order.push_back(kid);
            if (nodes[kid].type == kTypeStorage) self(self, kid);
        }
    };
    dirId[0] = 0;
    order.push_back(0);
    number(number, 0);

    // Where each stream's bytes go.
    std::vector<std::uint32_t> start(nodes.size(), kEndOfChain);
    std::uint64_t regularSectors = 0;
    std::uint64_t miniSectors = 0;
    for (std::uint32_t n : order) {
        const Node& node = nodes[n];
        if (node.type != kTypeStream || node.data.empty()) continue;
        if (node.data.size() >= kMiniStreamCutoff) {
            start[n] = static_cast<std::uint32_t>(regularSectors);
            regularSectors += unitsFor(node.data.size(), kSectorSize);
        } else {
            start[n] = static_cast<std::uint32_t>(miniSectors);
            miniSectors += unitsFor(node.data.size(), kMiniSectorSize);
        }
    }
    const std::uint64_t miniStreamBytes = miniSectors * kMiniSectorSize;
    const std::uint64_t miniStreamSectors = unitsFor(miniStreamBytes, kSectorSize);
    const std::uint64_t miniFatSectors = unitsFor(miniSectors, kPerSector);
    const std::uint64_t dirSectors = unitsFor(order.size(), kSectorSize / kDirEntrySize);
    const std::uint64_t dataSectors =
        regularSectors + miniStreamSectors + miniFatSectors + dirSectors;
    std::uint64_t fatSectors = 1;
    std::uint64_t difatSectors = 0;
    for (;;) {
        difatSectors =
            fatSectors > kHeaderFatSlots ? unitsFor(fatSectors - kHeaderFatSlots, kDifatSlots) : 0;
        std::uint64_t needed = unitsFor(dataSectors + fatSectors + difatSectors, kPerSector);
        if (needed <= fatSectors) break;
        fatSectors = needed;
    }
    const std::uint64_t total = dataSectors + fatSectors + difatSectors;
    if (total >= kMaxRegSect) return Status::invalidArgument("too much data for one file");

    const auto miniStreamFirst = static_cast<std::uint32_t>(regularSectors);
    const auto miniFatFirst = static_cast<std::uint32_t>(miniStreamFirst + miniStreamSectors);
    const auto dirFirst = static_cast<std::uint32_t>(miniFatFirst + miniFatSectors);
    const auto fatFirst = static_cast<std::uint32_t>(dirFirst + dirSectors);
    const auto difatFirst = static_cast<std::uint32_t>(fatFirst + fatSectors);

    std::vector<std::uint32_t> fat(static_cast<std::size_t>(fatSectors * kPerSector), kFreeSect);
    std::vector<std::uint32_t> miniFat(static_cast<std::size_t>(miniFatSectors * kPerSector),
                                       kFreeSect);
    for (std::uint32_t n : order) {
        const Node& node = nodes[n];
        if (start[n] == kEndOfChain) continue;
        if (node.data.size() >= kMiniStreamCutoff) {
            link(fat, start[n],
                 static_cast<std::uint32_t>(unitsFor(node.data.size(), kSectorSize)));
        } else {
            link(miniFat, start[n],
                 static_cast<std::uint32_t>(unitsFor(node.data.size(), kMiniSectorSize)));
        }
    }
    link(fat, miniStreamFirst, static_cast<std::uint32_t>(miniStreamSectors));
    link(fat, miniFatFirst, static_cast<std::uint32_t>(miniFatSectors));
    link(fat, dirFirst, static_cast<std::uint32_t>(dirSectors));
    for (std::uint64_t i = 0; i < fatSectors; ++i) fat[fatFirst + i] = kFatSect;
    for (std::uint64_t i = 0; i < difatSectors; ++i) fat[difatFirst + i] = kDifSect;

    std::uint8_t header[kHeaderSize] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    put16(header + 0x18, 0x003E);
    put16(header + 0x1A, 3);
    put16(header + 0x1C, 0xFFFE);
    put16(header + 0x1E, 9);
    put16(header + 0x20, 6);
    put32(header + 0x2C, static_cast<std::uint32_t>(fatSectors));
    put32(header + 0x30, dirFirst);
    put32(header + 0x38, kMiniStreamCutoff);
    put32(header + 0x3C, miniFatSectors ? miniFatFirst : kEndOfChain);
    put32(header + 0x40, static_cast<std::uint32_t>(miniFatSectors));
    put32(header + 0x44, difatSectors ? difatFirst : kEndOfChain);
    put32(header + 0x48, static_cast<std::uint32_t>(difatSectors));
    for (std::uint32_t i = 0; i < kHeaderFatSlots; ++i) {
        put32(header + 0x4C + 4 * i, i < fatSectors ? fatFirst + i : kFreeSect);
    }

    Emitter emit(*out);
    emit.bytes(header, sizeof header);
    for (std::uint32_t n : order) {
        if (start[n] != kEndOfChain && nodes[n].data.size() >= kMiniStreamCutoff) {
            emit.bytes(nodes[n].data.data(), nodes[n].data.size());
            emit.pad();
        }
    }
    static const std::uint8_t kZeros[kMiniSectorSize] = {};
    for (std::uint32_t n : order) {
        const std::vector<std::uint8_t>& data = nodes[n].data;
        if (start[n] != kEndOfChain && data.size() < kMiniStreamCutoff) {
            emit.bytes(data.data(), data.size());
            emit.bytes(kZeros, (kMiniSectorSize - data.size() % kMiniSectorSize) % kMiniSectorSize);
        }
    }
    emit.pad();
    emit.words(miniFat);

    std::vector<std::uint8_t> dir(static_cast<std::size_t>(dirSectors * kSectorSize), 0);
    for (std::size_t i = 0; i < dir.size() / kDirEntrySize; ++i) {
        std::uint8_t* e = dir.data() + i * kDirEntrySize;
        put32(e + 0x44, kNoStream);
        put32(e + 0x48, kNoStream);
        put32(e + 0x4C, kNoStream);
    }
    std::vector<SiblingLinks> links;
    for (std::uint32_t n : order) {
        const Node& node = nodes[n];
        std::uint8_t* e = dir.data() + std::size_t{dirId[n]} * kDirEntrySize;
        const std::u16string& name = n == 0 ? std::u16string(u"Root Entry") : node.name;
        for (std::size_t k = 0; k < name.size(); ++k) put16(e + 2 * k, name[k]);
        put16(e + 0x40, static_cast<std::uint16_t>(2 * (name.size() + 1)));
        e[0x42] = n == 0 ? kTypeRoot : node.type;
        if (n == 0) e[0x43] = 1;
        if (node.type == kTypeStream) {
            put32(e + 0x74, start[n]);
            put32(e + 0x78, static_cast<std::uint32_t>(node.data.size()));
        } else if (n == 0) {
            put32(e + 0x74, miniStreamSectors ? miniStreamFirst : kEndOfChain);
            put32(e + 0x78, static_cast<std::uint32_t>(miniStreamBytes));
        }
        if (node.type == kTypeStream) continue;
        const std::vector<std::uint32_t>& kids = sorted[n];
        std::size_t root = balancedSiblingTree(kids.size(), &links);
        if (root != kNoSibling) put32(e + 0x4C, dirId[kids[root]]);
        for (std::size_t k = 0; k < kids.size(); ++k) {
            std::uint8_t* ke = dir.data() + std::size_t{dirId[kids[k]]} * kDirEntrySize;
            if (links[k].left != kNoSibling) put32(ke + 0x44, dirId[kids[links[k].left]]);
            if (links[k].right != kNoSibling) put32(ke + 0x48, dirId[kids[links[k].right]]);
            ke[0x43] = links[k].red ? 0 : 1;
        }
    }
    emit.bytes(dir.data(), dir.size());
    emit.words(fat);

    std::vector<std::uint32_t> difat;
    for (std::uint64_t d = 0; d < difatSectors; ++d) {
        for (std::uint32_t i = 0; i < kDifatSlots; ++i) {
            std::uint64_t f = kHeaderFatSlots + d * kDifatSlots + i;
            difat.push_back(f < fatSectors ? fatFirst + static_cast<std::uint32_t>(f) : kFreeSect);
        }
        difat.push_back(d + 1 < difatSectors ? difatFirst + static_cast<std::uint32_t>(d + 1)
                                             : kEndOfChain);
    }
    emit.words(difat);
    return out->status();
}

}  // namespace qb::compound
