#include "entry/duration_rule.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace qb {
namespace {

Settings granularity(std::uint16_t minutes) {
    Settings s = defaultSettings();
    s.optionFlags |= kDurationGranularity;
    s.minTime = minutes;
    return s;
}

TEST(DurationParse, LeadingDecimalNumberOnly) {
    struct Case {
        std::u16string text;
        double hours;
    };
    const Case cases[] = {
        {u"1.5", 1.5},    {u"1,5", 1.0},   {u"", 0.0},         {u"abc", 0.0},
        {u".5", 0.5},     {u"2.", 2.0},    {u"  3.25h", 3.25}, {u"+4", 4.0},
        {u"-0.5", -0.5},  {u"1e2", 100.0}, {u"1e", 1.0},       {u"1e+", 1.0},
        {u"2E-1", 0.2},   {u"0x10", 0.0},  {u"inf", 0.0},      {u"-", 0.0},
        {u".", 0.0},      {u"1.2.3", 1.2}, {u"00012", 12.0},   {u"1e999", INFINITY},
        {u"1e-999", 0.0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseHours(c.text), c.hours) << std::string(c.text.begin(), c.text.end());
    }
}

TEST(DurationParse, LetterTestIsLoose) {
    struct Case {
        std::u16string text;
        bool letter;
    };
    const Case cases[] = {
        {u"", false},
        {u"1.5", false},
        {u"1,5", false},
        {u"-+ .,", false},
        {u"12 €", false},
        {u"\u00A0", false},
        {u"1e2", true},
        {u"1.5h", true},
        {u"Z", true},
        {u"é", true},
        {u"\u03C0", true},  // Greek pi
        {u"\u0436", true},
        {u"\u65E5", true},
        {u"\uFF21", true},  // Cyrillic, CJK,
                            // full-width A
        {u"\u0661", false},
        {u"\uFF11", false},
        {u"\u00D7", false},  // Arabic-Indic and
                             // full-width digits, ×
        {u"\U00020000", true},
        {u"\U0001F600", false},  // CJK ext. B, an emoji
    };
    for (const Case& c : cases) {
        EXPECT_EQ(holdsLetter(c.text), c.letter) << static_cast<int>(c.text[0]);
    }
}

TEST(DurationRule, HoursToHundredths) {
    struct Case {
        double hours;
        std::uint16_t granularityMinutes;  // 0: granularity off
        std::uint16_t duration;
    };
    const Case cases[] = {
        {1.239, 0, 123},                  // truncated, never rounded
        {1.5, 0, 150},   {1.15, 0, 114},  // 1.15 × 100 is just below 115 as a double
        {0.0, 0, 0},     {655.35, 0, 65535}, {655.36, 0, 0},  // beyond the field: its low 16 bits
        {1.1, 15, 125},                                       // up to the next quarter hour
        {1.25, 15, 125},                                      // a whole step stays
        {0.01, 15, 25},  {0.0, 15, 0},       {1.0, 10, 100},
        {0.5, 20, 66},  // 0.5 h = 1.5 steps of 20 min -> 0.666...
        {0.1, 6, 10},    {0.11, 6, 20},      {2.0, 45, 225},  // 2.666 steps -> 3 × 0.75
    };
    for (const Case& c : cases) {
        Settings s = c.granularityMinutes ? granularity(c.granularityMinutes) : defaultSettings();
        EXPECT_EQ(durationFromHours(c.hours, s), c.duration)
            << c.hours << " h, step " << c.granularityMinutes;
    }
}

TEST(DurationRule, NegativeSpansAreKeptAsTheirBitPattern) {
    // -25 minutes = -0.41666 h -> -41 hundredths, stored unsigned.
    EXPECT_EQ(durationFromMinutes(-25, defaultSettings()), static_cast<std::uint16_t>(-41));
    // With granularity a negative value is not rounded.
    EXPECT_EQ(durationFromMinutes(-25, granularity(15)), static_cast<std::uint16_t>(-41));
}

TEST(DurationRule, TimerSecondsAndDialogMinutes) {
    const Settings plain = defaultSettings();
    EXPECT_EQ(durationFromSeconds(5400, plain), 150);
    EXPECT_EQ(durationFromSeconds(59, plain), 1);  // 1.6 hundredths
    EXPECT_EQ(durationFromSeconds(1, granularity(15)), 25);
    EXPECT_EQ(durationFromSeconds(0, granularity(15)), 0);
    EXPECT_EQ(durationFromMinutes(45, plain), 75);
    EXPECT_EQ(durationFromMinutes(10, plain), 16);  // 0.1666 h
}

TEST(DurationItems, OneStepToTwelveHours) {
    struct Case {
        std::uint16_t interval;
        std::size_t count;
        std::u16string first;
        std::u16string second;
    };
    const Case cases[] = {
        {0, 72, u"0.17", u"0.33"},  {1, 48, u"0.25", u"0.50"},
        {2, 36, u"0.33", u"0.67"},  {3, 24, u"0.50", u"1.00"},
        {4, 120, u"0.10", u"0.20"}, {9, 24, u"0.50", u"1.00"},  // unknown choice: the default step
    };
    for (const Case& c : cases) {
        const auto items = durationItems(c.interval);
        ASSERT_EQ(items.size(), c.count) << c.interval;
        EXPECT_EQ(items[0], c.first);
        EXPECT_EQ(items[1], c.second);
        EXPECT_EQ(items.back(), u"12.00");
    }
    EXPECT_EQ(timeIntervalLabel(4), u"6 Minutes");
    EXPECT_EQ(timeIntervalLabel(0), u"10 Minute");
    EXPECT_TRUE(timeIntervalLabel(5).empty());
}

TEST(SetTimes, EndOffsetFromDuration) {
    struct Case {
        std::uint16_t duration;
        int minutes;
    };
    const Case cases[] = {
        {17, 10},  {33, 20}, {67, 40}, {83, 49},  // 0.83 is not exactly 0.83 here: 49.8 truncated
        {117, 70},                                // 1.17 misses the exact test: 70.2 truncated
        {150, 90}, {75, 45}, {1, 0},   {0, 0},
    };
    for (const Case& c : cases) EXPECT_EQ(endOffsetMinutes(c.duration), c.minutes) << c.duration;
}

TEST(SetTimes, SpanMovesTheEndToTheNextDayByHoursOnly) {
    auto at = [](int h, int m, int s = 0) {
        SYSTEMTIME t{2024, 5, 3, 10, 0, 0, 0, 0};
        t.wHour = static_cast<std::uint16_t>(h);
        t.wMinute = static_cast<std::uint16_t>(m);
        t.wSecond = static_cast<std::uint16_t>(s);
        return t;
    };
    struct Case {
        SYSTEMTIME start;
        SYSTEMTIME end;
        int minutes;
    };
    const Case cases[] = {
        {at(23, 30), at(0, 15), 45},   // next day
        {at(10, 30), at(10, 5), -25},  // same hour: not moved, negative
        {at(9, 0), at(17, 30), 510},  {at(9, 0, 1), at(9, 15, 0), 14},  // whole minutes, truncated
        {at(9, 10), at(9, 10), 0},
    };
    for (const Case& c : cases) EXPECT_EQ(spanMinutes(c.start, c.end), c.minutes);
    // The dates of the pickers do not count.
    SYSTEMTIME otherDay = at(0, 15);
    otherDay.wDay = 11;
    EXPECT_EQ(spanMinutes(at(23, 30), otherDay), 45);
    EXPECT_EQ(durationFromMinutes(spanMinutes(at(23, 30), at(0, 15)), defaultSettings()), 75);
}

}  // namespace
}  // namespace qb
