#include "entry/number_text.h"

#include <charconv>
#include <limits>
#include <system_error>

#include "platform/string_printf.h"

namespace qb {
namespace {

bool isBlank(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}
bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

// Ranges of letters, sorted; inclusive bounds.
struct Range {
    char32_t first;
    char32_t last;
};
constexpr Range kLetters[] = {
    {0x0041, 0x005A},   {0x0061, 0x007A}, {0x00AA, 0x00AA}, {0x00B5, 0x00B5},
    {0x00BA, 0x00BA},   {0x00C0, 0x00D6}, {0x00D8, 0x00F6}, {0x00F8, 0x02C1},  // Latin, IPA
    {0x0370, 0x0373},   {0x0376, 0x0377}, {0x037B, 0x037D}, {0x0386, 0x0386},
    {0x0388, 0x03F5},   {0x03F7, 0x0481}, {0x048A, 0x052F},  // Greek, Cyrillic
    {0x0531, 0x0556},   {0x0561, 0x0587},                    // Armenian
    {0x05D0, 0x05EA},   {0x0620, 0x064A}, {0x0671, 0x06D3},  // Hebrew, Arabic
    {0x0904, 0x0939},   {0x0E01, 0x0E30},                    // Devanagari, Thai
    {0x1100, 0x11FF},   {0x1E00, 0x1FBC},  // Hangul Jamo, Latin and Greek extended
    {0x3041, 0x3096},   {0x30A1, 0x30FA},  // kana
    {0x3400, 0x4DBF},   {0x4E00, 0x9FFF}, {0xAC00, 0xD7A3},  // CJK, Hangul syllables
    {0xF900, 0xFAFF},   {0xFF21, 0xFF3A}, {0xFF41, 0xFF5A}, {0xFF66, 0xFF9D},
    {0x20000, 0x323AF},  // CJK ideographs beyond the BMP
};

bool isLetter(char32_t c) {
    for (const Range& r : kLetters) {
        if (c < r.first) return false;
        if (c <= r.last) return true;
    }
    return false;
}

}  // namespace

namespace {

// The leading decimal number of a text, taken apart: its digits without the
// point, how many of them stand before the point, and the exponent.
struct DecimalText {
    bool negative = false;
    std::string digits;
    long integerDigits = 0;
    long exponent = 0;  // kept within +-100000; beyond that nothing changes
};

// Blanks, a sign, digits with one optional point, an optional exponent that
// counts only with at least one digit ("1e" is 1). False when no digit.
bool scanDecimal(std::u16string_view text, DecimalText* out) {
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i])) ++i;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) {
        out->negative = text[i] == u'-';
        ++i;
    }
    for (; i < text.size() && isDigit(text[i]); ++i) {
        out->digits.push_back(static_cast<char>(text[i]));
    }
    out->integerDigits = static_cast<long>(out->digits.size());
    if (i < text.size() && text[i] == u'.') {
        for (++i; i < text.size() && isDigit(text[i]); ++i) {
            out->digits.push_back(static_cast<char>(text[i]));
        }
    }
    if (out->digits.empty()) return false;
    if (i < text.size() && (text[i] == u'e' || text[i] == u'E')) {
        std::size_t j = i + 1;
        bool expNegative = false;
        if (j < text.size() && (text[j] == u'+' || text[j] == u'-')) {
            expNegative = text[j] == u'-';
            ++j;
        }
        for (; j < text.size() && isDigit(text[j]); ++j) {
            if (out->exponent < 100000) out->exponent = out->exponent * 10 + (text[j] - u'0');
        }
        if (expNegative) out->exponent = -out->exponent;
    }
    return true;
}

}  // namespace

double parseNumber(std::u16string_view text) {
    DecimalText d;
    if (!scanDecimal(text, &d)) return 0.0;
    std::string number = d.digits;
    number.insert(static_cast<std::size_t>(d.integerDigits), 1, '.');
    number += "e" + std::to_string(d.exponent);
    double value = 0.0;
    auto [ptr, ec] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (ec == std::errc::result_out_of_range) {
        // Overflow or underflow: tell them apart by where the first
        // significant digit stands.
        const std::size_t first = d.digits.find_first_not_of('0');
        const long magnitude = d.integerDigits - static_cast<long>(first) + d.exponent;
        value = magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return d.negative ? -value : value;
}

std::int64_t parseHundredths(std::u16string_view text) {
    DecimalText d;
    if (!scanDecimal(text, &d)) return 0;
    const std::size_t first = d.digits.find_first_not_of('0');
    if (first == std::string::npos) return 0;
    // The digits up to the second decimal, counted from the first
    // significant one; the rest is cut.
    const long keep = d.integerDigits + d.exponent + 2 - static_cast<long>(first);
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    std::int64_t value = 0;
    for (long k = 0; k < keep; ++k) {
        const std::size_t at = first + static_cast<std::size_t>(k);
        const int digit = at < d.digits.size() ? d.digits[at] - '0' : 0;
        if (value > (kMax - digit) / 10) {
            value = kMax;
            break;
        }
        value = value * 10 + digit;
    }
    return d.negative ? -value : value;
}

bool holdsLetter(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        }
        if (isLetter(c)) return true;
    }
    return false;
}

std::u16string twoDecimals(double value) {
    std::u16string text;
    appendTwoDecimals(value, text);
    return text;
}

}  // namespace qb
