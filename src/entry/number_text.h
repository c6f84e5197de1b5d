#pragma once

// Numbers as the editor's boxes hold them: typed text in, two decimals out.

#include <cstdint>
#include <string>
#include <string_view>

namespace qb {

// The leading decimal number of the text, as C's strtod reads it in the "C"
// locale but without its hexadecimal, infinity and NaN forms: blanks, a sign,
// digits with one optional point, an optional exponent. The rest is ignored;
// text without a number reads as 0. Never depends on the process's locale.
double parseNumber(std::u16string_view text);

// The same leading number in hundredths, cut toward zero after the second
// decimal on its decimal digits, never through a binary double: "2.30" is
// 230, "8.70" 870, "1.239" 123, "-0.5" -50. Magnitudes beyond the 64-bit
// range take its end. This is how typed hours and rates become stored values.
std::int64_t parseHundredths(std::u16string_view text);

// The loose test of the numeric boxes: true only when some character is a
// letter. Digits, signs, points, commas, blanks and symbols (a currency sign)
// pass. Letters of the alphabetic scripts of the Basic Multilingual Plane
// (Latin, Greek, Cyrillic, Armenian, Hebrew, Arabic, Devanagari, Thai, kana,
// Hangul, CJK ideographs, full-width Latin) count as letters, and so do the
// CJK ideographs beyond it; other supplementary characters do not.
bool holdsLetter(std::u16string_view text);

// "%.2f" of the value.
std::u16string twoDecimals(double value);

}  // namespace qb
