#include "views/timesheet.h"

#include <gtest/gtest.h>

#include "platform/calendar.h"
#include "store/time_entry.h"

namespace qb {
namespace {

TimeEntry at(int month, int day, const char16_t* client, const char16_t* project,
             const char16_t* task, std::uint16_t duration, CEOID id) {
    TimeEntry e;
    systemTimeToFileTime(makeDate(2026, month, day, 23, 59, 1), &e.date);
    e.client = client;
    e.project = project;
    e.task = task;
    e.duration = duration;
    e.recordOid = id;
    return e;
}

TEST(TimesheetTest, RowsByClientProjectTaskColumnsByDay) {
    std::vector<TimeEntry> rows = {
        at(11, 16, u"Bolt", u"App", u"Build", 150, 1),
        at(11, 16, u"acme", u"Web", u"Design", 25, 2),
        at(11, 16, u"Bolt", u"App", u"Build", 75, 3),    // same cell
        at(11, 22, u"Acme", u"Web", u"Design", 100, 4),  // case differs: same row
        at(11, 18, u"Acme", u"", u"Support", 33, 5),
        at(11, 23, u"Acme", u"Web", u"Design", 500, 6),  // past the week
    };
    Timesheet t = buildTimesheet(rows, makeDate(2026, 11, 16), makeDate(2026, 11, 22));
    ASSERT_EQ(t.days.size(), 7u);
    EXPECT_EQ(timesheetDayTitle(t.days[0]), u"Mon 16");
    EXPECT_EQ(timesheetDayTitle(t.days[6]), u"Sun 22");
    ASSERT_EQ(t.rows.size(), 3u);
    EXPECT_EQ(t.rows[0].task, u"Support") << "no project sorts first";
    EXPECT_EQ(t.rows[1].client, u"acme");
    EXPECT_EQ(t.rows[1].hours[0], 25u);
    EXPECT_EQ(t.rows[1].hours[6], 100u);
    EXPECT_EQ(t.rows[1].total, 125u);
    EXPECT_EQ(t.rows[2].hours[0], 225u);
    EXPECT_EQ(t.rows[2].ids[0], (std::vector<CEOID>{1, 3}));
    EXPECT_EQ(t.dayTotals[0], 250u);
    EXPECT_EQ(t.dayTotals[2], 33u);
    EXPECT_EQ(t.dayTotals[1], 0u);
    EXPECT_EQ(t.total, 383u);
    EXPECT_EQ(timesheetCellText(t.rows[2].hours[0]), u"2.25");
    EXPECT_EQ(timesheetCellText(0), u"");
}

TEST(TimesheetTest, AMonthAcrossTheYearEnd) {
    Timesheet t = buildTimesheet({at(12, 31, u"A", u"", u"T", 100, 1)}, makeDate(2026, 12, 1),
                                 makeDate(2026, 12, 31));
    ASSERT_EQ(t.days.size(), 31u);
    EXPECT_EQ(t.rows[0].hours[30], 100u);
    Timesheet day = buildTimesheet({}, makeDate(2026, 12, 31), makeDate(2026, 12, 31));
    EXPECT_EQ(day.days.size(), 1u);
    EXPECT_TRUE(day.rows.empty());
}

}  // namespace
}  // namespace qb
