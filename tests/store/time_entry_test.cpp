#include "store/time_entry.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/calendar.h"
#include "platform/platform.h"
#include "store/entry_walk.h"
#include "store/record_props.h"
#include "store/tables.h"

namespace qb {
namespace {

FILETIME at(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    FILETIME ft = 0;
    systemTimeToFileTime(makeDate(y, m, d, h, mi, s), &ft);
    return ft;
}

std::vector<std::uint16_t> numbersOf(const std::vector<CEPROPVAL>& props) {
    std::vector<std::uint16_t> n;
    for (const CEPROPVAL& p : props) n.push_back(p.number());
    return n;
}

class TimeEntryTest : public ::testing::Test {
  protected:
    std::unique_ptr<Platform> platform = Platform::inMemory();
    EntryTable table{*platform};

    void SetUp() override { ASSERT_TRUE(table.open()); }

    std::vector<CEPROPVAL> storedProps(CEOID oid) {
        std::vector<CEPROPVAL> props;
        EXPECT_TRUE(table.seekOid(oid));
        EXPECT_EQ(table.readAll(&props), 0);
        return props;
    }

    TimeEntry minimal() {
        TimeEntry e;
        e.client = u"Acme";
        e.task = u"Design";
        e.date = at(2026, 3, 4);
        e.duration = 150;
        return e;
    }
};

TEST_F(TimeEntryTest, AnAddWritesOnlyWhatHasAValue) {
    TimeEntry e = minimal();
    ASSERT_TRUE(addEntry(table, e));
    EXPECT_EQ(numbersOf(storedProps(table.currentOid())),
              (std::vector<std::uint16_t>{1001, 1002, 1005, 1006, 1009, 1008, 1010, 1018}));

    TimeEntry full = minimal();
    full.project = u"Web";
    full.phase = u"P";
    full.currency = u"USD";
    full.billTo = u"Bob";
    full.custom1 = u"1";
    full.custom2 = u"2";
    full.custom3 = u"3";
    full.notes = {'h', 0};
    ASSERT_TRUE(addEntry(table, full));
    EXPECT_EQ(numbersOf(storedProps(table.currentOid())),
              (std::vector<std::uint16_t>{1001, 1002, 1003, 1004, 1005, 1006, 1009, 1007, 1008,
                                          1010, 1012, 1014, 1015, 1016, 1017, 1018}));
}

TEST_F(TimeEntryTest, AnUpdateRemovesClearedPropertiesAndTheOldStartTime) {
    // A record of the older layout, with every optional property and 1013.
    TimeEntry full = minimal();
    full.project = u"Web";
    full.phase = u"P";
    full.currency = u"USD";
    full.billTo = u"Bob";
    full.custom1 = full.custom2 = full.custom3 = u"x";
    full.notes = {1, 2};
    std::vector<CEPROPVAL> values = entryAddValues(full);
    values.push_back(CEPROPVAL::fileTime(kPropOldStartTime, at(2026, 3, 4, 9, 0)));
    ASSERT_TRUE(table.add(values));
    CEOID oid = table.currentOid();

    TimeEntry cleared = minimal();
    cleared.recordOid = oid;
    ASSERT_TRUE(saveEntry(table, cleared));
    EXPECT_EQ(numbersOf(storedProps(oid)),
              (std::vector<std::uint16_t>{1001, 1002, 1005, 1006, 1009, 1008, 1010, 1018}));

    TimeEntry back;
    ASSERT_TRUE(table.seekOid(oid));
    ASSERT_EQ(readEntry(table, back), 0);
    EXPECT_TRUE(back.project.empty());
    EXPECT_TRUE(back.notes.empty());
    EXPECT_EQ(back.recordOid, oid);
}

TEST_F(TimeEntryTest, ReadingFoldsTheOlderStartTimeAndTrustsOnlyOne) {
    std::vector<CEPROPVAL> older = {
        CEPROPVAL::fileTime(kPropDate, at(1999, 3, 5)),
        CEPROPVAL::wstr(kPropClient, u"Acme"),
        CEPROPVAL::boolean(kPropBillable, true),
        CEPROPVAL::fileTime(kPropOldStartTime, at(1999, 3, 4, 9, 15, 7)),
        CEPROPVAL::ui2(kPropDuration, 65535),
    };
    older[2].num = 2;                          // a stored boolean that is not 1
    older.push_back(CEPROPVAL::ui4(4242, 1));  // unknown properties are ignored
    ASSERT_TRUE(table.add(older));
    TimeEntry e;
    ASSERT_EQ(readEntry(table, e), 0);
    EXPECT_EQ(e.date, at(1999, 3, 5, 9, 15, 7));
    EXPECT_FALSE(e.billable);
    EXPECT_EQ(e.duration, 65535);
}

TEST_F(TimeEntryTest, StartTimeLivesInTheSecondsOfTheDate) {
    TimeEntry e = minimal();
    e.date = at(2026, 3, 4, 13, 45, 33);
    setStartTime(e, makeDate(2000, 1, 1, 0, 0));
    EXPECT_EQ(e.date, at(2026, 3, 4, 0, 0, 1)) << "a start of 00:00 is still a start";
    EXPECT_TRUE(hasStartTime(e));
    setEntryDay(e, makeDate(2027, 2, 28));
    EXPECT_EQ(e.date, at(2027, 2, 28, 0, 0, 1));
    clearStartTime(e);
    EXPECT_EQ(e.date, at(2027, 2, 28));
    EXPECT_FALSE(hasStartTime(e));
    e.date = at(2027, 2, 28, 8, 0, 2);
    EXPECT_FALSE(hasStartTime(e)) << "only seconds == 1 marks a start";
}

TEST_F(TimeEntryTest, TheWalkIncludesBothBoundsInDateOrder) {
    FILETIME start = at(2026, 3, 2);
    FILETIME end = at(2026, 3, 8, 23, 59, 59);
    for (FILETIME d : {at(2026, 3, 9), end, at(2026, 3, 1, 23, 59, 59), start,
                       at(2026, 3, 2, 0, 0, 1), at(2026, 3, 5, 12)}) {
        TimeEntry e = minimal();
        e.date = d;
        ASSERT_TRUE(addEntry(table, e));
    }
    std::vector<FILETIME> seen;
    long n = walkEntries(table, start, end, [&](const TimeEntry& e) {
        seen.push_back(e.date);
        return true;
    });
    EXPECT_EQ(n, 4);
    EXPECT_EQ(seen,
              (std::vector<FILETIME>{start, at(2026, 3, 2, 0, 0, 1), at(2026, 3, 5, 12), end}));

    long deleted =
        walkAndDelete(table, start, end, [&](const TimeEntry& e) { return e.date != end; });
    EXPECT_EQ(deleted, 3);
    seen.clear();
    walkEntries(table, 0, ~0ull, [&](const TimeEntry& e) {
        seen.push_back(e.date);
        return true;
    });
    EXPECT_EQ(seen, (std::vector<FILETIME>{at(2026, 3, 1, 23, 59, 59), end, at(2026, 3, 9)}));
}

TEST_F(TimeEntryTest, APropertyOfAnUnknownTypeIsPassedOver) {
    // Type 5 (a double on other stores) means nothing here.
    CEPROPVAL strange;
    strange.propid = makePropId(1099, static_cast<PropType>(5));
    strange.blob = {1, 2, 3, 4, 5, 6, 7, 8};
    CEPROPVAL wrongType = strange;
    wrongType.propid = makePropId(kPropDuration, static_cast<PropType>(99));
    CEOID odd = 0;
    for (int day : {3, 4, 5}) {
        TimeEntry e = minimal();
        e.date = at(2026, 3, day);
        ASSERT_TRUE(addEntry(table, e));
        if (day == 4) {
            odd = table.currentOid();
            ASSERT_TRUE(table.update({strange, wrongType, CEPROPVAL::wstr(kPropPhase, u"after")}));
        }
    }
    std::vector<std::u16string> phases;
    std::vector<std::uint16_t> durations;
    long n = walkEntries(table, at(2026, 3, 1), at(2026, 3, 31), [&](const TimeEntry& e) {
        phases.push_back(e.phase);
        durations.push_back(e.duration);
        return true;
    });
    EXPECT_EQ(n, 3) << "the walk goes on past the record";
    EXPECT_EQ(phases, (std::vector<std::u16string>{u"", u"after", u""}));
    EXPECT_EQ(durations, (std::vector<std::uint16_t>{150, 150, 150}));

    // Rewriting the entry keeps what it does not know.
    TimeEntry e;
    ASSERT_TRUE(table.seekOid(odd));
    ASSERT_EQ(readEntry(table, e), 0);
    e.task = u"Changed";
    ASSERT_TRUE(updateEntry(table, e));
    const std::vector<CEPROPVAL> props = storedProps(e.recordOid);
    auto kept = std::find_if(props.begin(), props.end(),
                             [&](const CEPROPVAL& p) { return p.propid == strange.propid; });
    ASSERT_NE(kept, props.end());
    EXPECT_EQ(kept->blob, strange.blob);
}

TEST_F(TimeEntryTest, ARecordWithoutADateBelongsToNoPeriod) {
    TimeEntry dated = minimal();
    dated.date = at(2026, 3, 4);
    ASSERT_TRUE(addEntry(table, dated));
    ASSERT_TRUE(table.add({CEPROPVAL::wstr(kPropClient, u"Nowhen"),
                           CEPROPVAL::wstr(kPropTask, u"T"), CEPROPVAL::ui2(kPropDuration, 100)}));
    bool isDated = true;
    TimeEntry undated;
    ASSERT_EQ(readEntry(table, undated, &isDated), 0);
    EXPECT_FALSE(isDated);
    // Not the period that reaches the end of the table, nor the whole range.
    for (FILETIME start : {at(2026, 3, 2), at(2026, 3, 9), FILETIME{0}}) {
        std::vector<std::u16string> clients;
        walkEntries(table, start, ~FILETIME{0}, [&](const TimeEntry& e) {
            clients.push_back(e.client);
            return true;
        });
        EXPECT_EQ(clients, start <= at(2026, 3, 4) ? std::vector<std::u16string>{u"Acme"}
                                                   : std::vector<std::u16string>{})
            << start;
    }
    EXPECT_EQ(walkAndDelete(table, 0, ~FILETIME{0}, [](const TimeEntry&) { return true; }), 1);
    EXPECT_TRUE(table.seekFirst()) << "the undated record is left alone";
}

TEST_F(TimeEntryTest, ReadingPastTheEndAnswersOneAndResets) {
    TimeEntry e = minimal();
    ASSERT_TRUE(addEntry(table, e));
    ASSERT_TRUE(table.seekFirst());
    EXPECT_FALSE(table.seekNext());
    TimeEntry out = minimal();
    EXPECT_EQ(readEntry(table, out), 1);
    EXPECT_TRUE(out.client.empty());
}

TEST_F(TimeEntryTest, NotesAreCopiedWithTheEntry) {
    TimeEntry a = minimal();
    const std::uint8_t bytes[] = {1, 2, 3};
    setNotes(a, 3, bytes);
    TimeEntry b = a;
    setNotes(a, 0, nullptr);
    EXPECT_EQ(b.notesSize(), 3);
    EXPECT_EQ(a.notesSize(), 0);
}

}  // namespace
}  // namespace qb
