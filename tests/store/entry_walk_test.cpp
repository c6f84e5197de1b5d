#include "store/entry_walk.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/calendar.h"
#include "platform/platform.h"
#include "store/record_props.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "testing/test_support.h"

namespace qb {
namespace {

FILETIME at(int y, int m, int d, int h = 0, int mi = 0) {
    FILETIME ft = 0;
    systemTimeToFileTime(makeDate(y, m, d, h, mi), &ft);
    return ft;
}

// What a walk gave, in order, to compare one walk with another.
struct Seen {
    CEOID oid;
    FILETIME date;
    std::u16string client;
    std::size_t noteBytes;
    bool operator==(const Seen&) const = default;
};

using Walk = long (*)(EntryTable&, FILETIME, FILETIME,
                      const std::function<bool(const TimeEntry&)>&);

std::vector<Seen> walkWith(Walk walk, EntryTable& table, FILETIME from, FILETIME to,
                           std::size_t stopAfter = SIZE_MAX) {
    std::vector<Seen> seen;
    const long visited = walk(table, from, to, [&](const TimeEntry& e) {
        seen.push_back({e.recordOid, e.date, e.client, e.notes.size()});
        return seen.size() < stopAfter;
    });
    EXPECT_EQ(visited, static_cast<long>(seen.size()));
    return seen;
}

std::string lineOf(const Seen& s) {
    return std::to_string(s.oid) + ' ' + std::to_string(s.date) + ' ' +
           std::string(s.client.begin(), s.client.end()) + ' ' + std::to_string(s.noteBytes) + '\n';
}

// A file's writer that writes what the walk of walkWith records, and counts
// the entries it wrote on a thread other than the caller's. The caller's
// writer may be slow, so that the reading thread falls to making entries.
class SeenBytes final : public EntryBytes {
  public:
    SeenBytes(std::thread::id caller, bool slowCaller, std::atomic<int>* elsewhere)
        : caller_(caller), slowCaller_(slowCaller), elsewhere_(elsewhere) {}
    void append(const TimeEntry& e, std::string& out) override {
        if (std::this_thread::get_id() != caller_) {
            ++*elsewhere_;
        } else if (slowCaller_) {
            const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(50);
            while (std::chrono::steady_clock::now() < until) {
            }
        }
        out += lineOf({e.recordOid, e.date, e.client, e.notes.size()});
    }

  private:
    std::thread::id caller_;
    bool slowCaller_;
    std::atomic<int>* elsewhere_;
};

std::string textOf(const std::vector<Seen>& seen) {
    std::string text;
    for (const Seen& s : seen) text += lineOf(s);
    return text;
}

struct Written {
    std::string text;
    int elsewhere = 0;  // entries made on the reading thread
};

Written writeAhead(EntryTable& table, FILETIME from, FILETIME to, bool slowCaller = false,
                   std::size_t stopAfterBytes = SIZE_MAX) {
    std::atomic<int> elsewhere = 0;
    const std::thread::id caller = std::this_thread::get_id();
    Written written;
    writeEntriesReadingAhead(
        table, from, to,
        [&] { return std::make_unique<SeenBytes>(caller, slowCaller, &elsewhere); },
        [&](std::string_view bytes) {
            EXPECT_FALSE(bytes.empty());
            written.text += bytes;
            return written.text.size() < stopAfterBytes;
        });
    written.elsewhere = elsewhere;
    return written;
}

// A store in a file (the read-ahead needs a second connection to it) with
// enough entries, several a day and added out of date order, that the
// records cross many of the read-ahead's chunks and the file's blocks.
class EntryWalkTest : public ::testing::Test {
  protected:
    testing::TempDir dir;
    std::unique_ptr<Platform> platform;
    std::unique_ptr<EntryTable> table;

    void SetUp() override {
        ASSERT_TRUE(Platform::open(dir.path(), &platform).isOk());
        table = std::make_unique<EntryTable>(*platform);
        ASSERT_TRUE(table->open());
        ASSERT_TRUE(platform->file().beginBatch());
        for (int i = 0; i < 3000; ++i) {
            TimeEntry e;
            e.client = u"Client " + std::u16string(1, static_cast<char16_t>(u'A' + i % 26));
            e.task = u"Task";
            // Days 1-120 of 2026, visited in a scrambled order.
            const int day = (i * 37) % 120;
            e.date = at(2026, 1, 1, 8 + i % 9) + static_cast<FILETIME>(day) * 864000000000ull;
            e.duration = 100;
            if (i % 3 == 0) e.notes.assign(200 + i % 500, static_cast<std::uint8_t>('n'));
            ASSERT_TRUE(addEntry(*table, e));
        }
        ASSERT_TRUE(platform->file().commitBatch());
    }

    // After a walk: its reading thread has let go of the store.
    bool storeTakesAWrite() {
        TimeEntry e;
        e.client = u"After";
        e.task = u"Task";
        e.date = at(2026, 6, 1);
        return addEntry(*table, e);
    }

    void expectSameWalks(FILETIME from, FILETIME to) {
        const std::vector<Seen> plain = walkWith(walkEntries, *table, from, to);
        EXPECT_EQ(walkWith(walkEntriesReadingAhead, *table, from, to), plain);
        EXPECT_EQ(writeAhead(*table, from, to).text, textOf(plain));
    }
};

TEST_F(EntryWalkTest, ReadingAheadGivesWhatTheWalkGives) {
    const std::vector<Seen> all = walkWith(walkEntries, *table, 0, ~FILETIME{0});
    ASSERT_EQ(all.size(), 3000u);
    EXPECT_EQ(walkWith(walkEntriesReadingAhead, *table, 0, ~FILETIME{0}), all);
    expectSameWalks(at(2026, 2, 3, 12, 30), at(2026, 3, 9, 10, 0));  // bounds within days
    expectSameWalks(at(2026, 2, 3), at(2026, 2, 3, 23, 59));         // one day
    expectSameWalks(at(2025, 1, 1), at(2025, 12, 31));               // before every entry
    expectSameWalks(at(2027, 1, 1), at(2027, 12, 31));               // after every entry
}

// However the making divides between the threads, the file's bytes come in
// date order; a caller that stops gets no more, and the store is free at once.
TEST_F(EntryWalkTest, WritingAheadSharesTheWorkAndKeepsTheOrder) {
    const std::string all = textOf(walkWith(walkEntries, *table, 0, ~FILETIME{0}));
    const Written shared = writeAhead(*table, 0, ~FILETIME{0}, true);
    EXPECT_EQ(shared.text, all);
    EXPECT_GT(shared.elsewhere, 0) << "a slow caller leaves entries to the reading thread";
    EXPECT_LT(shared.elsewhere, 3000);

    const Written stopped = writeAhead(*table, 0, ~FILETIME{0}, true, 1);
    EXPECT_LT(stopped.text.size(), all.size());
    EXPECT_EQ(all.compare(0, stopped.text.size(), stopped.text), 0);
    EXPECT_TRUE(storeTakesAWrite());
}

// Where no second connection can read (a batch open), the caller makes all.
TEST_F(EntryWalkTest, WritingAheadInABatchMakesEverythingOnTheCaller) {
    ASSERT_TRUE(platform->file().beginBatch());
    const Written written = writeAhead(*table, 0, ~FILETIME{0});
    EXPECT_EQ(written.text, textOf(walkWith(walkEntries, *table, 0, ~FILETIME{0})));
    EXPECT_EQ(written.elsewhere, 0);
    platform->file().rollbackBatch();
}

TEST_F(EntryWalkTest, ReadingAheadStopsWhenTheVisitorDoes) {
    const std::vector<Seen> plain = walkWith(walkEntries, *table, 0, ~FILETIME{0}, 10);
    ASSERT_EQ(plain.size(), 10u);
    EXPECT_EQ(walkWith(walkEntriesReadingAhead, *table, 0, ~FILETIME{0}, 10), plain);
    // The reading thread is told to stop and is joined: the store takes a write at once.
    EXPECT_TRUE(storeTakesAWrite());
}

TEST_F(EntryWalkTest, ReadingAheadSeesTheWritesOfAnOpenBatch) {
    ASSERT_TRUE(platform->file().beginBatch());
    TimeEntry e;
    e.client = u"Uncommitted";
    e.task = u"Task";
    e.date = at(2026, 8, 1);
    ASSERT_TRUE(addEntry(*table, e));
    const std::vector<Seen> seen =
        walkWith(walkEntriesReadingAhead, *table, at(2026, 8, 1), at(2026, 8, 31));
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].client, u"Uncommitted");
    platform->file().rollbackBatch();
}

// The walk's end is decided on the date as the entry reads it: an older
// record's separate start time moves its date within the day, here before
// the end although the stored date lies after it.
TEST_F(EntryWalkTest, ReadingAheadEndsWhereTheWalkEnds) {
    ASSERT_TRUE(
        table->add({CEPROPVAL::fileTime(kPropDate, at(2026, 7, 1, 10, 0)),
                    CEPROPVAL::wstr(kPropClient, u"Older"), CEPROPVAL::wstr(kPropTask, u"Task"),
                    CEPROPVAL::fileTime(kPropOldStartTime, at(2026, 7, 1, 8, 0))}));
    const std::vector<Seen> seen =
        walkWith(walkEntries, *table, at(2026, 7, 1), at(2026, 7, 1, 9, 0));
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].client, u"Older");
    expectSameWalks(at(2026, 7, 1), at(2026, 7, 1, 9, 0));

    // A record without a date sorts last and ends every walk.
    ASSERT_TRUE(table->add({CEPROPVAL::wstr(kPropClient, u"Undated")}));
    expectSameWalks(0, ~FILETIME{0});

    // So does a damaged record, where it lies.
    const CEOID damaged =
        walkWith(walkEntries, *table, at(2026, 3, 1), at(2026, 3, 1, 23, 59))[0].oid;
    sqlite3* db = platform->file().handle();
    ASSERT_EQ(
        sqlite3_exec(
            db,
            ("UPDATE records SET props = x'E903' WHERE oid = " + std::to_string(damaged)).c_str(),
            nullptr, nullptr, nullptr),
        SQLITE_OK);
    const std::vector<Seen> plain = walkWith(walkEntries, *table, 0, ~FILETIME{0});
    EXPECT_LT(plain.size(), 3000u);
    EXPECT_EQ(walkWith(walkEntriesReadingAhead, *table, 0, ~FILETIME{0}), plain);
}

// Pages read in blocks must never outlive a change that another connection
// commits, whether it stays in the log or a checkpoint copies it into the
// file (and the log starts again from its beginning).
TEST_F(EntryWalkTest, WalksSeeWhatAnotherConnectionWrote) {
    const std::size_t count = walkWith(walkEntries, *table, 0, ~FILETIME{0}).size();
    std::unique_ptr<Platform> other;
    ASSERT_TRUE(Platform::open(dir.path(), &other).isOk());
    EntryTable otherTable(*other);
    ASSERT_TRUE(otherTable.open());
    char16_t round = u'0';
    for (const char* checkpoint :
         {"", "PRAGMA wal_checkpoint(TRUNCATE)", "", "PRAGMA wal_checkpoint(RESTART)", ""}) {
        const std::u16string client = std::u16string(u"Round ") + ++round;
        ASSERT_TRUE(other->file().beginBatch());
        TimeEntry e;
        for (bool found = otherTable.seekFirst(); found; found = otherTable.seekNext()) {
            ASSERT_EQ(readEntry(otherTable, e), 0);
            e.client = client;
            ASSERT_TRUE(updateEntry(otherTable, e));
        }
        ASSERT_TRUE(other->file().commitBatch());
        ASSERT_EQ(sqlite3_exec(other->file().handle(), checkpoint, nullptr, nullptr, nullptr),
                  SQLITE_OK);
        std::vector<Seen> expected;
        walkWith(walkEntries, otherTable, 0, ~FILETIME{0}).swap(expected);
        for (Walk walk : {walkEntries, walkEntriesReadingAhead}) {
            const std::vector<Seen> seen = walkWith(walk, *table, 0, ~FILETIME{0});
            ASSERT_EQ(seen.size(), count);
            EXPECT_EQ(seen, expected) << "after \"" << checkpoint << "\"";
        }
    }
}

}  // namespace
}  // namespace qb
