// Writing a compound file. Every element is spooled as it is given (its name
// in 64 bytes, then a stream's bytes) to an unnamed scratch file beside the
// target, so memory holds 17 bytes per element whatever the streams weigh.
// Closing works the layout out from the sizes alone and writes every sector
// in order in one pass, copying the streams from the spool. The sector order
// is described in docs/formats/compound.md.

#include <algorithm>
#include <cstring>

#include "platform/compound_file.h"
#include "platform/compound_impl.h"
#include "platform/compound_names.h"
#include "platform/text.h"

namespace qb::compound {
namespace {

constexpr std::uint32_t kSectorSize = 512;
constexpr std::uint32_t kPerSector = kSectorSize / 4;
constexpr std::uint32_t kDifatSlots = kPerSector - 1;
constexpr std::uint32_t kMaxStream = 0x80000000u;

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

// The name as it starts a directory entry: UTF-16LE, zero-padded.
void spooledName(std::u16string_view name, std::uint8_t* out) {
    std::memset(out, 0, kNameBytes);
    for (std::size_t k = 0; k < name.size(); ++k) put16(out + 2 * k, name[k]);
}

std::u16string nameFrom(const std::uint8_t* raw) {
    std::u16string name;
    for (std::uint32_t k = 0; k + 2 <= kNameBytes; k += 2) {
        auto unit = static_cast<char16_t>(raw[k] | raw[k + 1] << 8);
        if (unit == 0) break;
        name.push_back(unit);
    }
    return name;
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
    // Zeros up to the next multiple of `unit`.
    void pad(std::uint32_t unit = kSectorSize) {
        static const std::uint8_t kZeros[kSectorSize] = {};
        bytes(kZeros, (unit - written_ % unit) % unit);
    }
    void word(std::uint32_t value) {
        std::uint8_t raw[4];
        put32(raw, value);
        bytes(raw, 4);
    }
    // A chain of `count` units from `first`, as allocation table entries.
    void chain(std::uint32_t first, std::uint64_t count) {
        for (std::uint64_t i = 0; i < count; ++i) {
            word(i + 1 < count ? first + static_cast<std::uint32_t>(i) + 1 : kEndOfChain);
        }
    }
    void fill(std::uint32_t value, std::uint64_t count) {
        for (std::uint64_t i = 0; i < count; ++i) word(value);
    }

  private:
    FileWriter& out_;
    std::uint64_t written_ = 0;
};

// Reads the spool through one block. The layout visits it mostly in the
// order it was written, so each block is read once.
class SpoolReader {
  public:
    explicit SpoolReader(FileWriter& spool) : spool_(spool), block_(kBlock) {}

    Status read(std::uint64_t offset, std::uint8_t* to, std::size_t size) {
        return pieces(offset, size, [&](const std::uint8_t* p, std::size_t n) {
            std::memcpy(to, p, n);
            to += n;
        });
    }
    Status copy(std::uint64_t offset, std::size_t size, Emitter& emit) {
        return pieces(offset, size,
                      [&](const std::uint8_t* p, std::size_t n) { emit.bytes(p, n); });
    }

  private:
    static constexpr std::size_t kBlock = std::size_t{1} << 18;

    template <typename Use>
    Status pieces(std::uint64_t offset, std::size_t size, Use use) {
        while (size > 0) {
            if (offset < at_ || offset >= at_ + filled_) {
                at_ = offset;
                filled_ = static_cast<std::size_t>(std::min<std::uint64_t>(
                    kBlock, spool_.size() - std::min(offset, spool_.size())));
                Status s = spool_.readAt(at_, block_.data(), filled_);
                if (!s.isOk() || filled_ == 0) {
                    filled_ = 0;
                    return s.isOk() ? Status::ioError("the spool ends too soon") : s;
                }
            }
            std::size_t n = std::min<std::uint64_t>(size, at_ + filled_ - offset);
            use(block_.data() + (offset - at_), n);
            offset += n;
            size -= n;
        }
        return Status::ok();
    }

    FileWriter& spool_;
    std::vector<std::uint8_t> block_;
    std::uint64_t at_ = 0;
    std::size_t filled_ = 0;
};

}  // namespace

Status FileImpl::writtenName(std::uint32_t node, std::u16string* out) {
    if (node == 0) {
        *out = u"Root Entry";
        return Status::ok();
    }
    if (!spool) return Status::invalidArgument("the file is closed");
    std::uint8_t raw[kNameBytes];
    Status s = spool->readAt(written[node].spoolAt, raw, kNameBytes);
    if (s.isOk()) *out = nameFrom(raw);
    return s;
}

Status FileImpl::addElement(std::uint32_t storage, std::u16string_view name, std::uint8_t type,
                            std::uint32_t* out) {
    if (!writable) return Status::invalidArgument("the file is open for reading only");
    if (closed) return Status::invalidArgument("the file is closed");
    if (!validName(name)) {
        return Status::invalidArgument(
            "\"" + utf16ToUtf8(name) +
            "\" cannot name an element (1 to 31 characters, none of / \\ : !)");
    }
    const std::uint32_t owner = written[storage].size;
    const auto index = static_cast<std::uint32_t>(written.size());
    if (storages[owner].inOrder && storages[owner].last != kNoStream &&
        compareNames(name, storages[owner].lastName) <= 0) {
        WrittenStorage& st = storages[owner];
        st.inOrder = false;
        std::u16string kid;
        for (std::uint32_t k = st.first; k != kNoStream; k = written[k].next) {
            Status s = writtenName(k, &kid);
            if (!s.isOk()) return s;
            st.byKey.emplace(nameKey(kid), k);
        }
    }
    WrittenStorage& st = storages[owner];
    if (st.inOrder) {
        st.lastName.assign(name);
    } else {
        // Creating replaces an element of the same name.
        auto [it, added] = st.byKey.try_emplace(nameKey(name), index);
        if (!added) {
            writtenType[it->second] = kTypeUnused;
            it->second = index;
        }
    }
    if (st.last == kNoStream) {
        st.first = index;
    } else {
        written[st.last].next = index;
    }
    st.last = index;

    std::uint8_t raw[kNameBytes];
    spooledName(name, raw);
    Written element;
    element.spoolAt = spool->size();
    Status s = spool->write(raw, sizeof raw);
    if (!s.isOk()) return s;
    if (type == kTypeStorage) {
        element.size = static_cast<std::uint32_t>(storages.size());
        storages.emplace_back();
        storages.back().node = index;
    }
    written.push_back(element);
    writtenType.push_back(type);
    spoolOwner = index;
    *out = index;
    return Status::ok();
}

Status FileImpl::append(std::uint32_t node, const void* data, std::size_t size) {
    Written& element = written[node];
    if (element.size + std::uint64_t{size} >= kMaxStream) {
        return Status::invalidArgument("a stream cannot grow past 2 GB");
    }
    if (size == 0) return spool->status();
    if (spoolOwner != node) {
        // Another element was spooled since: this one moves to the end, so
        // that its bytes stay in one piece.
        const std::uint64_t from = element.spoolAt;
        const std::uint64_t length = kNameBytes + std::uint64_t{element.size};
        element.spoolAt = spool->size();
        std::vector<std::uint8_t> piece(
            static_cast<std::size_t>(std::min<std::uint64_t>(length, 1 << 16)));
        for (std::uint64_t done = 0; done < length;) {
            auto n = static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), length - done));
            Status s = spool->readAt(from + done, piece.data(), n);
            if (s.isOk()) s = spool->write(piece.data(), n);
            if (!s.isOk()) return s;
            done += n;
        }
        spoolOwner = node;
    }
    Status s = spool->write(data, size);
    if (s.isOk()) element.size += static_cast<std::uint32_t>(size);
    return s;
}

Status FileImpl::writtenChildren(std::uint32_t storage, std::vector<std::uint32_t>* out) {
    const WrittenStorage& st = storages[written[storage].size];
    out->clear();
    for (std::uint32_t k = st.first; k != kNoStream; k = written[k].next) {
        if (writtenType[k] != kTypeUnused) out->push_back(k);
    }
    if (st.inOrder) return Status::ok();
    std::vector<std::pair<std::u16string, std::uint32_t>> named;
    for (std::uint32_t k : *out) {
        named.emplace_back();
        Status s = writtenName(k, &named.back().first);
        if (!s.isOk()) return s;
        named.back().second = k;
    }
    std::sort(named.begin(), named.end(),
              [](const auto& a, const auto& b) { return compareNames(a.first, b.first) < 0; });
    for (std::size_t i = 0; i < named.size(); ++i) (*out)[i] = named[i].second;
    return Status::ok();
}

Status FileImpl::findWritten(std::uint32_t storage, std::u16string_view name, std::uint32_t* out) {
    const WrittenStorage& st = storages[written[storage].size];
    if (!st.inOrder) {
        auto it = st.byKey.find(nameKey(name));
        if (it != st.byKey.end()) *out = it->second;
        return Status::ok();
    }
    std::u16string kid;
    for (std::uint32_t k = st.first; k != kNoStream; k = written[k].next) {
        Status s = writtenName(k, &kid);
        if (!s.isOk()) return s;
        if (compareNames(kid, name) == 0) *out = k;
    }
    return Status::ok();
}

Status FileImpl::writeOut() {
    if (!spool->status().isOk()) return spool->status();
    for (WrittenStorage& st : storages) {
        Status s = writtenChildren(st.node, &st.sorted);
        if (!s.isOk()) return s;
    }
    auto storageOf = [&](std::uint32_t node) -> WrittenStorage& {
        return storages[written[node].size];
    };
    // Directory order: depth first, each storage's children in name order.
    auto visit = [&](auto& self, std::uint32_t storage, const auto& use) -> void {
        for (std::uint32_t kid : storageOf(storage).sorted) {
            use(kid);
            if (writtenType[kid] == kTypeStorage) self(self, kid, use);
        }
    };
    auto inOrder = [&](const auto& use) { visit(visit, 0, use); };
    auto isRegular = [&](std::uint32_t n) {
        return writtenType[n] == kTypeStream && written[n].size >= kMiniStreamCutoff;
    };
    auto isMini = [&](std::uint32_t n) {
        return writtenType[n] == kTypeStream && written[n].size > 0 &&
               written[n].size < kMiniStreamCutoff;
    };

    // The sizes decide the layout.
    auto count = [&](auto& self, std::uint32_t storage) -> std::uint32_t {
        WrittenStorage& st = storageOf(storage);
        std::uint32_t n = 0;
        for (std::uint32_t kid : st.sorted) {
            n += 1;
            if (writtenType[kid] == kTypeStorage) {
                st.hasStorages = true;
                n += self(self, kid);
            }
        }
        st.descendants = n;
        return n;
    };
    const std::uint64_t entries = 1 + std::uint64_t{count(count, 0)};
    std::uint64_t regularSectors = 0;
    std::uint64_t miniSectors = 0;
    inOrder([&](std::uint32_t n) {
        if (isRegular(n)) regularSectors += unitsFor(written[n].size, kSectorSize);
        if (isMini(n)) miniSectors += unitsFor(written[n].size, kMiniSectorSize);
    });
    const std::uint64_t miniStreamBytes = miniSectors * kMiniSectorSize;
    const std::uint64_t miniStreamSectors = unitsFor(miniStreamBytes, kSectorSize);
    const std::uint64_t miniFatSectors = unitsFor(miniSectors, kPerSector);
    const std::uint64_t dirSectors = unitsFor(entries, kSectorSize / kDirEntrySize);
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
    SpoolReader from(*spool);
    Status s;
    emit.bytes(header, sizeof header);
    inOrder([&](std::uint32_t n) {
        if (s.isOk() && isRegular(n)) {
            s = from.copy(written[n].spoolAt + kNameBytes, written[n].size, emit);
            emit.pad();
        }
    });
    inOrder([&](std::uint32_t n) {
        if (s.isOk() && isMini(n)) {
            s = from.copy(written[n].spoolAt + kNameBytes, written[n].size, emit);
            emit.pad(kMiniSectorSize);
        }
    });
    if (!s.isOk()) return s;
    emit.pad();

    std::uint32_t next = 0;
    inOrder([&](std::uint32_t n) {
        if (!isMini(n)) return;
        std::uint64_t units = unitsFor(written[n].size, kMiniSectorSize);
        emit.chain(next, units);
        next += static_cast<std::uint32_t>(units);
    });
    emit.fill(kFreeSect, miniFatSectors * kPerSector - miniSectors);

    // The directory, entry by entry in directory order; a start sector is
    // where the running count of its kind has got to.
    std::uint32_t regularAt = 0;
    std::uint32_t miniAt = 0;
    auto entry = [&](auto& self, std::uint32_t node, std::uint32_t dirId, std::uint32_t left,
                     std::uint32_t right, bool red) -> void {
        std::uint8_t e[kDirEntrySize] = {};
        const std::uint8_t type = writtenType[node];
        if (node == 0) {
            spooledName(u"Root Entry", e);
        } else if (Status r = from.read(written[node].spoolAt, e, kNameBytes); !r.isOk()) {
            if (s.isOk()) s = r;
            return;
        }
        std::size_t units = 0;
        while (units < 31 && (e[2 * units] | e[2 * units + 1]) != 0) ++units;
        put16(e + 0x40, static_cast<std::uint16_t>(2 * (units + 1)));
        e[0x42] = node == 0 ? kTypeRoot : type;
        e[0x43] = red ? 0 : 1;
        put32(e + 0x44, left);
        put32(e + 0x48, right);
        put32(e + 0x4C, kNoStream);
        if (type == kTypeStream) {
            const std::uint32_t size = written[node].size;
            std::uint32_t start = kEndOfChain;
            if (isRegular(node)) {
                start = regularAt;
                regularAt += static_cast<std::uint32_t>(unitsFor(size, kSectorSize));
            } else if (isMini(node)) {
                start = miniAt;
                miniAt += static_cast<std::uint32_t>(unitsFor(size, kMiniSectorSize));
            }
            put32(e + 0x74, start);
            put32(e + 0x78, size);
            emit.bytes(e, sizeof e);
            return;
        }
        if (node == 0) {
            put32(e + 0x74, miniStreamSectors ? miniStreamFirst : kEndOfChain);
            put32(e + 0x78, static_cast<std::uint32_t>(miniStreamBytes));
        }
        const WrittenStorage& st = storageOf(node);
        const std::size_t kids = st.sorted.size();
        // Where each child lands: right after the storage, each after the
        // subtree of the one before.
        std::vector<std::uint32_t> placed;
        if (st.hasStorages) {
            std::uint32_t id = dirId + 1;
            for (std::uint32_t kid : st.sorted) {
                placed.push_back(id);
                id += 1 + (writtenType[kid] == kTypeStorage ? storageOf(kid).descendants : 0);
            }
        }
        auto placeOf = [&](std::size_t i) {
            if (i == kNoSibling) return kNoStream;
            return st.hasStorages ? placed[i] : dirId + 1 + static_cast<std::uint32_t>(i);
        };
        put32(e + 0x4C, placeOf(siblingTreeRoot(kids)));
        emit.bytes(e, sizeof e);
        for (std::size_t i = 0; i < kids && s.isOk(); ++i) {
            SiblingLinks links = siblingLinksOf(kids, i);
            self(self, st.sorted[i], placeOf(i), placeOf(links.left), placeOf(links.right),
                 links.red);
        }
    };
    entry(entry, 0, 0, kNoStream, kNoStream, false);
    if (!s.isOk()) return s;
    std::uint8_t unused[kDirEntrySize] = {};
    put32(unused + 0x44, kNoStream);
    put32(unused + 0x48, kNoStream);
    put32(unused + 0x4C, kNoStream);
    for (std::uint64_t i = entries; i < dirSectors * (kSectorSize / kDirEntrySize); ++i) {
        emit.bytes(unused, sizeof unused);
    }

    std::uint32_t sector = 0;
    inOrder([&](std::uint32_t n) {
        if (!isRegular(n)) return;
        std::uint64_t count = unitsFor(written[n].size, kSectorSize);
        emit.chain(sector, count);
        sector += static_cast<std::uint32_t>(count);
    });
    emit.chain(miniStreamFirst, miniStreamSectors);
    emit.chain(miniFatFirst, miniFatSectors);
    emit.chain(dirFirst, dirSectors);
    emit.fill(kFatSect, fatSectors);
    emit.fill(kDifSect, difatSectors);
    emit.fill(kFreeSect, fatSectors * kPerSector - total);

    for (std::uint64_t d = 0; d < difatSectors; ++d) {
        for (std::uint32_t i = 0; i < kDifatSlots; ++i) {
            std::uint64_t f = kHeaderFatSlots + d * kDifatSlots + i;
            emit.word(f < fatSectors ? fatFirst + static_cast<std::uint32_t>(f) : kFreeSect);
        }
        emit.word(d + 1 < difatSectors ? difatFirst + static_cast<std::uint32_t>(d + 1)
                                       : kEndOfChain);
    }
    return out->status();
}

}  // namespace qb::compound
