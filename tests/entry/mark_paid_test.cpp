#include "entry/mark_paid.h"

#include "bulk_support.h"

namespace qb {
namespace {

using MarkPaidTest = StoreTest;

TEST_F(MarkPaidTest, MarksBillableAcceptedEntriesOfTheRange) {
    CEOID billable = entry(u"Acme", u"Design", 10);
    CEOID nonBillable = entry(u"Acme", u"Design", 11, false);
    CEOID otherClient = entry(u"Globex", u"Audit", 12);
    CEOID outside = entry(u"Acme", u"Design", 20);
    FILETIME start = 0, end = 0;
    systemTimeToFileTime(makeDate(2024, 5, 1), &start);
    systemTimeToFileTime(makeDate(2024, 5, 15, 23, 59, 59), &end);
    MarkPaidResult r = markPaidEntries(platform->file(), entries, start, end,
                                       [](const TimeEntry& e) { return e.client == u"Acme"; });
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.written, 2) << "the non-billable entry is written back unchanged";
    EXPECT_EQ(r.marked, 1);
    EXPECT_TRUE(stored(billable).paid);
    EXPECT_FALSE(stored(nonBillable).paid);
    EXPECT_FALSE(stored(otherClient).paid);
    EXPECT_FALSE(stored(outside).paid);
}

TEST_F(MarkPaidTest, MarksALongRunInOneTransaction) {
    for (int i = 0; i < 2005; ++i) entry(u"Acme", u"T", 1 + i % 28);
    MarkPaidResult r = markPaidEntries(platform->file(), entries, 0, ~FILETIME(0) >> 1,
                                       [](const TimeEntry&) { return true; });
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.marked, 2005);
    EXPECT_FALSE(platform->file().inBatch());
}

}  // namespace
}  // namespace qb
