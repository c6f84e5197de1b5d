#include "views/entry_rows.h"

#include <gtest/gtest.h>

#include "app/settings.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"
#include "views/entry_tree.h"
#include "views/period_rows.h"

namespace qb {
namespace {

TimeEntry entryAt(int d, int h, int mi, int s, std::uint16_t duration) {
    TimeEntry e;
    systemTimeToFileTime(makeDate(2026, 11, d, h, mi, s), &e.date);
    e.client = u"Acme";
    e.project = u"Web";
    e.phase = u"Build";
    e.task = u"Design";
    e.duration = duration;
    return e;
}

std::string joined(const std::vector<std::u16string>& lines) {
    std::string out;
    for (const auto& l : lines) out += utf16ToUtf8(l) + "|";
    return out;
}

TEST(EntryRowsTest, DefaultStyleLines) {
    LocaleInfo locale;
    ListDisplay display;
    TimeEntry started = entryAt(17, 10, 0, 1, 199);
    EXPECT_EQ(joined(defaultRowLines(started, kWeekView, display, locale)),
              "11/17/2026 1.99h (10:00 AM)|Design|Web (Build)|");
    display.entryTimeMode = 1;
    // 1.99 hours is 119.4 minutes: the end is 11:59.
    EXPECT_EQ(joined(defaultRowLines(started, kDayView, display, locale)),
              "1.99h (10:00 AM - 11:59 AM)|Design|Web (Build)|");
    display.entryTimeMode = 2;
    display.displayFlags = 0x01;
    EXPECT_EQ(joined(defaultRowLines(started, kDayView, display, locale)),
              "10:00 AM - 11:59 AM|Design|Web (Build)|Acme|");

    TimeEntry plain = entryAt(17, 0, 0, 0, 50);
    plain.phase.clear();
    display = ListDisplay();
    EXPECT_EQ(joined(defaultRowLines(plain, kMonthView, display, locale)),
              "11/17/2026 0.50h|Design|Web|");
}

TEST(EntryRowsTest, TheTwoStylesTestTheStartSecondsDifferently) {
    LocaleInfo locale;
    TimeEntry secondsTwo = entryAt(17, 8, 15, 2, 100);
    EXPECT_EQ(joined(defaultRowLines(secondsTwo, kDayView, ListDisplay(), locale)),
              "1.00h (8:15 AM)|Design|Web (Build)|");
    auto cells = simpleRowCells(secondsTwo, locale);
    EXPECT_EQ(cells[6], u"");
    TimeEntry secondsOne = entryAt(17, 8, 15, 1, 100);
    cells = simpleRowCells(secondsOne, locale);
    EXPECT_EQ(cells[0], u"11/17/2026");
    EXPECT_EQ(cells[5], u"1.00");
    EXPECT_EQ(cells[6], u"8:15 AM");
}

TEST(EntryRowsTest, DisplayOptionsLiveInTheViewCustBytes) {
    Settings s;
    ListDisplay d;
    d.entryTimeMode = 2;
    d.displayFlags = 3;
    d.colour[2] = 14;
    storeListDisplay(d, s);
    EXPECT_EQ(s.viewCustom[0], 2);
    EXPECT_EQ(s.viewCustom[4], 3);
    EXPECT_EQ(s.viewCustom[16], 14);
    ListDisplay back = listDisplayOf(s);
    EXPECT_TRUE(back.showClientName());
    EXPECT_TRUE(back.showStatusIcon());
    EXPECT_EQ(back.colour[2], 14u);
}

void printTree(const std::vector<std::unique_ptr<TreeNode>>& nodes, int depth, std::string* out) {
    for (const auto& n : nodes) {
        *out += std::string(2 * depth, ' ') + utf16ToUtf8(n->text) + " #" +
                std::to_string(n->image) + "\n";
        printTree(n->children, depth + 1, out);
    }
}

TEST(EntryTreeTest, NodesAreReusedAndInsertedSorted) {
    Settings settings = defaultSettings();
    LocaleInfo locale;
    EntryTree tree(locale, settings);
    TimeEntry a = entryAt(17, 9, 0, 1, 150);
    a.billable = true;
    a.rate = 8000;
    a.currency = u"EUR";
    TimeEntry b = entryAt(17, 0, 0, 0, 25);
    b.project.clear();
    b.phase.clear();
    b.task = u"Call";
    TimeEntry c = entryAt(17, 0, 0, 0, 100);
    c.client = u"Beta";
    TimeEntry d = entryAt(17, 0, 0, 0, 200);
    d.task = u"Apply";
    d.billable = true;
    d.paid = true;
    d.rate = 1000;
    for (const TimeEntry& e : {a, b, c, d}) tree.add(e);
    std::string out;
    printTree(tree.roots(), 0, &out);
    EXPECT_EQ(out,
              "11/17/2026 #0\n"
              "  Acme #1\n"
              "    Call #4\n"
              "      0.25 #7\n"
              "    Web #2\n"
              "      Build #3\n"
              "        Apply #4\n"
              "          2.00 #8\n"
              "          20.00 #5\n"
              "        Design #4\n"
              "          1.50 (9:00 AM) #6\n"
              "          EUR 120.00 #5\n"
              "  Beta #1\n"
              "    Web #2\n"
              "      Build #3\n"
              "        Design #4\n"
              "          1.00 #7\n");
}

TEST(ArrangeTest, KeyThenDateThenTask) {
    std::vector<TimeEntry> rows = {entryAt(18, 0, 0, 0, 1), entryAt(17, 9, 0, 1, 2),
                                   entryAt(17, 9, 0, 1, 3), entryAt(16, 0, 0, 0, 4)};
    rows[0].client = u"Alpha";
    rows[1].task = u"Zeta";
    rows[2].task = u"Beta";
    rows[3].client = u"acme";  // lower case sorts after capitals
    arrangeEntries(rows, 1);
    // Acme on the 17th twice (same start: by task), then Alpha, then acme.
    EXPECT_EQ(rows[0].task, u"Beta");
    EXPECT_EQ(rows[1].task, u"Zeta");
    EXPECT_EQ(rows[2].client, u"Alpha");
    EXPECT_EQ(rows[3].client, u"acme");
    arrangeEntries(rows, 0);
    EXPECT_EQ(rows[0].client, u"acme");
    EXPECT_EQ(rows[3].client, u"Alpha");
}

TEST(PeriodRowsTest, ARefreshWalksThePeriodThroughTheFilter) {
    auto platform = Platform::inMemory();
    EntryTable table(*platform);
    ASSERT_TRUE(table.open());
    TimeEntry first = entryAt(15, 0, 0, 0, 1);  // the period's first second
    TimeEntry midnightStart = entryAt(15, 0, 0, 1, 2);
    TimeEntry last = entryAt(21, 23, 59, 59, 3);
    TimeEntry after = entryAt(22, 0, 0, 0, 4);
    TimeEntry other = entryAt(16, 0, 0, 0, 5);
    other.client = u"acme";
    for (const TimeEntry& e : {first, midnightStart, last, after, other}) addEntry(table, e);
    auto week = makePeriodView(kWeekView, false);
    week->setPeriod(makeDate(2026, 11, 18), makeDate(2026, 11, 18));
    EntryFilter filter;
    filter.client = u"Acme";
    std::vector<int> durations;
    for (const TimeEntry& e : periodEntries(table, *week, filter)) durations.push_back(e.duration);
    EXPECT_EQ(durations, (std::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace qb
