#include "views/summary_charts.h"

#include <gtest/gtest.h>

#include <string>

#include "app/settings.h"
#include "entry/entry_amount.h"
#include "entry/rate_rules.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "views/quick_summary.h"

namespace qb {
namespace {

std::vector<std::string> labelled(const std::vector<ChartBar>& bars) {
    std::vector<std::string> out;
    for (const ChartBar& b : bars)
        out.push_back(utf16ToUtf8(b.label) + "=" + std::to_string(b.hours));
    return out;
}

class SummaryChartsTest : public ::testing::Test {
  protected:
    std::unique_ptr<Platform> platform = Platform::inMemory();
    EntryTable table{*platform};
    Settings settings = defaultSettings();
    std::vector<CEOID> ids;
    // Sunday 15 to Saturday 21 November 2026.
    SYSTEMTIME first = makeDate(2026, 11, 15);
    SYSTEMTIME last = makeDate(2026, 11, 21);

    void SetUp() override { ASSERT_TRUE(table.open()); }

    TimeEntry add(int day, const std::u16string& client, const std::u16string& project,
                  std::uint16_t duration, bool billable = false, bool paid = false,
                  std::uint32_t rate = 0, const std::u16string& currency = u"USD",
                  std::uint16_t rateType = kNormalRate) {
        TimeEntry e;
        systemTimeToFileTime(makeDate(2026, 11, static_cast<std::uint16_t>(day), 9, 30), &e.date);
        e.client = client;
        e.project = project;
        e.task = u"T";
        e.duration = duration;
        e.billable = billable;
        e.paid = paid;
        e.rate = rate;
        e.currency = currency;
        e.rateType = rateType;
        EXPECT_TRUE(addEntry(table, e));
        ids.push_back(table.currentOid());
        e.recordOid = table.currentOid();
        return e;
    }

    SummaryCharts charts() { return summaryCharts(table, ids, first, last, settings); }
};

TEST_F(SummaryChartsTest, HoursByProjectClientAndDay) {
    add(16, u"Acme", u"Web", 150);
    add(16, u"acme", u"WEB", 50);  // one client and one project, first spelling kept
    add(18, u"Bolt", u"App", 300);
    add(21, u"Bolt", u"", 25);
    add(25, u"Cobalt", u"Ops", 200);  // after the last day: in every chart but the days
    ids.push_back(999999);            // deleted meanwhile: left out everywhere

    const SummaryCharts c = charts();
    EXPECT_EQ(labelled(c.projects),
              (std::vector<std::string>{"App=300", "Ops=200", "Web=200", "=25"}));
    EXPECT_EQ(labelled(c.clients),
              (std::vector<std::string>{"Bolt=325", "Acme=200", "Cobalt=200"}));
    EXPECT_EQ(labelled(c.days),
              (std::vector<std::string>{"Sun 15=0", "Mon 16=200", "Tue 17=0", "Wed 18=300",
                                        "Thu 19=0", "Fri 20=0", "Sat 21=25"}));

    // The project bars hold the hours of the summary's project rows.
    std::vector<std::string> rowHours;
    const std::vector<SummaryRow> rows =
        quickSummary(table, ids, kWeekView, first, last, settings, LocaleInfo{});
    for (std::size_t r = 15; r < rows.size(); ++r) {
        rowHours.push_back(utf16ToUtf8(rows[r][0]) + "=" + utf16ToUtf8(rows[r][1]));
    }
    EXPECT_EQ(rowHours,
              (std::vector<std::string>{"=0.25h", "App=3.00h", "Ops=2.00h", "Web=2.00h"}));
}

TEST_F(SummaryChartsTest, AMonthsDaysAreNumbered) {
    first = makeDate(2026, 2, 1);
    last = makeDate(2026, 2, 28);
    const SummaryCharts c = charts();
    ASSERT_EQ(c.days.size(), 28u);
    EXPECT_EQ(c.days.front().label, u"1");
    EXPECT_EQ(c.days.back().label, u"28");
    EXPECT_TRUE(c.projects.empty());
    EXPECT_EQ(c.billableHours + c.nonBillableHours, 0u);
    EXPECT_TRUE(c.amounts.empty());
}

TEST_F(SummaryChartsTest, BillableStateAndAmountsOfEachCurrencyApart) {
    settings.optionFlags |= kPreciseCalculation;
    const TimeEntry usdUnpaid = add(16, u"Acme", u"Web", 33, true, false, 6000, u"USD");
    const TimeEntry usdPaid = add(17, u"Acme", u"Web", 100, true, true, 5000, u"USD");
    add(17, u"Acme", u"Web", 100, true, false, 9000, u"EUR");
    add(17, u"Acme", u"Web", 250, false, false, 9000, u"EUR");  // no amount
    add(18, u"Bolt", u"App", 400, true, true, 12345, u"", kFixedRate);

    const SummaryCharts c = charts();
    EXPECT_EQ(c.billableHours, 633u);
    EXPECT_EQ(c.nonBillableHours, 250u);
    ASSERT_EQ(c.amounts.size(), 3u);
    EXPECT_EQ(c.amounts[0].currency, u"");
    EXPECT_DOUBLE_EQ(c.amounts[0].total, 123.45);
    EXPECT_DOUBLE_EQ(c.amounts[0].unpaid, 0);
    EXPECT_EQ(c.amounts[1].currency, u"EUR");
    EXPECT_DOUBLE_EQ(c.amounts[1].total, 90);
    EXPECT_EQ(c.amounts[2].currency, u"USD");
    // 0.33 h counts as twenty minutes under precise calculation.
    EXPECT_DOUBLE_EQ(c.amounts[2].unpaid, 20);
    EXPECT_DOUBLE_EQ(c.amounts[2].total,
                     EntryAmount(usdUnpaid, settings) + EntryAmount(usdPaid, settings));
    EXPECT_EQ(currencyLabel(c.amounts[0].currency), u"No currency");
    EXPECT_EQ(currencyLabel(c.amounts[2].currency), u"USD");
}

TEST(TopBarsTest, TheRestShareOneBar) {
    const std::vector<ChartBar> bars = {{u"a", 50}, {u"b", 40}, {u"c", 30}, {u"d", 20}, {u"e", 5}};
    EXPECT_EQ(labelled(topBars(bars, 3)),
              (std::vector<std::string>{"a=50", "b=40", "Other (3)=55"}));
    EXPECT_EQ(labelled(topBars(bars, 5)), labelled(bars));
    EXPECT_EQ(labelled(topBars(bars, 9)), labelled(bars));
    EXPECT_TRUE(topBars({}, 3).empty());
}

}  // namespace
}  // namespace qb
