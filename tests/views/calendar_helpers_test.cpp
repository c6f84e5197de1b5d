#include "views/calendar_helpers.h"

#include <gtest/gtest.h>

#include "platform/calendar.h"

namespace qb {
namespace {

struct Step {
    SYSTEMTIME from;
    int n;
    SYSTEMTIME expected;
};

TEST(CalendarHelpersTest, TickArithmetic) {
    const struct {
        bool (*add)(SYSTEMTIME&, int);
        Step step;
    } cases[] = {
        {addDays, {makeDate(2026, 12, 31, 9, 15), 1, makeDate(2027, 1, 1, 9, 15)}},
        {addDays, {makeDate(2024, 2, 28), 1, makeDate(2024, 2, 29)}},
        {addDays, {makeDate(2023, 2, 28), 1, makeDate(2023, 3, 1)}},
        {addDays, {makeDate(2024, 3, 1), -1, makeDate(2024, 2, 29)}},
        {addDays, {makeDate(2026, 3, 23, 1, 30), 7, makeDate(2026, 3, 30, 1, 30)}},
        {addDays, {makeDate(2026, 1, 7, 0, 0, 0, 250), -7, makeDate(2025, 12, 31, 0, 0, 0, 250)}},
        {addDays, {makeDate(2000, 1, 1), 366, makeDate(2001, 1, 1)}},
        {addMinutes, {makeDate(2026, 12, 31, 23, 59), 1, makeDate(2027, 1, 1)}},
        {addMinutes, {makeDate(2026, 3, 1), -1, makeDate(2026, 2, 28, 23, 59)}},
        {addMinutes, {makeDate(2026, 5, 4, 8), 24 * 60 + 90, makeDate(2026, 5, 5, 9, 30)}},
        {addSeconds, {makeDate(2026, 5, 5), 86400 - 1, makeDate(2026, 5, 5, 23, 59, 59)}},
        {addSeconds, {makeDate(2026, 5, 5), -1, makeDate(2026, 5, 4, 23, 59, 59)}},
    };
    for (const auto& c : cases) {
        SYSTEMTIME date = c.step.from;
        EXPECT_TRUE(c.add(date, c.step.n));
        EXPECT_EQ(date, c.step.expected) << c.step.from.wYear << '-' << c.step.from.wMonth << '-'
                                         << c.step.from.wDay << " + " << c.step.n;
    }
}

TEST(CalendarHelpersTest, TickArithmeticLeavesBadDatesAlone) {
    SYSTEMTIME first = makeDate(1601, 1, 1);
    EXPECT_FALSE(addSeconds(first, -1));
    EXPECT_EQ(first, makeDate(1601, 1, 1));

    SYSTEMTIME invalid = makeDate(2026, 2, 30);
    invalid.wDayOfWeek = 3;
    const SYSTEMTIME before = invalid;
    EXPECT_FALSE(addDays(invalid, 1));
    EXPECT_EQ(invalid, before);
    // A step of nothing touches nothing, not even a stale day of week.
    EXPECT_TRUE(addDays(invalid, 0));
    EXPECT_TRUE(addMinutes(invalid, 0));
    EXPECT_EQ(invalid, before);

    SYSTEMTIME date = makeDate(2026, 1, 1);
    EXPECT_FALSE(addDays(date, 2'000'000'000));
    EXPECT_EQ(date, makeDate(2026, 1, 1));
}

TEST(CalendarHelpersTest, AddMonthsWrapsOnceAndGoesToTheFirst) {
    const Step cases[] = {
        {makeDate(2026, 12, 31, 10, 20), 1, makeDate(2027, 1, 1, 10, 20)},
        {makeDate(2027, 1, 31), -1, makeDate(2026, 12, 1)},
        {makeDate(2024, 1, 31), 1, makeDate(2024, 2, 1)},
        {makeDate(2024, 3, 15), -1, makeDate(2024, 2, 1)},
        {makeDate(2026, 6, 15), 0, makeDate(2026, 6, 1)},
        {makeDate(2026, 11, 2), 1, makeDate(2026, 12, 1)},
        {makeDate(2026, 5, 9), -4, makeDate(2026, 1, 1)},
    };
    for (const auto& c : cases) {
        SYSTEMTIME date = c.from;
        addMonths(date, c.n);
        EXPECT_EQ(date, c.expected) << c.from.wYear << '-' << c.from.wMonth << " + " << c.n;
    }
}

TEST(CalendarHelpersTest, SetDayAndClearTime) {
    SYSTEMTIME date = makeDate(2026, 2, 10, 17, 45, 30, 999);
    for (int outOfRange : {0, 32, -1}) {
        setDay(date, outOfRange);
        EXPECT_EQ(date, makeDate(2026, 2, 10, 17, 45, 30, 999));
    }
    setDay(date, 28);
    EXPECT_EQ(date, makeDate(2026, 2, 28, 17, 45, 30, 999));
    clearTime(date);
    EXPECT_EQ(date, makeDate(2026, 2, 28));
}

// The floating-point formula must agree with the calendar conversion across
// five centuries of leap-year rules.
TEST(CalendarHelpersTest, DayOfWeekAgreesWithTheCalendar) {
    SYSTEMTIME date = makeDate(1601, 1, 1);
    for (int i = 0; i < 365 * 500; ++i) {
        ASSERT_EQ(dayOfWeek(date), date.wDayOfWeek)
            << date.wYear << '-' << date.wMonth << '-' << date.wDay;
        ASSERT_TRUE(addDays(date, 1));
    }
    date = makeDate(9999, 12, 31);
    EXPECT_EQ(dayOfWeek(date), 5);
}

TEST(CalendarHelpersTest, IsoWeeksAroundNewYear) {
    const struct {
        SYSTEMTIME date;
        int week;
    } cases[] = {
        {makeDate(2026, 1, 1), 1},   {makeDate(2026, 12, 31), 53}, {makeDate(2027, 1, 1), 53},
        {makeDate(2027, 1, 3), 53},  {makeDate(2027, 1, 4), 1},    {makeDate(2020, 12, 31), 53},
        {makeDate(2021, 1, 3), 53},  {makeDate(2021, 1, 4), 1},    {makeDate(2024, 12, 30), 1},
        {makeDate(2025, 12, 29), 1}, {makeDate(2008, 12, 29), 1},  {makeDate(2010, 1, 3), 53},
        {makeDate(2005, 1, 2), 53},  {makeDate(2026, 6, 15), 25},  {makeDate(2000, 1, 1), 52},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(isoWeekNumber(c.date), c.week)
            << c.date.wYear << '-' << c.date.wMonth << '-' << c.date.wDay;
    }
}

// ISO weeks by their definition: the week holds the same Thursday as the
// date, and its number counts the Thursdays of that Thursday's year.
TEST(CalendarHelpersTest, IsoWeekMatchesTheThursdayRule) {
    SYSTEMTIME date = makeDate(1900, 1, 1);
    while (date.wYear < 2101) {
        SYSTEMTIME thursday = date;
        addDays(thursday, 3 - (date.wDayOfWeek + 6) % 7);
        SYSTEMTIME jan1 = makeDate(thursday.wYear, 1, 1);
        FILETIME a, b;
        ASSERT_TRUE(systemTimeToFileTime(thursday, &a));
        ASSERT_TRUE(systemTimeToFileTime(jan1, &b));
        const int dayOfYear = static_cast<int>((a - b) / 864'000'000'000);
        ASSERT_EQ(isoWeekNumber(date), dayOfYear / 7 + 1)
            << date.wYear << '-' << date.wMonth << '-' << date.wDay;
        ASSERT_TRUE(addDays(date, 1));
    }
}

TEST(CalendarHelpersTest, WeekStart) {
    const struct {
        SYSTEMTIME date;
        bool mondayFirst;
        SYSTEMTIME expected;
    } cases[] = {
        {makeDate(2026, 3, 8), true, makeDate(2026, 3, 2)},  // Sunday
        {makeDate(2026, 3, 8), false, makeDate(2026, 3, 8)},
        {makeDate(2026, 3, 2), true, makeDate(2026, 3, 2)},  // Monday
        {makeDate(2026, 3, 2), false, makeDate(2026, 3, 1)},
        {makeDate(2027, 1, 2, 14, 5), false, makeDate(2026, 12, 27, 14, 5)},  // Saturday
        {makeDate(2027, 1, 2), true, makeDate(2026, 12, 28)},
    };
    for (const auto& c : cases) {
        SYSTEMTIME date = c.date;
        weekStart(date, c.mondayFirst);
        EXPECT_EQ(date, c.expected) << c.date.wYear << '-' << c.date.wMonth << '-' << c.date.wDay
                                    << (c.mondayFirst ? " Monday" : " Sunday");
    }
}

}  // namespace
}  // namespace qb
