#include "entry/duration_rule.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "app/option_choices.h"

namespace qb {
namespace {

Settings granularity(std::uint16_t minutes) {
    Settings s = defaultSettings();
    s.optionFlags |= kDurationGranularity;
    s.minTime = minutes;
    return s;
}

TEST(NumberText, DoubleReadsTheLeadingDecimalNumberOnly) {
    struct Case {
        std::u16string text;
        double value;
    };
    const Case cases[] = {
        {u"1.5", 1.5},      {u"1,5", 1.0},
        {u"", 0.0},         {u"abc", 0.0},
        {u".5", 0.5},       {u"2.", 2.0},
        {u"  3.25h", 3.25}, {u"+4", 4.0},
        {u"-0.5", -0.5},    {u"1e2", 100.0},
        {u"1e", 1.0},       {u"1e+", 1.0},
        {u"2E-1", 0.2},     {u"0x10", 0.0},
        {u"inf", 0.0},      {u"-", 0.0},
        {u".", 0.0},        {u"1.2.3", 1.2},
        {u"00012", 12.0},   {u"1e999", INFINITY},
        {u"1e-999", 0.0},   {u"0.001e400", INFINITY},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseNumber(c.text), c.value) << std::string(c.text.begin(), c.text.end());
    }
}

TEST(NumberText, HundredthsAreCutInDecimal) {
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    struct Case {
        std::u16string text;
        std::int64_t hundredths;
    };
    // Each of the first row falls just below its value as a double, so a
    // product with 100 would lose a hundredth.
    const Case cases[] = {
        {u"2.30", 230},
        {u"8.70", 870},
        {u"1.16", 116},
        {u"1.15", 115},
        {u"0.29", 29},
        {u"0.58", 58},
        {u"2.05", 205},
        {u"4.35", 435},
        {u"1.239", 123},
        {u"12.999", 1299},
        {u"0.009", 0},
        {u"655.35", 65535},
        {u"1,5", 100},
        {u"", 0},
        {u"abc", 0},
        {u".5", 50},
        {u"2.", 200},
        {u"  3.25h", 325},
        {u"+4", 400},
        {u"-0.5", -50},
        {u"-0.019", -1},
        {u"1e2", 10000},
        {u"2E-1", 20},
        {u"1.2345e2", 12345},
        {u"1e", 100},
        {u"1.2.3", 120},
        {u"00012", 1200},
        {u"0x10", 0},
        {u"1e-999", 0},
        {u"1e999", kMax},
        {u"-1e999", -kMax},
        {u"0e99999", 0},
        {u"42949672.95", 4294967295},
        {u"123456789012345678901234", kMax},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseHundredths(c.text), c.hundredths)
            << std::string(c.text.begin(), c.text.end());
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

TEST(DurationRule, TypedHours) {
    struct Case {
        std::u16string text;
        std::uint16_t granularityMinutes;  // 0: granularity off
        std::uint16_t duration;
    };
    // Cut, never rounded; with a step, always up to the next whole step, and
    // a value that reads as a whole number of steps stays.
    const Case cases[] = {
        {u"1.239", 0, 123},   {u"1.15", 0, 115},     {u"2.30", 0, 230},      {u"8.70", 0, 870},
        {u"12.999", 0, 1299}, {u"655.35", 0, 65535}, {u"0", 15, 0},          {u"1.1", 15, 125},
        {u"1.25", 15, 125},   {u"0.01", 15, 25},     {u"1.0", 10, 100},      {u"0.5", 20, 66},
        {u"0.1", 6, 10},      {u"0.11", 6, 20},      {u"2.0", 45, 225},      {u"0.83", 10, 83},
        {u"0.84", 10, 100},   {u"0.16", 10, 16},     {u"0.17", 10, 17},      {u"0.18", 10, 33},
        {u"1.66", 20, 166},   {u"1.67", 20, 167},    {u"1.68", 20, 200},     {u"0.67", 40, 67},
        {u"0.66", 40, 66},    {u"0.68", 40, 133},    {u"655.25", 15, 65525},
    };
    for (const Case& c : cases) {
        Settings s = c.granularityMinutes ? granularity(c.granularityMinutes) : defaultSettings();
        EXPECT_EQ(durationFromText(c.text, s), c.duration)
            << std::string(c.text.begin(), c.text.end()) << " h, step " << c.granularityMinutes;
    }
}

TEST(DurationRule, OutOfRangeIsRefusedNeverWrapped) {
    const Settings plain = defaultSettings();
    for (std::u16string_view text : {u"-0.01", u"-1", u"655.36", u"700", u"1e9", u"99999999"}) {
        EXPECT_EQ(durationFromText(text, plain), std::nullopt)
            << std::string(text.begin(), text.end());
    }
    // The step would take it past the end.
    EXPECT_EQ(durationFromText(u"655.35", granularity(15)), std::nullopt);
    EXPECT_EQ(durationFromHundredths(std::numeric_limits<std::int64_t>::min(), plain),
              std::nullopt);
    EXPECT_EQ(durationFromSeconds(655 * 3600 + 21 * 60, plain), 65535);  // 655.35 h
    EXPECT_EQ(durationFromSeconds(655 * 3600 + 21 * 60 + 35, plain), 65535);
    EXPECT_EQ(durationFromSeconds(655 * 3600 + 21 * 60 + 36, plain), std::nullopt);
    EXPECT_EQ(durationFromSeconds(std::numeric_limits<std::int64_t>::max(), plain), std::nullopt);
    EXPECT_EQ(durationFromSeconds(-1, plain), std::nullopt);
    // An end earlier within the start's hour gives a negative span.
    EXPECT_EQ(durationFromMinutes(-25, plain), std::nullopt);
    EXPECT_EQ(durationFromMinutes(-25, granularity(15)), std::nullopt);
    EXPECT_EQ(durationFromMinutes(39322, plain), std::nullopt);
}

TEST(DurationRule, GranularityIsDecidedInWholeSeconds) {
    // For every choice of the options: a span of exactly n steps stays n
    // steps (cut after the second decimal), one second more is n + 1 steps,
    // and the same holds for the minutes of the start/end dialog.
    for (std::uint16_t minutes : kMinTimeChoices) {
        const Settings s = granularity(minutes);
        const std::int64_t step = minutes * 60;
        for (std::int64_t n = 1; n * step <= 12 * 3600; ++n) {
            const auto cut = [](std::int64_t seconds) {
                return static_cast<std::uint16_t>(seconds * 100 / 3600);
            };
            EXPECT_EQ(durationFromSeconds(n * step, s), cut(n * step)) << minutes << " x" << n;
            EXPECT_EQ(durationFromSeconds(n * step - 1, s), cut(n * step)) << minutes << " x" << n;
            EXPECT_EQ(durationFromSeconds(n * step + 1, s), cut((n + 1) * step))
                << minutes << " x" << n;
            EXPECT_EQ(durationFromMinutes(n * minutes, s), cut(n * step)) << minutes << " x" << n;
            // The hours as the drop-down and the list show them stay too.
            const std::u16string shown = durationText(cut(n * step));
            EXPECT_EQ(durationFromText(shown, s), cut(n * step)) << minutes << " x" << n;
        }
        EXPECT_EQ(durationFromSeconds(0, s), 0) << minutes;
    }
    EXPECT_EQ(durationFromMinutes(50, granularity(10)), 83);
    EXPECT_EQ(durationFromMinutes(100, granularity(20)), 166);
    EXPECT_EQ(durationFromSeconds(1, granularity(15)), 25);
    // Without granularity the seconds are cut: 59 s is 1.6 hundredths.
    EXPECT_EQ(durationFromSeconds(5400, defaultSettings()), 150);
    EXPECT_EQ(durationFromSeconds(59, defaultSettings()), 1);
    EXPECT_EQ(durationFromMinutes(10, defaultSettings()), 16);
    // A minTime of 0 means no rounding.
    EXPECT_EQ(durationFromText(u"1.1", granularity(0)), 110);
}

TEST(DurationItems, EveryItemStoresWhatItShows) {
    // Each step choice, with granularity off and with each granularity whose
    // step divides the item's minutes.
    for (std::uint16_t interval = 0; interval <= 4; ++interval) {
        const int step = durationStepMinutes(interval);
        const std::vector<std::u16string> items = durationItems(interval);
        for (std::size_t i = 0; i < items.size(); ++i) {
            const std::u16string& item = items[i];
            const std::string what = std::string(item.begin(), item.end());
            const std::optional<std::uint16_t> plain = durationFromText(item, defaultSettings());
            ASSERT_TRUE(plain.has_value()) << what;
            EXPECT_EQ(durationText(*plain), item) << what;
            const int minutes = step * static_cast<int>(i + 1);
            for (std::uint16_t g : kMinTimeChoices) {
                if (minutes % g != 0) continue;
                EXPECT_EQ(durationFromText(item, granularity(g)), plain) << what << ", step " << g;
            }
        }
    }
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
