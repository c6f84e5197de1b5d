#include "platform/record_codec.h"

#include <bit>
#include <cstring>

namespace qb {
namespace {

void putLE(std::string& out, std::uint64_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void putBE(std::string& out, std::uint64_t v, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

int fixedWidth(PropType type) {
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

std::uint64_t readLE(const char* at, int bytes) {
    std::uint64_t v = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&v, at, static_cast<std::size_t>(bytes));
    } else {
        for (int i = 0; i < bytes; ++i) {
            v |= std::uint64_t{static_cast<unsigned char>(at[i])} << (8 * i);
        }
    }
    return v;
}

}  // namespace

std::string encodeProps(const std::vector<CEPROPVAL>& props) {
    std::string out;
    for (const CEPROPVAL& p : props) {
        putLE(out, p.propid, 4);
        PropType type = p.type();
        if (int width = fixedWidth(type)) {
            putLE(out, p.num, width);
        } else if (type == CEVT_LPWSTR) {
            putLE(out, p.str.size(), 4);
            for (char16_t c : p.str) putLE(out, c, 2);
        } else {
            putLE(out, p.blob.size(), 4);
            out.append(reinterpret_cast<const char*>(p.blob.data()), p.blob.size());
        }
    }
    return out;
}

bool PropReader::next(PropView& out) {
    if (bytes_.empty() || failed_) return false;
    failed_ = true;  // until the property is read whole
    if (bytes_.size() < 4) return false;
    out.propid = static_cast<std::uint32_t>(readLE(bytes_.data(), 4));
    bytes_.remove_prefix(4);
    const PropType type = out.type();
    out.bytes = {};
    if (int width = fixedWidth(type)) {
        if (bytes_.size() < static_cast<std::size_t>(width)) return false;
        out.num = readLE(bytes_.data(), width);
        bytes_.remove_prefix(static_cast<std::size_t>(width));
    } else {
        // Strings count UTF-16 units; blobs, and every type this store does
        // not know (the writer keeps those as counted bytes), count bytes.
        // An unknown one is kept opaque, for readers to pass over.
        if (bytes_.size() < 4) return false;
        const std::uint64_t n = readLE(bytes_.data(), 4);
        bytes_.remove_prefix(4);
        const std::uint64_t size = type == CEVT_LPWSTR ? n * 2 : n;
        if (bytes_.size() < size) return false;
        out.num = 0;
        out.bytes = bytes_.substr(0, static_cast<std::size_t>(size));
        bytes_.remove_prefix(static_cast<std::size_t>(size));
    }
    failed_ = false;
    return true;
}

void assignText(std::string_view utf16le, std::u16string& out) {
    out.resize(utf16le.size() / 2);
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(out.data(), utf16le.data(), out.size() * 2);
    } else {
        for (std::size_t i = 0; i < out.size(); ++i) {
            out[i] = static_cast<char16_t>(readLE(utf16le.data() + 2 * i, 2));
        }
    }
}

bool decodeProps(std::string_view bytes, std::vector<CEPROPVAL>* out) {
    // The values already in `out` are reused, buffers and all: reading record
    // after record then allocates nothing.
    std::size_t used = 0;
    PropReader reader(bytes);
    PropView view;
    while (reader.next(view)) {
        if (used == out->size()) out->emplace_back();
        CEPROPVAL& p = (*out)[used++];
        p.propid = view.propid;
        p.flags = 0;
        p.num = view.num;
        p.str.clear();
        p.blob.clear();
        if (view.type() == CEVT_LPWSTR) {
            assignText(view.bytes, p.str);
        } else if (!fixedWidth(view.type())) {
            p.blob.assign(view.bytes.begin(), view.bytes.end());
        }
    }
    if (reader.failed()) return false;
    out->resize(used);
    return true;
}

std::string sortKeyOf(const CEPROPVAL& value) {
    std::string key(1, '\0');
    switch (value.type()) {
        case CEVT_I2:
            putBE(key, (value.num ^ 0x8000) & 0xFFFF, 2);
            break;
        case CEVT_I4:
            putBE(key, (value.num ^ 0x80000000) & 0xFFFFFFFF, 4);
            break;
        case CEVT_LPWSTR:
            for (char16_t c : value.str) putBE(key, c, 2);
            break;
        case CEVT_BLOB:
            key.append(reinterpret_cast<const char*>(value.blob.data()), value.blob.size());
            break;
        default:
            putBE(key, value.num, fixedWidth(value.type()));
            break;
    }
    return key;
}

std::string missingSortKey() {
    return std::string(1, '\1');
}

std::string recordSortKey(const std::vector<CEPROPVAL>& props, std::uint32_t sortProp) {
    for (const CEPROPVAL& p : props) {
        if (p.propid == sortProp) return sortKeyOf(p);
    }
    return missingSortKey();
}

}  // namespace qb
