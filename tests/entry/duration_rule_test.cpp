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
    // Latin, Greek, Cyrillic, Hebrew, CJK, kana, Hangul, full-width Latin.
    const std::u16string letters = u"Zz\u00E9\u03C0\u0436\u05D0\u65E5\u3042\uAC00\uFF21";
    // Digits of any script, signs, separators, symbols.
    const std::u16string others = u"09+-., \u20AC\u00A0\u00D7\u0661\uFF11";
    for (char16_t c : letters) EXPECT_TRUE(holdsLetter(std::u16string(1, c))) << int(c);
    for (char16_t c : others) EXPECT_FALSE(holdsLetter(std::u16string(1, c))) << int(c);
    EXPECT_TRUE(holdsLetter(u"1e2"));
    EXPECT_FALSE(holdsLetter(u""));
    EXPECT_TRUE(holdsLetter(u"\U00020000"));   // a CJK ideograph beyond the BMP
    EXPECT_FALSE(holdsLetter(u"\U0001F600"));  // an emoji
}

TEST(DurationRule, HoursToHundredths) {
    struct Case {
        double hours;
        std::uint16_t granularityMinutes;  // 0: granularity off
        std::uint16_t duration;
    };
    // Truncated, never rounded: 1.239 is 123 and 1.15 (just below as a double)
    // is 114; 655.36 no longer fits and keeps its low 16 bits. With a step,
    // always up to the next whole step; a whole step stays.
    const Case cases[] = {
        {1.239, 0, 123}, {1.15, 0, 114},  {1.1, 0, 110},  {655.35, 0, 65535}, {655.36, 0, 0},
        {1.1, 15, 125},  {1.25, 15, 125}, {0.01, 15, 25}, {0.0, 15, 0},       {1.0, 10, 100},
        {0.5, 20, 66},   {0.1, 6, 10},    {0.11, 6, 20},  {2.0, 45, 225},
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
    // 0.83 and 1.17 miss the exact test: 49.8 and 70.2 minutes, truncated.
    const Case cases[] = {
        {17, 10}, {33, 20}, {67, 40}, {83, 49}, {117, 70}, {150, 90}, {75, 45}, {1, 0}, {0, 0},
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
        {at(23, 30), at(0, 15), 45},   // the end moves to the next day
        {at(10, 30), at(10, 5), -25},  // same hour: not moved, negative
        {at(9, 0, 1), at(9, 15), 14},  // whole minutes, truncated
        {at(9, 0), at(17, 30), 510},  {at(9, 10), at(9, 10), 0},
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
