#include "platform/text.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <map>
#include <utility>

#include <iconv.h>

#include "platform/registry.h"

namespace qb {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool isHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

void appendUtf16(char32_t cp, std::u16string* out) {
    if (cp < 0x10000) {
        out->push_back(static_cast<char16_t>(cp));
    } else {
        cp -= 0x10000;
        out->push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
        out->push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    }
}

void appendUtf8(char32_t cp, std::string* out) {
    if (cp < 0x80) {
        out->push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out->push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out->push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out->push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out->push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out->push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

// Conversion descriptors are costly to open and exports convert field by
// field, so each thread keeps the ones it has used.
class IconvCache {
  public:
    ~IconvCache() {
        for (auto& [key, cd] : open_) {
            if (cd != invalid()) iconv_close(cd);
        }
    }
    // A descriptor reset to its initial state, or invalid().
    iconv_t get(const std::string& to, const std::string& from) {
        auto key = std::make_pair(to, from);
        auto it = open_.find(key);
        if (it == open_.end()) {
            it = open_.emplace(std::move(key), iconv_open(to.c_str(), from.c_str())).first;
        }
        if (it->second != invalid()) iconv(it->second, nullptr, nullptr, nullptr, nullptr);
        return it->second;
    }
    static iconv_t invalid() { return reinterpret_cast<iconv_t>(-1); }

  private:
    std::map<std::pair<std::string, std::string>, iconv_t> open_;
};

iconv_t converter(const std::string& to, const std::string& from) {
    thread_local IconvCache cache;
    return cache.get(to, from);
}

constexpr const char* kUtf16 = "UTF-16LE";

// Runs `cd` over all of `in`. On a sequence it cannot convert, `onInvalid`
// appends the replacement to `out` and answers how many input bytes to skip.
template <typename OnInvalid>
void convertAll(iconv_t cd, std::string_view in, std::string* out, OnInvalid onInvalid) {
    char buffer[4096];
    char* inPtr = const_cast<char*>(in.data());
    std::size_t inLeft = in.size();
    bool flushing = false;
    for (;;) {
        char* outPtr = buffer;
        std::size_t outLeft = sizeof buffer;
        const std::size_t rc = flushing ? iconv(cd, nullptr, nullptr, &outPtr, &outLeft)
                                        : iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft);
        const int error = rc == static_cast<std::size_t>(-1) ? errno : 0;
        out->append(buffer, static_cast<std::size_t>(outPtr - buffer));
        if (error == E2BIG) continue;
        if (error == EILSEQ || error == EINVAL) {
            const std::size_t skip =
                std::min(onInvalid(std::string_view(inPtr, inLeft), out), inLeft);
            if (skip == 0) return;
            inPtr += skip;
            inLeft -= skip;
            continue;
        }
        if (error != 0 || flushing) return;
        flushing = true;
    }
}

std::string toLittleEndianBytes(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (char16_t c : text) {
        bytes.push_back(static_cast<char>(c & 0xFF));
        bytes.push_back(static_cast<char>(c >> 8));
    }
    return bytes;
}

char16_t unitAt(std::string_view littleEndian, std::size_t index) {
    const auto lo = static_cast<unsigned char>(littleEndian[2 * index]);
    const auto hi = static_cast<unsigned char>(littleEndian[2 * index + 1]);
    return static_cast<char16_t>(lo | (hi << 8));
}

bool isKnownCodePage(const std::string& name) {
    return converter(name, kUtf16) != IconvCache::invalid();
}

char16_t foldLatin(char16_t c) {
    if (c < 0x80) return c >= u'A' && c <= u'Z' ? c + 0x20 : c;
    if (c < 0x100) {
        if (c == 0xB5) return 0x3BC;
        return c >= 0xC0 && c <= 0xDE && c != 0xD7 ? c + 0x20 : c;
    }
    // Latin Extended-A: upper and lower case alternate, in two phases.
    if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149) return c;
    if (c == 0x178) return 0xFF;
    if (c == 0x17F) return u's';
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return c & 1 ? c + 1 : c;
    return c & 1 ? c : c + 1;
}

char16_t foldGreek(char16_t c) {
    if ((c >= 0x370 && c <= 0x373) || c == 0x376 || (c >= 0x3D8 && c <= 0x3EF)) {
        return c & 1 ? c : c + 1;
    }
    if ((c >= 0x391 && c <= 0x3A1) || (c >= 0x3A3 && c <= 0x3AB)) return c + 0x20;
    if (c >= 0x388 && c <= 0x38A) return c + 0x25;
    if (c == 0x38E || c == 0x38F) return c + 0x3F;
    if (c >= 0x3FD) return c - 0x82;
    switch (c) {
        case 0x37F:
            return 0x3F3;
        case 0x386:
            return 0x3AC;
        case 0x38C:
            return 0x3CC;
        case 0x3C2:
            return 0x3C3;
        case 0x3CF:
            return 0x3D7;
        case 0x3D0:
            return 0x3B2;
        case 0x3D1:
            return 0x3B8;
        case 0x3D5:
            return 0x3C6;
        case 0x3D6:
            return 0x3C0;
        case 0x3F0:
            return 0x3BA;
        case 0x3F1:
            return 0x3C1;
        case 0x3F4:
            return 0x3B8;
        case 0x3F5:
            return 0x3B5;
        case 0x3F7:
            return 0x3F8;
        case 0x3F9:
            return 0x3F2;
        case 0x3FA:
            return 0x3FB;
        default:
            return c;
    }
}

char16_t foldCyrillic(char16_t c) {
    if (c < 0x410) return c + 0x50;
    if (c < 0x430) return c + 0x20;
    if ((c >= 0x460 && c <= 0x481) || (c >= 0x48A && c <= 0x4BF) || c >= 0x4D0) {
        return c & 1 ? c : c + 1;
    }
    if (c == 0x4C0) return 0x4CF;
    if (c >= 0x4C1 && c <= 0x4CE) return c & 1 ? c + 1 : c;
    return c;
}

// Simple case folding (one unit to one unit) of the scripts a user's client
// and project names are written in.
char16_t foldCase(char16_t c) {
    if (c < 0x180) return foldLatin(c);
    if (c >= 0x370 && c < 0x400) return foldGreek(c);
    if (c >= 0x400 && c < 0x530) return foldCyrillic(c);
    if (c == 0x1E9E) return 0xDF;
    if ((c >= 0x1E00 && c <= 0x1E95) || (c >= 0x1EA0 && c <= 0x1EFF)) return c & 1 ? c : c + 1;
    return c;
}

}  // namespace

std::u16string utf8ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) {
            out.push_back(lead);
            ++i;
            continue;
        }
        // The allowed range of the second byte excludes overlong forms,
        // surrogates and code points past U+10FFFF.
        std::size_t length;
        char32_t cp;
        unsigned char low = 0x80, high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            cp = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            cp = lead & 0x0F;
            if (lead == 0xE0) low = 0xA0;
            if (lead == 0xED) high = 0x9F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            cp = lead & 0x07;
            if (lead == 0xF0) low = 0x90;
            if (lead == 0xF4) high = 0x8F;
        } else {
            out.push_back(kReplacement);
            ++i;
            continue;
        }
        std::size_t n = 1;
        for (; n < length && i + n < text.size(); ++n) {
            const auto next = static_cast<unsigned char>(text[i + n]);
            if (next < low || next > high) break;
            cp = (cp << 6) | (next & 0x3F);
            low = 0x80;
            high = 0xBF;
        }
        if (n < length) {
            out.push_back(kReplacement);
        } else {
            appendUtf16(cp, &out);
        }
        i += n;
    }
    return out;
}

std::string utf16ToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (isHighSurrogate(c) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            appendUtf8(0x10000 + ((char32_t{c} - 0xD800) << 10) + (text[i + 1] - 0xDC00), &out);
            ++i;
        } else if (isHighSurrogate(c) || isLowSurrogate(c)) {
            appendUtf8(kReplacement, &out);
        } else {
            appendUtf8(c, &out);
        }
    }
    return out;
}

std::string toAnsi(std::u16string_view text, const std::string& codePage) {
    std::string out;
    out.reserve(text.size());
    const iconv_t cd = converter(codePage, kUtf16);
    if (cd == IconvCache::invalid()) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char16_t c = text[i];
            if (isHighSurrogate(c) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) ++i;
            out.push_back(c < 0x80 ? static_cast<char>(c) : '?');
        }
        return out;
    }
    convertAll(cd, toLittleEndianBytes(text), &out, [](std::string_view rest, std::string* o) {
        o->push_back('?');
        const bool pair =
            rest.size() >= 4 && isHighSurrogate(unitAt(rest, 0)) && isLowSurrogate(unitAt(rest, 1));
        return std::size_t{pair ? 4u : 2u};
    });
    return out;
}

std::u16string fromAnsi(std::string_view bytes, const std::string& codePage) {
    std::u16string out;
    const iconv_t cd = converter(kUtf16, codePage);
    if (cd == IconvCache::invalid()) {
        out.reserve(bytes.size());
        for (char b : bytes) {
            const auto u = static_cast<unsigned char>(b);
            out.push_back(u < 0x80 ? u : kReplacement);
        }
        return out;
    }
    std::string utf16;
    utf16.reserve(bytes.size() * 2);
    convertAll(cd, bytes, &utf16, [](std::string_view, std::string* o) {
        o->push_back(static_cast<char>(kReplacement & 0xFF));
        o->push_back(static_cast<char>(kReplacement >> 8));
        return std::size_t{1};
    });
    out.reserve(utf16.size() / 2);
    for (std::size_t i = 0; i + 1 < utf16.size(); i += 2) out.push_back(unitAt(utf16, i / 2));
    return out;
}

std::string ansiCodePage(Registry& registry) {
    const std::string fallback = "CP1252";
    auto key = registry.openKey(RegRoot::HKEY_CURRENT_USER, "Control Panel\\International");
    if (!key) return fallback;
    std::u16string value;
    if (key->queryString("ACP", 160, &value) != ERROR_SUCCESS || value.empty()) return fallback;
    std::string name = utf16ToUtf8(value);
    if (name.find_first_not_of("0123456789") == std::string::npos) {
        name = name == "65001" ? "UTF-8" : "CP" + name;
    }
    return isKnownCodePage(name) ? name : fallback;
}

int compareStringW(std::u16string_view a, std::u16string_view b, bool ignoreCase) {
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        const char16_t x = ignoreCase ? foldCase(a[i]) : a[i];
        const char16_t y = ignoreCase ? foldCase(b[i]) : b[i];
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

}  // namespace qb
