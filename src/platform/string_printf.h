#pragma once

#include <cstdint>
#include <string>

namespace qb {

// printf-style formatting, the one way this system turns numbers into text
// ("%.2f", "%d"). Always the "C" locale's decimal point.
std::string stringPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// What "%.2f" makes of `hundredths` × 0.01 (a stored duration or rate),
// written from the integer: the product is always far closer to the exact
// value than half a hundredth, so the text is the same, at a fraction of
// printf's cost in an export of many entries.
std::string hundredthsText(std::uint64_t hundredths);

// The same texts appended to a text being built, for writers of many
// numbers: hundredthsText, "%d", and "%.2f" of any double (std::to_chars
// writes printf's digits, rounding included, without its cost).
void appendHundredths(std::uint64_t hundredths, std::u16string& out);
void appendInteger(long long value, std::u16string& out);
void appendTwoDecimals(double value, std::string& out);
void appendTwoDecimals(double value, std::u16string& out);

}  // namespace qb
