#pragma once

// How a record's properties are kept in the data file, and the byte keys
// that make SQLite's memcmp order the object store's sort order.

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win_types.h"

namespace qb {

std::string encodeProps(const std::vector<CEPROPVAL>& props);
// False when the bytes are not a well-formed property list. The values that
// `out` holds are overwritten in place, keeping their buffers.
bool decodeProps(std::string_view bytes, std::vector<CEPROPVAL>* out);

// One property where it lies in encoded bytes: its number decoded, the
// UTF-16LE text or blob bytes only viewed.
struct PropView {
    std::uint32_t propid = 0;
    std::uint64_t num = 0;
    std::string_view bytes;

    PropType type() const { return propType(propid); }
};

// Reads encoded properties one by one, copying nothing: how a walk reads
// record after record.
class PropReader {
  public:
    explicit PropReader(std::string_view bytes) : bytes_(bytes) {}
    // The next property; false at the end, or on malformed bytes (failed()).
    // Inline: a walk calls it for every property of every record.
    bool next(PropView& out) {
        if (bytes_.empty() || failed_) return false;
        std::uint32_t id = 0;
        if (!take(4, &id)) return fail();
        out.propid = id;
        out.bytes = {};
        const PropType type = out.type();
        const std::size_t width = fixedWidth(type);
        if (width != 0) {
            if (bytes_.size() < width) return fail();
            out.num = 0;
            std::memcpy(&out.num, bytes_.data(), width);
            bytes_.remove_prefix(width);
            return true;
        }
        // Strings count UTF-16 units; blobs, and every type this store does
        // not know (the writer keeps those as counted bytes), count bytes.
        // An unknown one is kept opaque, for readers to pass over.
        std::uint32_t count = 0;
        if (!take(4, &count)) return fail();
        const std::size_t size = type == CEVT_LPWSTR ? std::size_t{count} * 2 : count;
        if (bytes_.size() < size) return fail();
        out.num = 0;
        out.bytes = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return true;
    }
    bool failed() const { return failed_; }

    // The bytes of a number of each type; 0 for the counted ones.
    static std::size_t fixedWidth(PropType type) {
        switch (type) {
            case CEVT_I2:
            case CEVT_UI2:
                return 2;
            case CEVT_I4:
            case CEVT_UI4:
            case CEVT_BOOL:
                return 4;
            case CEVT_FILETIME:
                return 8;
            default:
                return 0;
        }
    }

  private:
    // Numbers are stored little-endian, as this system's hosts hold them.
    static_assert(std::endian::native == std::endian::little);
    bool take(std::size_t width, std::uint32_t* out) {
        if (bytes_.size() < width) return false;
        std::memcpy(out, bytes_.data(), width);
        bytes_.remove_prefix(width);
        return true;
    }
    bool fail() {
        failed_ = true;
        return false;
    }

    std::string_view bytes_;
    bool failed_ = false;
};

// The text of a string property's bytes, into `out` (its buffer kept).
void assignText(std::string_view utf16le, std::u16string& out);

// The key of one value: present values sort by value (numbers unsigned,
// wide strings by UTF-16 code unit), records lacking the property last.
std::string sortKeyOf(const CEPROPVAL& value);
std::string missingSortKey();
// The key of a record for a sort order, from its property list.
std::string recordSortKey(const std::vector<CEPROPVAL>& props, std::uint32_t sortProp);
// The same from its encoded properties.
std::string encodedSortKey(std::string_view props, std::uint32_t sortProp);

}  // namespace qb
