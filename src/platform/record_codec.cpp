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

class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}
    bool atEnd() const { return pos_ == bytes_.size(); }
    bool take(int n, std::uint64_t* v) {
        if (bytes_.size() - pos_ < static_cast<std::size_t>(n)) return false;
        std::uint64_t r = 0;
        for (int i = 0; i < n; ++i) {
            r |= std::uint64_t{static_cast<unsigned char>(bytes_[pos_ + i])} << (8 * i);
        }
        pos_ += n;
        *v = r;
        return true;
    }
    bool takeBytes(std::size_t n, const char** p) {
        if (bytes_.size() - pos_ < n) return false;
        *p = bytes_.data() + pos_;
        pos_ += n;
        return true;
    }

  private:
    std::string_view bytes_;
    std::size_t pos_ = 0;
};

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

bool decodeProps(std::string_view bytes, std::vector<CEPROPVAL>* out) {
    // The values already in `out` are reused, buffers and all: reading record
    // after record then allocates nothing.
    std::size_t used = 0;
    Reader r(bytes);
    while (!r.atEnd()) {
        if (used == out->size()) out->emplace_back();
        CEPROPVAL& p = (*out)[used++];
        p.flags = 0;
        p.num = 0;
        p.str.clear();
        p.blob.clear();
        std::uint64_t id = 0;
        if (!r.take(4, &id)) return false;
        p.propid = static_cast<std::uint32_t>(id);
        PropType type = p.type();
        if (int width = fixedWidth(type)) {
            if (!r.take(width, &p.num)) return false;
        } else {
            // Strings count UTF-16 units; blobs, and every type this store
            // does not know (the writer keeps those as counted bytes), count
            // bytes. An unknown one is kept opaque, for readers to pass over.
            std::uint64_t n = 0;
            const char* data = nullptr;
            if (!r.take(4, &n)) return false;
            std::size_t bytesNeeded = type == CEVT_LPWSTR ? n * 2 : n;
            if (!r.takeBytes(bytesNeeded, &data)) return false;
            if (type == CEVT_LPWSTR) {
                p.str.resize(n);
                for (std::size_t i = 0; i < n; ++i) {
                    p.str[i] =
                        static_cast<char16_t>(static_cast<unsigned char>(data[2 * i]) |
                                              static_cast<unsigned char>(data[2 * i + 1]) << 8);
                }
            } else {
                p.blob.assign(data, data + n);
            }
        }
    }
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
