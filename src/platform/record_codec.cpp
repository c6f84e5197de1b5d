#include "platform/record_codec.h"

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
    return static_cast<int>(PropReader::fixedWidth(type));
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

void assignText(std::string_view utf16le, std::u16string& out) {
    out.resize(utf16le.size() / 2);
    std::memcpy(out.data(), utf16le.data(), out.size() * 2);
}

namespace {

void assignValue(const PropView& view, CEPROPVAL& p) {
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

}  // namespace

bool decodeProps(std::string_view bytes, std::vector<CEPROPVAL>* out) {
    // The values already in `out` are reused, buffers and all: reading record
    // after record then allocates nothing.
    std::size_t used = 0;
    PropReader reader(bytes);
    PropView view;
    while (reader.next(view)) {
        if (used == out->size()) out->emplace_back();
        assignValue(view, (*out)[used++]);
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

std::string encodedSortKey(std::string_view props, std::uint32_t sortProp) {
    PropReader reader(props);
    PropView view;
    while (reader.next(view)) {
        if (view.propid != sortProp) continue;
        CEPROPVAL value;
        assignValue(view, value);
        return sortKeyOf(value);
    }
    return missingSortKey();
}

}  // namespace qb
