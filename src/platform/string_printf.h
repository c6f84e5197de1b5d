#pragma once

#include <string>

namespace qb {

// printf-style formatting, the one way this system turns numbers into text
// ("%.2f", "%d"). Always the "C" locale's decimal point.
std::string stringPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace qb
