#include "platform/string_printf.h"

#include <charconv>

#include <cstdarg>
#include <cstdio>

namespace qb {

std::string stringPrintf(const char* format, ...) {
    char small[128];
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(small, sizeof small, format, args);
    va_end(args);
    std::string result;
    if (n < 0) {
        va_end(copy);
        return result;
    }
    if (static_cast<std::size_t>(n) < sizeof small) {
        result.assign(small, n);
    } else {
        result.resize(n + 1);
        std::vsnprintf(result.data(), result.size(), format, copy);
        result.resize(n);
    }
    va_end(copy);
    return result;
}

std::string hundredthsText(std::uint64_t hundredths) {
    char text[32];
    char* end = std::to_chars(text, text + sizeof text, hundredths / 100).ptr;
    const unsigned cents = static_cast<unsigned>(hundredths % 100);
    *end++ = '.';
    *end++ = static_cast<char>('0' + cents / 10);
    *end++ = static_cast<char>('0' + cents % 10);
    return std::string(text, end);
}

}  // namespace qb
