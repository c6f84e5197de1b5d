#include "platform/string_printf.h"

#include <charconv>
#include <cmath>

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

namespace {

// Room for "%.2f" of the largest double: 309 digits, sign, point, decimals.
constexpr std::size_t kNumberRoom = 320;

char* putHundredths(char* at, std::uint64_t hundredths) {
    at = std::to_chars(at, at + 24, hundredths / 100).ptr;
    const unsigned cents = static_cast<unsigned>(hundredths % 100);
    *at++ = '.';
    *at++ = static_cast<char>('0' + cents / 10);
    *at++ = static_cast<char>('0' + cents % 10);
    return at;
}

// Below this magnitude the product value × 100 is within 2^-16 of exact.
constexpr double kScaledExactBelow = 1e9;
// Products whose fraction lies this close to a half go the slow way.
constexpr double kTieMargin = 1e-4;

char* putTwoDecimals(char* at, double value) {
    // Most amounts lie far from a tie at the third decimal. For them the
    // rounded product in doubles rounds as the exact value does, and the
    // text is written from whole hundredths; to_chars would spend more on
    // one amount than the rest of a CSV line costs.
    const double magnitude = std::fabs(value);
    if (magnitude < kScaledExactBelow) {
        const double scaled = magnitude * 100.0;
        const double whole = std::floor(scaled);
        const double fraction = scaled - whole;  // exact
        if (std::fabs(fraction - 0.5) > kTieMargin) {
            if (std::signbit(value)) *at++ = '-';
            return putHundredths(at, static_cast<std::uint64_t>(whole) + (fraction > 0.5 ? 1 : 0));
        }
    }
    const std::to_chars_result r =
        std::to_chars(at, at + kNumberRoom, value, std::chars_format::fixed, 2);
    if (r.ec == std::errc()) return r.ptr;
    // Unreachable while kNumberRoom holds every double; printf if not.
    return at + std::snprintf(at, kNumberRoom, "%.2f", value);
}

void widen(const char* from, const char* to, std::u16string& out) {
    out.append(from, to);
}

}  // namespace

std::string hundredthsText(std::uint64_t hundredths) {
    char text[32];
    return std::string(text, putHundredths(text, hundredths));
}

void appendHundredths(std::uint64_t hundredths, std::u16string& out) {
    char text[32];
    widen(text, putHundredths(text, hundredths), out);
}

void appendInteger(long long value, std::u16string& out) {
    char text[24];
    widen(text, std::to_chars(text, text + sizeof text, value).ptr, out);
}

void appendTwoDecimals(double value, std::string& out) {
    char text[kNumberRoom];
    out.append(text, putTwoDecimals(text, value));
}

void appendTwoDecimals(double value, std::u16string& out) {
    char text[kNumberRoom];
    widen(text, putTwoDecimals(text, value), out);
}

}  // namespace qb
