#include "entry/entry_amount.h"

#include <gtest/gtest.h>

#include <string>

#include "entry/number_text.h"
#include "entry/rate_rules.h"

namespace qb {
namespace {

TEST(EntryAmount, ShownWithTwoDecimals) {
    struct Case {
        std::uint16_t duration;
        std::uint32_t rate;
        std::uint16_t rateType;
        bool precise;
        std::u16string amount;
    };
    const Case cases[] = {
        {25, 15000, kFixedRate, false, u"150.00"},  // fixed: the rate whatever the duration
        {800, 15000, kFixedRate, false, u"150.00"},
        {800, 15000, kFixedRate, true, u"150.00"},
        {17, 6000, kNormalRate, true, u"10.00"},  // 10 minutes exactly
        {17, 6000, kNormalRate, false, u"10.20"},
        {33, 6000, kOvertimeRate, true, u"20.00"},
        {67, 6000, kWeekendRate, true, u"40.00"},
        {83, 6000, kNormalRate, true, u"49.80"},     // 0.83 is not matched exactly
        {117, 6000, kNormalRate, true, u"70.20"},    // nor is anything past one hour
        {150, 4000, kDiscountRate, true, u"60.00"},  // discount is just another hourly price
        {0, 6000, kNormalRate, false, u"0.00"},
        {100, 0, kFixedRate, false, u"0.00"},
    };
    for (const Case& c : cases) {
        TimeEntry e;
        e.duration = c.duration;
        e.rate = c.rate;
        e.rateType = c.rateType;
        Settings s = defaultSettings();
        if (c.precise) s.optionFlags |= kPreciseCalculation;
        EXPECT_EQ(twoDecimals(EntryAmount(e, s)), c.amount)
            << c.duration << " h/100 at " << c.rate << " type " << c.rateType;
    }
}

TEST(EntryAmount, PreciseSixthIsNotRoundedHere) {
    TimeEntry e;
    e.duration = 17;
    e.rate = 100;  // 1.00 per hour
    Settings s = defaultSettings();
    s.optionFlags |= kPreciseCalculation;
    EXPECT_DOUBLE_EQ(EntryAmount(e, s), 1.0 / 6);
}

}  // namespace
}  // namespace qb
