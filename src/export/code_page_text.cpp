#include "export/code_page_text.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "platform/text.h"

namespace qb {
namespace {

bool isHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}
bool isSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

bool keepsAscii(const std::string& codePage) {
    std::u16string ascii;
    std::string expected;
    for (char c = 1; c < 0x7F; ++c) {
        ascii += static_cast<char16_t>(c);
        expected += c;
    }
    return toAnsi(ascii, codePage) == expected;
}

// Shift states (ISO-2022) and the like make a run's bytes differ from its
// units' bytes one by one; such code pages convert whole runs.
bool convertsUnitsApart(const std::string& codePage) {
    for (std::u16string_view pair :
         {u"\u00e9\u00f6", u"\u65e5\u672c", u"\u0410\u0411", u"\u20ac\u00a0", u"\uac00\u3042"}) {
        if (toAnsi(pair, codePage) !=
            toAnsi(pair.substr(0, 1), codePage) + toAnsi(pair.substr(1), codePage)) {
            return false;
        }
    }
    return true;
}

constexpr std::size_t kBlock = 16;

#if defined(__SSE2__)
// Narrows a block of units into `to` when all of them are ASCII.
bool narrowBlock(const char16_t* from, char* to) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 8));
    const __m128i beyond = _mm_and_si128(_mm_or_si128(low, high), _mm_set1_epi16(-0x80));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyond, _mm_setzero_si128())) != 0xFFFF) return false;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(low, high));
    return true;
}
#else
bool narrowBlock(const char16_t* from, char* to) {
    char16_t any = 0;
    for (std::size_t k = 0; k < kBlock; ++k) {
        any |= from[k];
        to[k] = static_cast<char>(from[k]);
    }
    return any < 0x80;
}
#endif

// Appends the ASCII units at the start of `text`; answers how many. Most
// of an export is ASCII, so units are tested and narrowed in blocks, through
// a buffer of the stack (growing `out` first would fill it with zeros).
std::size_t appendAscii(std::string& out, std::u16string_view text) {
    char narrow[16 * kBlock];
    std::size_t held = 0;
    const char16_t* in = text.data();
    std::size_t n = 0;
    for (; n + kBlock <= text.size() && narrowBlock(in + n, narrow + held); n += kBlock) {
        held += kBlock;
        if (held == sizeof narrow) {
            out.append(narrow, held);
            held = 0;
        }
    }
    for (; n < text.size() && in[n] < 0x80; ++n) {
        if (held == sizeof narrow) {
            out.append(narrow, held);
            held = 0;
        }
        narrow[held++] = static_cast<char>(in[n]);
    }
    out.append(narrow, held);
    return n;
}

}  // namespace

CodePageText::CodePageText(std::string codePage)
    : codePage_(std::move(codePage)),
      asciiAsIs_(keepsAscii(codePage_)),
      unitsApart_(asciiAsIs_ && convertsUnitsApart(codePage_)) {}

std::string_view CodePageText::unitBytes(char16_t unit) {
    if (units_.empty()) units_.resize(std::size_t{1} << 16);
    UnitBytes& known = units_[unit];
    if (known.size == 0) {
        unitScratch_ = toAnsi(std::u16string_view(&unit, 1), codePage_);
        if (unitScratch_.empty() || unitScratch_.size() > sizeof known.bytes) return unitScratch_;
        known.size = static_cast<std::uint8_t>(unitScratch_.size());
        std::memcpy(known.bytes, unitScratch_.data(), unitScratch_.size());
    }
    return {known.bytes, known.size};
}

void CodePageText::append(std::string& out, std::u16string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        // Exports are mostly ASCII, so only the other characters go through
        // the converter (once each where the code page allows); it would
        // cost more than the rest of the export.
        if (asciiAsIs_) {
            i += appendAscii(out, text.substr(i));
            if (i == text.size()) break;
        }
        if (unitsApart_ && !isSurrogate(text[i])) {
            out += unitBytes(text[i++]);
            continue;
        }
        std::size_t j = i;
        while (j < text.size() && (!asciiAsIs_ || text[j] >= 0x80) && !isSurrogate(text[j])) ++j;
        if (j > i) out += toAnsi(text.substr(i, j - i), codePage_);
        i = j;
        if (i < text.size() && isSurrogate(text[i])) {
            // A pair the code page maps (UTF-8) goes as its bytes; otherwise
            // each half is a '?' of its own.
            const bool pair =
                isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1]);
            const std::string bytes = pair ? toAnsi(text.substr(i, 2), codePage_) : std::string();
            out += bytes.empty() || bytes == "?" ? std::string(pair ? 2 : 1, '?') : bytes;
            i += pair ? 2 : 1;
        }
    }
}

}  // namespace qb
