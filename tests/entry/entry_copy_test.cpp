#include "entry/entry_copy.h"

#include "bulk_support.h"

namespace qb {
namespace {

std::vector<int> days(const std::vector<SYSTEMTIME>& list) {
    std::vector<int> d;
    for (const SYSTEMTIME& st : list) d.push_back(st.wDay);
    return d;
}

TEST(EntryCopy, DayRule) {
    Settings sunday = defaultSettings();
    sunday.optionFlags &= ~kWeekStartsMonday;
    Settings monday = sunday;
    monday.optionFlags |= kWeekStartsMonday;
    const SYSTEMTIME tue = makeDate(2024, 5, 7);  // a Tuesday
    const SYSTEMTIME sat = makeDate(2024, 5, 11);
    struct Case {
        const char* what;
        SYSTEMTIME day;
        std::optional<SYSTEMTIME> until;
        bool weekend;
        const Settings& settings;
        std::vector<int> expected;
    } cases[] = {
        {"rest of a Sunday week", tue, {}, false, sunday, {8, 9, 10}},
        {"rest of a Sunday week with Saturday", tue, {}, true, sunday, {8, 9, 10, 11}},
        {"rest of a Monday week with the weekend", tue, {}, true, monday, {8, 9, 10, 11, 12}},
        {"Saturday ends a Sunday week", sat, {}, true, sunday, {}},
        {"until includes its day", tue, makeDate(2024, 5, 14), false, sunday, {8, 9, 10, 13, 14}},
        {"until across a month",
         makeDate(2024, 5, 30),
         makeDate(2024, 6, 3),
         true,
         sunday,
         {31, 1, 2, 3}},
        {"until the entry's own day", tue, tue, true, sunday, {}},
        {"until before the entry", tue, makeDate(2024, 5, 1), true, sunday, {}},
    };
    for (const Case& c : cases) {
        CopyRequest r{u"1", c.until, c.weekend};
        EXPECT_EQ(days(copyDays(c.day, r, c.settings)), c.expected) << c.what;
    }
}

using EntryCopyTest = StoreTest;

TEST_F(EntryCopyTest, CopiesKeepEverythingButDayAndDuration) {
    TimeEntry e;
    e.client = u"Acme";
    e.task = u"Design";
    e.billable = true;
    e.rate = 5000;
    e.custom2 = u"c2";
    e.duration = 300;
    systemTimeToFileTime(makeDate(2024, 5, 9, 9, 30, 1), &e.date);
    ASSERT_TRUE(saveEntry(entries, e));
    Settings settings = defaultSettings();
    CopyResult r = copyEntry(platform->file(), entries, m, e,
                             {u"1.5", makeDate(2024, 5, 13), false}, settings);
    ASSERT_TRUE(r.ok);
    ASSERT_EQ(r.created.size(), 2u);  // Friday and Monday
    TimeEntry copy = stored(r.created[1]);
    SYSTEMTIME st;
    fileTimeToSystemTime(copy.date, &st);
    EXPECT_EQ(st.wDay, 13);
    EXPECT_EQ(st.wHour, 9);
    EXPECT_TRUE(hasStartTime(copy));
    EXPECT_EQ(copy.duration, 150);
    EXPECT_EQ(copy.rate, 5000u);
    EXPECT_EQ(copy.custom2, u"c2");

    for (auto [box, message] :
         {std::pair{u"", kDurationBlankMessage}, std::pair{u"1h", kNumericOnlyMessage}}) {
        CopyResult refused = copyEntry(platform->file(), entries, m, e, {box, {}, true}, settings);
        EXPECT_FALSE(refused.check.ok);
        EXPECT_EQ(refused.check.message, message);
        EXPECT_TRUE(refused.created.empty());
    }
}

}  // namespace
}  // namespace qb
