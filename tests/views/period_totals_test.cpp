#include "views/period_totals.h"

#include <gtest/gtest.h>

#include "app/settings.h"
#include "entry/entry_amount.h"
#include "entry/rate_rules.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

TimeEntry row(std::uint16_t duration, bool billable, bool paid, const char16_t* currency,
              std::uint32_t rate, std::uint16_t rateType = kNormalRate) {
    TimeEntry e;
    e.client = u"Acme";
    e.task = u"T";
    e.duration = duration;
    e.billable = billable;
    e.paid = paid;
    e.currency = currency;
    e.rate = rate;
    e.rateType = rateType;
    return e;
}

TEST(PeriodTotalsTest, CurrenciesAreKeptApartAndNonBillableWorkHasNoAmount) {
    Settings s = defaultSettings();
    std::vector<TimeEntry> rows = {
        row(150, true, false, u"USD", 10000),             // 1.50 h × 100.00
        row(25, true, true, u"EUR", 8000),                // 0.25 h × 80.00
        row(100, false, false, u"USD", 10000),            // non-billable
        row(33, true, false, u"USD", 50000, kFixedRate),  // fixed: the rate is the amount
        row(1, true, true, u"", 100),
    };
    PeriodTotals t = periodTotals(rows, s);
    EXPECT_EQ(t.count, 5);
    EXPECT_EQ(t.hours, 309u);
    EXPECT_EQ(t.billableHours, 209u);
    ASSERT_EQ(t.amounts.size(), 3u);
    EXPECT_EQ(t.amounts[0].currency, u"");
    EXPECT_EQ(t.amounts[1].currency, u"EUR");
    EXPECT_DOUBLE_EQ(t.amounts[1].unpaid, 0);
    EXPECT_EQ(t.amounts[2].currency, u"USD");
    EXPECT_DOUBLE_EQ(t.amounts[2].total, EntryAmount(rows[0], s) + EntryAmount(rows[3], s));
    EXPECT_DOUBLE_EQ(t.amounts[2].unpaid, t.amounts[2].total);

    std::vector<TotalsField> f = totalsFields(t);
    ASSERT_EQ(f.size(), 5u);
    EXPECT_EQ(f[0].value, u"5");
    EXPECT_EQ(f[1].value, u"3.09");
    EXPECT_EQ(f[2].value, u"2.09");
    EXPECT_EQ(f[3].value, u"0.00 \u00b7 EUR 0.00 \u00b7 USD 650.00");
    EXPECT_EQ(f[4].value, u"0.01 \u00b7 EUR 20.00 \u00b7 USD 650.00");
}

TEST(PeriodTotalsTest, AnEmptyPeriodShowsZeros) {
    std::vector<TotalsField> f = totalsFields(periodTotals({}, defaultSettings()));
    EXPECT_EQ(f[0].value, u"0");
    EXPECT_EQ(f[1].value, u"0.00");
    EXPECT_EQ(f[4].value, u"0.00");
}

TEST(PeriodTotalsTest, RowSideSaysClientAmountAndState) {
    Settings s = defaultSettings();
    RowSide unpaid = rowSide(row(200, true, false, u"USD", 4550), s);
    EXPECT_EQ(unpaid.client, u"Acme");
    EXPECT_EQ(unpaid.amount, u"USD 91.00");
    EXPECT_EQ(unpaid.state, u"Unpaid");
    EXPECT_EQ(rowSide(row(200, true, true, u"", 4550), s).amount, u"91.00");
    EXPECT_EQ(rowSide(row(200, true, true, u"", 4550), s).state, u"Paid");
    RowSide free = rowSide(row(200, false, false, u"USD", 4550), s);
    EXPECT_EQ(free.amount, u"");
    EXPECT_EQ(free.state, u"Non-billable");
}

TEST(PeriodTotalsTest, FilterDescriptionAndMenuChoice) {
    Settings s = defaultSettings();
    s.custom1Caption = u"Ticket";
    struct Case {
        std::function<void(EntryFilter&)> set;
        std::u16string text;
        int choice;
    };
    const Case cases[] = {
        {[](EntryFilter&) {}, u"", 0},
        {[](EntryFilter& f) { f = unpaidOnlyFilter(); }, u"unpaid only", 1},
        {[](EntryFilter& f) {
             f = unpaidOnlyFilter();
             f.client = u"Acme";
         },
         u"Client: Acme \u00b7 unpaid only", 2},
        {[](EntryFilter& f) {
             f.custom1 = u"T-7";
             f.rateType = kFixedRate;
             f.showPaid = false;
         },
         u"Ticket: T-7 \u00b7 Rate: " + std::u16string(rateTypeName(kFixedRate)) +
             u" \u00b7 unpaid and non-billable only",
         2},
        {[](EntryFilter& f) { f.showPaid = f.showUnpaid = f.showNonBillable = false; },
         u"no kind of entry shown", 2},
    };
    for (const Case& c : cases) {
        EntryFilter f;
        c.set(f);
        EXPECT_EQ(filterDescription(f, s), c.text);
        EXPECT_EQ(filterChoice(f), c.choice);
    }
}

}  // namespace
}  // namespace qb
