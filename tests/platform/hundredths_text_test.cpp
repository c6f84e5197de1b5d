#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "platform/string_printf.h"

namespace qb::testing {
namespace {

// Exports write stored hundredths without printf; the text must be printf's
// to the byte, up to the largest rate a record can hold.
TEST(HundredthsText, IsWhatPrintfWrites) {
    for (std::uint64_t h : {0ull, 1ull, 5ull, 10ull, 99ull, 100ull, 115ull, 230ull, 1299ull,
                            65535ull, 123456789ull, 4294967295ull}) {
        EXPECT_EQ(hundredthsText(h), stringPrintf("%.2f", h * 0.01)) << h;
    }
    for (std::uint64_t h = 0; h < 200000; h += 7) {
        ASSERT_EQ(hundredthsText(h), stringPrintf("%.2f", h * 0.01)) << h;
    }
}

std::string twoDecimalsOf(double value) {
    std::string out;
    appendTwoDecimals(value, out);
    std::u16string wide;
    appendTwoDecimals(value, wide);
    EXPECT_EQ(std::string(wide.begin(), wide.end()), out) << value;
    return out;
}

// Amounts and sums are doubles; the writers' "%.2f" must round exactly as
// printf does, ties of binary fractions (0.125, 2.675) included.
TEST(TwoDecimals, IsWhatPrintfWrites) {
    for (double v : {0.0,
                     -0.0,
                     0.005,
                     0.015,
                     0.125,
                     0.375,
                     2.675,
                     1.005,
                     0.994999,
                     0.995,
                     -1.235,
                     -0.001,
                     -0.005,
                     0.004999999999,
                     0.0050000001,
                     12.344999999999,
                     12.345,
                     999999999.995,
                     999999999.985,
                     1e9,
                     1e9 + 0.005,
                     1e9 + 0.015,
                     std::nextafter(0.125, 0.0),
                     std::nextafter(0.125, 1.0),
                     1e15 + 0.125,
                     1e22,
                     1.7976931348623157e308,
                     5e-324,
                     std::numeric_limits<double>::infinity(),
                     -std::numeric_limits<double>::infinity(),
                     std::nan("")}) {
        EXPECT_EQ(twoDecimalsOf(v), stringPrintf("%.2f", v)) << v;
    }
    // Amounts as the entries make them: rate × hours, and sums of those.
    std::mt19937_64 draw(15);
    double sum = 0;
    for (int i = 0; i < 200000; ++i) {
        const double amount = (draw() % 100000) * 0.01 * ((draw() % 65536) * 0.01);
        sum += amount;
        ASSERT_EQ(twoDecimalsOf(amount), stringPrintf("%.2f", amount)) << amount;
        ASSERT_EQ(twoDecimalsOf(sum), stringPrintf("%.2f", sum)) << sum;
        const double any =
            std::ldexp(static_cast<double>(draw() >> 11), static_cast<int>(draw() % 80) - 60);
        ASSERT_EQ(twoDecimalsOf(any), stringPrintf("%.2f", any)) << any;
    }
}

TEST(HundredthsText, AppendedAndIntegersAreAsPrintf) {
    for (std::uint64_t h : {0ull, 7ull, 65535ull, 4294967295ull}) {
        std::u16string wide = u"<";
        appendHundredths(h, wide);
        const std::string narrow = hundredthsText(h);
        EXPECT_EQ(wide, u"<" + std::u16string(narrow.begin(), narrow.end()));
    }
    for (long long n : {0ll, 1ll, -1ll, 65535ll, -2147483648ll}) {
        std::u16string wide;
        appendInteger(n, wide);
        const std::string printed = stringPrintf("%lld", n);
        EXPECT_EQ(wide, std::u16string(printed.begin(), printed.end()));
    }
}

}  // namespace
}  // namespace qb::testing
