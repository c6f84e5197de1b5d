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

}  // namespace qb
