#include <gtest/gtest.h>

#include "app/settings.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"
#include "views/quick_summary.h"

namespace qb {
namespace {

TimeEntry entry(bool billable, bool paid, std::uint16_t rateType = 0) {
    TimeEntry e;
    e.client = u"Acme";
    e.task = u"T";
    e.billable = billable;
    e.paid = paid;
    e.rateType = rateType;
    return e;
}

TEST(EntryFilterTest, FlagsAndCriteriaInTheirOrder) {
    EntryFilter unpaid = unpaidOnlyFilter();
    EXPECT_FALSE(unpaid.matches(entry(false, false)));
    EXPECT_FALSE(unpaid.matches(entry(true, true)));
    EXPECT_TRUE(unpaid.matches(entry(true, false)));

    EntryFilter nonBillableOnly;
    nonBillableOnly.showPaid = nonBillableOnly.showUnpaid = false;
    EXPECT_TRUE(nonBillableOnly.matches(entry(false, true))) << "paid or not";
    EXPECT_TRUE(nonBillableOnly.matches(entry(false, false)));
    EXPECT_FALSE(nonBillableOnly.matches(entry(true, false)));

    EntryFilter byClient;
    byClient.client = u"acme";
    EXPECT_FALSE(byClient.matches(entry(true, false))) << "case matters";
    byClient.client = u"Acme";
    byClient.rateType = 3;
    EXPECT_FALSE(byClient.matches(entry(true, false)));
    EXPECT_TRUE(byClient.matches(entry(true, false, 3)));
    byClient.custom2 = u"x";
    EXPECT_FALSE(byClient.matches(entry(true, false, 3)));
}

TEST(EntryFilterTest, TheEndDayIsIncludedWhole) {
    EntryFilter f;
    f.start = makeDate(2026, 11, 1);
    f.end = makeDate(2026, 11, 30);
    TimeEntry e = entry(true, false);
    systemTimeToFileTime(makeDate(2026, 11, 30, 23, 59, 59), &e.date);
    EXPECT_TRUE(f.matches(e));
    systemTimeToFileTime(makeDate(2026, 12, 1), &e.date);
    EXPECT_FALSE(f.matches(e));
    systemTimeToFileTime(makeDate(2026, 11, 1), &e.date);
    EXPECT_TRUE(f.matches(e));
}

TEST(EntryFilterTest, TheViewFilterKeepsAllButItsCustomCriteria) {
    auto platform = Platform::inMemory();
    EntryFilter f;
    f.client = u"Acme";
    f.billTo = u"Bob";
    f.custom1 = u"gone after a restart";
    f.showPaid = false;
    f.rateType = 2;
    ASSERT_TRUE(f.save(platform->registry()));
    EntryFilter back;
    back.load(platform->registry());
    EXPECT_EQ(back.client, u"Acme");
    EXPECT_EQ(back.billTo, u"Bob");
    EXPECT_TRUE(back.custom1.empty());
    EXPECT_FALSE(back.showPaid);
    EXPECT_TRUE(back.showUnpaid);
    EXPECT_EQ(back.rateType, 2);
    std::uint32_t flags = 0;
    platform->registry().openKey(RegRoot::HKEY_CURRENT_USER, kAppKey)->queryDword("fFlags", &flags);
    EXPECT_EQ(flags, 0x11u);
    EntryFilter fresh;
    auto empty = Platform::inMemory();
    fresh.load(empty->registry());
    EXPECT_TRUE(fresh.showPaid && fresh.showUnpaid && fresh.showNonBillable);
    EXPECT_EQ(fresh.rateType, -1);
}

class QuickSummaryTest : public ::testing::Test {
  protected:
    std::unique_ptr<Platform> platform = Platform::inMemory();
    EntryTable table{*platform};
    Settings settings = defaultSettings();
    std::vector<CEOID> ids;

    void SetUp() override { ASSERT_TRUE(table.open()); }

    void add(const std::u16string& project, std::uint16_t duration, bool billable, bool paid,
             std::uint32_t rate = 0, const std::u16string& currency = u"USD") {
        TimeEntry e = entry(billable, paid);
        e.project = project;
        e.duration = duration;
        e.rate = rate;
        e.currency = currency;
        ASSERT_TRUE(addEntry(table, e));
        ids.push_back(table.currentOid());
    }

    std::vector<std::string> rows(ViewKind kind = kWeekView) {
        std::vector<std::string> out;
        for (const SummaryRow& r :
             quickSummary(table, ids, kind, makeDate(2026, 11, 15),
                          makeDate(2026, 11, 21, 23, 59, 59), settings, LocaleInfo{})) {
            out.push_back(utf16ToUtf8(r[0]) + "|" + utf16ToUtf8(r[1]) + "|" + utf16ToUtf8(r[2]));
        }
        return out;
    }
};

TEST_F(QuickSummaryTest, EveryRowOfAMixedPeriod) {
    add(u"Alpha", 150, true, false, 6000, u"USD");
    add(u"ALPHA", 50, true, true, 10000, u"EUR");
    add(u"", 100, false, true, 9900);
    add(u"Beta", 200, false, false);
    EXPECT_EQ(rows(), (std::vector<std::string>{
                          "Period Type:|Week|",
                          "Period:|11/15/2026|",
                          "Number of Items:|4|",
                          "||",
                          "Total:||",
                          "Billable Hours:|2.00h|40.0%",
                          "Non Billable Hours:|3.00h|60.0%",
                          "Hours:|5.00|",
                          "||",
                          "Total:||",
                          "Unpaid Amount:|90.00|",
                          "Paid Amount:|50.00|",
                          "Amount:|140.00|",
                          "||",
                          "Total:||",
                          "|1.00h|20.0%",
                          "Alpha|2.00h|40.0%",
                          "Beta|2.00h|40.0%",
                      }));
}

TEST_F(QuickSummaryTest, AnEmptyPeriodShowsNoShares) {
    std::vector<std::string> r = rows(kCustomView);
    EXPECT_EQ(r[1], "Period:|11/15/2026 - 11/21/2026|");
    EXPECT_EQ(r[5], "Billable Hours:|0.00h|n/a");
    EXPECT_EQ(r[6], "Non Billable Hours:|0.00h|n/a");
    EXPECT_EQ(r.size(), 15u);
    add(u"Zero", 0, true, false);
    EXPECT_EQ(rows().back(), "Zero|0.00h|n/a");
}

}  // namespace
}  // namespace qb
