#include <gtest/gtest.h>

#include <cstdint>

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

}  // namespace
}  // namespace qb::testing
