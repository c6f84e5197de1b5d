#include "views/period_view.h"

#include <gtest/gtest.h>

#include "platform/calendar.h"
#include "platform/text.h"

namespace qb {
namespace {

SYSTEMTIME day(int y, int m, int d) { return makeDate(y, m, d); }

std::string text(const SYSTEMTIME& st) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%04u-%02u-%02u %02u:%02u:%02u", st.wYear, st.wMonth,
                  st.wDay, st.wHour, st.wMinute, st.wSecond);
    return buffer;
}

std::string period(const PeriodView& view) {
    SYSTEMTIME start, end;
    view.getPeriod(&start, &end);
    return text(start) + " / " + text(end);
}

std::string label(const PeriodView& view, const LocaleInfo& locale = LocaleInfo{}) {
    return utf16ToUtf8(view.label(locale));
}

TEST(PeriodViewTest, BoundsOfEachKind) {
    struct Case {
        ViewKind kind;
        SYSTEMTIME start, end;
        const char* expected;
    } cases[] = {
        {kDayView, day(2026, 11, 21), day(2026, 11, 21),
         "2026-11-21 00:00:00 / 2026-11-21 23:59:59"},
        {kWeekView, day(2026, 11, 18), day(2026, 11, 18),
         "2026-11-15 00:00:00 / 2026-11-21 23:59:59"},
        // A month reports its end a minute short.
        {kMonthView, day(2026, 2, 17), day(2026, 2, 17),
         "2026-02-01 00:00:00 / 2026-02-28 23:59:00"},
        {kCustomView, day(2026, 3, 1), day(2026, 3, 9),
         "2026-03-01 00:00:00 / 2026-03-09 23:59:59"},
        {kCustomView, day(2026, 3, 9), day(2026, 3, 1),
         "2026-03-09 00:00:00 / 2026-03-01 23:59:59"},
    };
    for (const Case& c : cases) {
        auto view = makePeriodView(c.kind, false);
        view->setPeriod(c.start, c.end);
        EXPECT_EQ(period(*view), c.expected) << c.kind;
    }

    auto month = makePeriodView(kMonthView, false);
    month->setPeriod(day(2024, 2, 10), day(2024, 2, 10));
    FILETIME start = 0, end = 0, expected = 0;
    month->bounds(&start, &end);
    systemTimeToFileTime(makeDate(2024, 2, 29, 23, 59, 59), &expected);
    EXPECT_EQ(end, expected) << "a refresh walks to the last second";
}

TEST(PeriodViewTest, WeeksStartOnTheChosenDay) {
    auto monday = makePeriodView(kWeekView, true);
    monday->setPeriod(day(2026, 11, 22), day(2026, 11, 22));  // a Sunday
    EXPECT_EQ(text(monday->currentDate()), "2026-11-16 00:00:00");
    auto sunday = makePeriodView(kWeekView, false);
    sunday->setPeriod(day(2026, 11, 22), day(2026, 11, 22));
    EXPECT_EQ(text(sunday->currentDate()), "2026-11-22 00:00:00");
    sunday->next();
    EXPECT_EQ(text(sunday->currentDate()), "2026-11-29 00:00:00");
    sunday->selectDate(day(2027, 1, 1));
    EXPECT_EQ(text(sunday->currentDate()), "2026-12-27 00:00:00");
}

TEST(PeriodViewTest, MonthsKeepTheClampedDay) {
    auto month = makePeriodView(kMonthView, false);
    month->setPeriod(day(2027, 1, 5), day(2027, 1, 5));
    month->selectDate(day(2027, 1, 31));
    month->next();
    EXPECT_EQ(text(month->currentDate()), "2027-02-28 00:00:00");
    month->next();
    EXPECT_EQ(text(month->currentDate()), "2027-03-28 00:00:00");
    month->setPeriod(day(2026, 12, 9), day(2026, 12, 9));
    month->next();
    EXPECT_EQ(text(month->currentDate()), "2027-01-01 00:00:00");
    month->previous();
    month->previous();
    EXPECT_EQ(text(month->currentDate()), "2026-11-01 00:00:00");
}

TEST(PeriodViewTest, TodayFollowsTheClock) {
    setenv("QUILLARBOR_NOW", "2026-11-21T15:30:00", 1);
    auto dayView = makePeriodView(kDayView, false);
    dayView->setPeriod(day(2020, 1, 1), day(2020, 1, 1));
    dayView->today();
    EXPECT_EQ(text(dayView->currentDate()), "2026-11-21 00:00:00");
    auto month = makePeriodView(kMonthView, false);
    month->today();
    EXPECT_EQ(text(month->currentDate()), "2026-11-01 00:00:00");
    auto custom = makePeriodView(kCustomView, false);
    custom->setPeriod(day(2020, 1, 1), day(2020, 1, 2));
    custom->today();
    custom->next();
    EXPECT_EQ(period(*custom), "2020-01-01 00:00:00 / 2020-01-02 23:59:59") << "does not move";
    unsetenv("QUILLARBOR_NOW");
}

TEST(PeriodViewTest, LabelsInTheUsersFormats) {
    auto dayView = makePeriodView(kDayView, false);
    dayView->setPeriod(day(2026, 11, 21), day(2026, 11, 21));
    auto week = makePeriodView(kWeekView, false);
    week->setPeriod(day(2026, 11, 21), day(2026, 11, 21));
    auto month = makePeriodView(kMonthView, false);
    month->setPeriod(day(2026, 11, 21), day(2026, 11, 21));
    auto custom = makePeriodView(kCustomView, false);
    custom->setPeriod(day(2026, 12, 24), day(2026, 12, 1));

    EXPECT_EQ(label(*dayView), "Saturday, Nov 21, 2026");
    EXPECT_EQ(label(*week), "Week Of Nov 15, 2026");
    EXPECT_EQ(label(*month), "November 2026");
    EXPECT_EQ(label(*custom), "Dec 24, 2026 - Dec 1, 2026");

    LocaleInfo german;
    german.longDate = u"dddd, d. MMMM yyyy";
    german.shortDate = u"dd.MM.yyyy";
    german.yearMonth = u"MMMM yyyy";
    EXPECT_EQ(label(*dayView, german), "Saturday, 21. Nov 2026");
    EXPECT_EQ(label(*week, german), "Week Of 15. Nov 2026");

    // A quoted literal sends every label to the short date.
    LocaleInfo quoted;
    quoted.longDate = u"dddd, d' de 'MMMM' de 'yyyy";
    quoted.shortDate = u"dd/MM/yyyy";
    EXPECT_EQ(label(*dayView, quoted), "21/11/2026");
    EXPECT_EQ(label(*week, quoted), "Week Of 15/11/2026");
    EXPECT_EQ(label(*custom, quoted), "24/12/2026 - 01/12/2026");
}

}  // namespace
}  // namespace qb
