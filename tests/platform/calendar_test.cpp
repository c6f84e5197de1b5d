#include "platform/calendar.h"

#include <cstdlib>
#include <ctime>

#include <gtest/gtest.h>

namespace qb {
namespace {

constexpr FILETIME kTicksPerDay = 864'000'000'000;

struct KnownTime {
    SYSTEMTIME fields;  // year, month, day of week, day, ...
    FILETIME ticks;
};

TEST(CalendarTest, KnownTimesConvertBothWays) {
    const KnownTime cases[] = {
        {{1601, 1, 1, 1, 0, 0, 0, 0}, 0},
        {{1601, 1, 1, 1, 0, 0, 0, 1}, 10'000},
        {{1601, 1, 2, 2, 0, 0, 0, 0}, kTicksPerDay},
        {{1970, 1, 4, 1, 0, 0, 0, 0}, 116'444'736'000'000'000},
        {{1900, 3, 4, 1, 0, 0, 0, 0}, 94'405'824'000'000'000},
        {{2000, 2, 2, 29, 12, 30, 45, 500}, 125'963'010'455'000'000},
        {{9999, 12, 5, 31, 23, 59, 59, 999}, 2'650'467'743'999'990'000},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fields.wYear);
        FILETIME ft = 1;
        ASSERT_TRUE(systemTimeToFileTime(c.fields, &ft));
        EXPECT_EQ(ft, c.ticks);
        SYSTEMTIME back;
        ASSERT_TRUE(fileTimeToSystemTime(c.ticks, &back));
        EXPECT_EQ(back, c.fields);
    }
}

TEST(CalendarTest, InvalidFieldsAreRefused) {
    const SYSTEMTIME cases[] = {
        {1600, 12, 0, 31, 0, 0, 0, 0}, {30828, 1, 0, 1, 0, 0, 0, 0},   {2026, 0, 0, 1, 0, 0, 0, 0},
        {2026, 13, 0, 1, 0, 0, 0, 0},  {2026, 1, 0, 0, 0, 0, 0, 0},    {2026, 1, 0, 32, 0, 0, 0, 0},
        {2026, 4, 0, 31, 0, 0, 0, 0},  {2026, 2, 0, 29, 0, 0, 0, 0},   {1900, 2, 0, 29, 0, 0, 0, 0},
        {2000, 2, 0, 30, 0, 0, 0, 0},  {2026, 1, 0, 1, 24, 0, 0, 0},   {2026, 1, 0, 1, 0, 60, 0, 0},
        {2026, 1, 0, 1, 0, 0, 60, 0},  {2026, 1, 0, 1, 0, 0, 0, 1000},
    };
    for (const auto& st : cases) {
        FILETIME ft = 42;
        EXPECT_FALSE(systemTimeToFileTime(st, &ft))
            << st.wYear << '-' << st.wMonth << '-' << st.wDay << ' ' << st.wHour << ':'
            << st.wMinute << ':' << st.wSecond << '.' << st.wMilliseconds;
        EXPECT_EQ(ft, 42u);
    }
}

TEST(CalendarTest, LastConvertibleTick) {
    FILETIME end;
    ASSERT_TRUE(systemTimeToFileTime(makeDate(30827, 12, 31, 23, 59, 59, 999), &end));
    end += 10'000;
    SYSTEMTIME st;
    EXPECT_TRUE(fileTimeToSystemTime(end - 1, &st));
    EXPECT_EQ(st, makeDate(30827, 12, 31, 23, 59, 59, 999));
    EXPECT_FALSE(fileTimeToSystemTime(end, &st));
    EXPECT_FALSE(fileTimeToSystemTime(~FILETIME{0}, &st));
}

// Walks day by day, checking each date follows the one before it by the
// Gregorian rules, so month lengths, leap years and weekdays all agree.
TEST(CalendarTest, ConsecutiveDaysFollowTheCalendar) {
    auto isLeap = [](int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; };
    const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    SYSTEMTIME prev;
    ASSERT_TRUE(fileTimeToSystemTime(0, &prev));
    for (FILETIME day = 1; day < 400 * 366; ++day) {
        SYSTEMTIME cur;
        ASSERT_TRUE(fileTimeToSystemTime(day * kTicksPerDay + kTicksPerDay / 2, &cur));
        const int length = prev.wMonth == 2 && isLeap(prev.wYear) ? 29 : lengths[prev.wMonth - 1];
        SYSTEMTIME expected = prev;
        expected.wHour = 12;
        expected.wDayOfWeek = (prev.wDayOfWeek + 1) % 7;
        if (prev.wDay < length) {
            ++expected.wDay;
        } else {
            expected.wDay = 1;
            expected.wMonth = prev.wMonth % 12 + 1;
            if (expected.wMonth == 1) ++expected.wYear;
        }
        ASSERT_EQ(cur, expected) << "day " << day;
        FILETIME back;
        ASSERT_TRUE(systemTimeToFileTime(cur, &back));
        ASSERT_EQ(back, day * kTicksPerDay + kTicksPerDay / 2);
        prev = cur;
        prev.wHour = 0;
    }
}

class LocalNowTest : public ::testing::Test {
  protected:
    void TearDown() override { unsetenv("QUILLARBOR_NOW"); }
};

TEST_F(LocalNowTest, OverrideIsHonouredWhenValid) {
    setenv("QUILLARBOR_NOW", "2024-02-29T23:58:07", 1);
    EXPECT_EQ(localNow(), makeDate(2024, 2, 29, 23, 58, 7));
    EXPECT_EQ(localNow().wDayOfWeek, 4);
}

TEST_F(LocalNowTest, InvalidOverrideFallsBackToTheClock) {
    for (const char* value : {"2023-02-29T10:00:00", "2026-01-01 10:00:00", "2026-01-01T10:00",
                              "2026-1-01T10:00:00", "2026-01-01T24:00:00", "soon", ""}) {
        setenv("QUILLARBOR_NOW", value, 1);
        const std::time_t before = std::time(nullptr);
        const SYSTEMTIME now = localNow();
        std::tm local{};
        localtime_r(&before, &local);
        EXPECT_EQ(now.wYear, local.tm_year + 1900) << value;
        EXPECT_EQ(now.wDayOfWeek, makeDate(now.wYear, now.wMonth, now.wDay).wDayOfWeek);
        FILETIME ft;
        EXPECT_TRUE(systemTimeToFileTime(now, &ft)) << value;
    }
}

}  // namespace
}  // namespace qb
