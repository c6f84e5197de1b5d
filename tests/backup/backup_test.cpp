#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>

#include "backup/archive_writer.h"
#include "backup/backup_layout.h"
#include "backup/backup_progress.h"
#include "backup/backup_texts.h"
#include "backup/backup_writer.h"
#include "backup_support.h"
#include "platform/calendar.h"
#include "platform/compound_file.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "platform/text.h"

namespace qb {
namespace {

using testing::entryAt;
using testing::fixture;
using testing::Store;
using testing::TempDir;

FILETIME at(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
    FILETIME ft = 0;
    EXPECT_TRUE(systemTimeToFileTime(makeDate(y, mo, d, h, mi, s), &ft));
    return ft;
}

std::string text(std::u16string_view s) {
    return utf16ToUtf8(s);
}

// The fixtures that the independent writer made, each loaded into a fresh
// store and written again by us: the independent dump of our file must equal
// the fixture's dump, so nothing was lost or changed on the way in or out.
TEST(BackupFixtureTest, EachFixtureSurvivesLoadingAndWritingAgain) {
    struct Case {
        const char* file;
        const char* dump;
        int kind;  // how the fixture is loaded and written again
    } cases[] = {
        {"backup.qrb", "backup.dump.txt", 1},
        {"backup-sector4096.qrb", "backup.dump.txt", 1},
        {"archive-entries.qra", "archive-entries.dump.txt", 2},
        {"archive-clients.qra", "archive-clients.dump.txt", 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        Store store;
        TempDir dir;
        std::string out = dir.file("again");
        Status why;
        if (c.kind == 2) {
            ASSERT_EQ(loadArchive(store.entries, store.masters, fixture(c.file), &why),
                      kRestoreDone)
                << why.message();
            ASSERT_TRUE(createArchive(store.entries, store.masters, ArchiveType::kDateRange, 0,
                                      ~FILETIME{0} >> 1, {}, false, out));
        } else {
            ASSERT_EQ(restoreBackupFile(store.entries, store.masters, fixture(c.file), &why),
                      kRestoreDone)
                << why.message();
            if (c.kind == 1) {
                ASSERT_TRUE(createBackupFile(store.entries, store.masters, out));
            } else {
                // In the fixture's order, which is not the table's.
                std::vector<CEOID> chosen{store.client(u"Ærø Fiskeri ApS").oid,
                                          store.client(u"Ελληνικά Α.Ε.").oid};
                ASSERT_TRUE(createArchive(store.entries, store.masters, ArchiveType::kClients, 0, 0,
                                          chosen, false, out));
            }
        }
        QB_DUMP_OR_SKIP(dump, out);
        EXPECT_EQ(dump.status, 0) << dump.err;
        EXPECT_EQ(dump.out, testing::readFile(fixture(c.dump)));
    }
}

// The same fixture read without the tool: the values that are easy to get
// wrong arrive in the store as they were written.
TEST(BackupFixtureTest, RestoredBackupHoldsTheFixturesValues) {
    Store store;
    ASSERT_EQ(restoreBackupFile(store.entries, store.masters, fixture("backup.qrb")), kRestoreDone);
    std::vector<TimeEntry> entries = store.allEntries();
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].date, 133540173010000000u);
    EXPECT_TRUE(hasStartTime(entries[0]));
    EXPECT_EQ(entries[0].notes.size(), 4396u) << "a record past the mini stream cutoff";
    EXPECT_EQ(entries[1].rate, 1200000u);
    EXPECT_EQ(entries[1].rateType, 2);
    EXPECT_TRUE(entries[1].notes.empty());
    EXPECT_EQ(text(entries[2].client), "Café ☕ Ωmega 😀");
    EXPECT_EQ(text(entries[2].custom2), "tab\there");

    ClientRecord tokyo = store.client(u"東京デザイン株式会社");
    ASSERT_NE(tokyo.oid, 0u);
    std::vector<RateRecord> rates = ratesOf(store.masters.rates, tokyo.clientId);
    ASSERT_EQ(rates.size(), 1u);
    EXPECT_EQ(rates[0].rate, 1200000u);
    EXPECT_TRUE(rates[0].flag);
    ClientRecord mueller = store.client(u"Müller & Söhne GmbH");
    std::vector<ProjectRecord> projects = projectsOf(store.masters.projects, mueller.clientId);
    ASSERT_EQ(projects.size(), 3u);
    EXPECT_EQ(text(projects[2].project), "Wartung");
    EXPECT_EQ(projects[2].task, u"");
    EXPECT_EQ(namesOf(store.masters.contacts, mueller.clientId).size(), 2u);
}

TEST(BackupLayoutTest, EntryBytesAreExactlyTheLayout) {
    TimeEntry e;
    e.billable = true;
    e.date = 0x0102030405060708;
    e.client = u"A\u00c9";
    e.task = u"t";
    e.duration = 150;
    e.rate = 9000;
    e.rateType = 3;
    e.custom3 = u"z";
    e.notes = {0x68, 0x00, 0x69, 0x00};
    std::vector<std::uint8_t> bytes;
    encodeEntry(e, &bytes);
    const std::vector<std::uint8_t> expected = {
        1,    0,                                                     // billable, paid
        0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01,              // date, low half first
        2,    0,    0,    0,    'A',  0,    0xC9, 0x00,              // client
        0,    0,    0,    0,                                         // project
        0,    0,    0,    0,                                         // phase
        1,    0,    0,    0,    't',  0,                             // task
        0,    0,    0,    0,                                         // currency
        150,  0,    0,    0,                                         // duration
        0x28, 0x23, 0,    0,                                         // rate 9000
        3,    0,    0,    0,                                         // rate type
        0,    0,    0,    0,    0,    0,    0,    0,    0, 0, 0, 0,  // billTo, custom1, custom2
        1,    0,    0,    0,    'z',  0,                             // custom3
        4,    0,    0,    0,    0x68, 0x00, 0x69, 0x00,              // notes
    };
    EXPECT_EQ(bytes, expected);

    e.notes.clear();
    encodeEntry(e, &bytes);
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.end() - 4, bytes.end()),
              (std::vector<std::uint8_t>{0, 0, 0, 0}))
        << "an entry without notes ends in a length of 0";
}

TEST(BackupFileTest, EmptyTablesGiveTheThreeEmptyElements) {
    Store store;
    TempDir dir;
    ASSERT_TRUE(createBackupFile(store.entries, store.masters, dir.file("b.qrb")));
    std::unique_ptr<CompoundFile> file;
    ASSERT_TRUE(CompoundFile::open(dir.file("b.qrb"), &file).isOk());
    CompoundEnum elements;
    ASSERT_TRUE(file->root().enumElements(&elements).isOk());
    std::vector<std::string> names;
    for (ElementInfo e; elements.next(&e);) names.push_back(text(e.name));
    EXPECT_EQ(names, (std::vector<std::string>{"Clients", "Records", "DataVersion"}));

    QB_DUMP_OR_SKIP(dump, dir.file("b.qrb"));
    EXPECT_EQ(dump.out, "qrb-dump 1\nversion=220 kind=1 (backup) records=0 clients=0\n")
        << dump.err;
}

TEST(BackupFileTest, ClientWithoutListsAndEntryWithoutNotes) {
    Store store;
    store.addClientNamed(u"Solo");
    ASSERT_TRUE(addEntry(store.entries, entryAt(at(2024, 5, 6, 9, 30, 1), u"Solo")));
    TempDir dir;
    std::string path = dir.file("b.qrb");
    ASSERT_TRUE(createBackupFile(store.entries, store.masters, path));

    std::unique_ptr<CompoundFile> file;
    ASSERT_TRUE(CompoundFile::open(path, &file).isOk());
    CompoundStorage clients, client;
    ASSERT_TRUE(file->root().openStorage(u"Clients", &clients).isOk());
    ASSERT_TRUE(clients.openStorage(u"Client0", &client).isOk());
    for (std::u16string_view list : {u"ProjectTasks", u"Tasks", u"Contacts", u"Rates"}) {
        CompoundStream stream;
        ASSERT_TRUE(client.openStream(list, &stream).isOk()) << text(list);
        EXPECT_EQ(stream.size(), 4u) << text(list) << " holds only its count of 0";
    }

    QB_DUMP_OR_SKIP(dump, path);
    EXPECT_EQ(dump.out,
              "qrb-dump 1\n"
              "version=220 kind=1 (backup) records=1 clients=1\n"
              "record 0: billable=1 paid=0 date=2024-05-06T09:30:01.0000000 "
              "filetime=" +
                  std::to_string(at(2024, 5, 6, 9, 30, 1)) +
                  " client=\"Solo\" project=\"\" phase=\"\" task=\"Work\" currency=\"\" "
                  "duration=150 rate=9000 rateType=0 billTo=\"\" custom1=\"\" custom2=\"\" "
                  "custom3=\"\" notes_len=0\n"
                  "client 0: name=\"Solo\" projectTasks=0 tasks=0 contacts=0 rates=0\n")
        << dump.err;
}

TEST(BackupFileTest, ManyRecordsPassTheStrictCheck) {
    // Enough streams for several directory and mini FAT sectors and a
    // sibling tree many levels deep.
    Store store;
    for (int i = 0; i < 1500; ++i) {
        ASSERT_TRUE(addEntry(store.entries, entryAt(at(2024, 1, 1) + FILETIME(i) * 600000000,
                                                    u"Acme", i % 100 == 0 ? u"note" : u"")));
    }
    ClientId acme = store.addClientNamed(u"Acme");
    addTask(store.masters.tasks, acme, u"Work");
    TempDir dir;
    ASSERT_TRUE(createBackupFile(store.entries, store.masters, dir.file("b.qrb")));
    Store again;
    ASSERT_EQ(restoreBackupFile(again.entries, again.masters, dir.file("b.qrb")), kRestoreDone);
    // The entries pass from the reading thread in many chunks, all of them in full.
    const std::vector<TimeEntry> original = store.allEntries();
    const std::vector<TimeEntry> restored = again.allEntries();
    ASSERT_EQ(restored.size(), 1500u);
    for (std::size_t i = 0; i < restored.size(); ++i) {
        EXPECT_EQ(restored[i].date, original[i].date);
        EXPECT_EQ(restored[i].client, original[i].client);
        EXPECT_EQ(restored[i].notes, original[i].notes);
    }
    QB_DUMP_OR_SKIP(dump, dir.file("b.qrb"));
    EXPECT_EQ(dump.status, 0) << dump.err;
}

// A file with the given DataVersion words and one entry, made with our
// own writer.
std::string entriesFile(const std::string& path, std::uint32_t version, std::uint32_t kind,
                        int entries, int damaged = -1) {
    std::unique_ptr<CompoundFile> file;
    EXPECT_TRUE(CompoundFile::create(path, &file).isOk());
    CompoundStorage root = file->root();
    CompoundStream stream;
    CompoundStorage records, clients;
    std::vector<std::uint8_t> bytes;
    putU32(bytes, version);
    putU32(bytes, kind);
    EXPECT_TRUE(root.createStream(kDataVersionStream, &stream).isOk());
    EXPECT_TRUE(stream.write(bytes.data(), bytes.size()).isOk());
    EXPECT_TRUE(root.createStorage(kRecordsStorage, &records).isOk());
    for (int i = 0; i < entries; ++i) {
        encodeEntry(entryAt(at(2024, 1, 2) + FILETIME(i) * 600000000, u"Acme", u"note"), &bytes);
        if (i == damaged) bytes.resize(bytes.size() / 2);
        const std::u16string name = u"Record" + utf8ToUtf16(std::to_string(i));
        EXPECT_TRUE(records.createStream(name, &stream).isOk());
        EXPECT_TRUE(stream.write(bytes.data(), bytes.size()).isOk());
    }
    EXPECT_TRUE(root.createStorage(kClientsStorage, &clients).isOk());
    EXPECT_TRUE(file->close().isOk());
    return path;
}

std::string versionFile(const TempDir& dir, std::uint32_t version, std::uint32_t kind) {
    return entriesFile(dir.file("v" + std::to_string(version) + "k" + std::to_string(kind)),
                       version, kind, 1);
}

TEST(RestoreTest, VersionAndKindDecideWhetherAFileIsTaken) {
    enum Loader { kRestore, kLoad };
    struct Case {
        std::uint32_t version, kind;
        Loader loader;
        int result;
        std::u16string_view message;
    } cases[] = {
        {220, 1, kRestore, kRestoreDone, u""},
        {219, 1, kRestore, kRestoreUnsupported, kUnsupportedBackupText},
        {221, 1, kRestore, kRestoreUnsupported, kUnsupportedBackupText},
        {220, 4, kRestore, kRestoreDone, u""},
        {220, 7, kRestore, kRestoreDone, u""},  // a backup takes every kind
        {220, 2, kLoad, kRestoreDone, kArchiveRestoredText},
        {220, 1, kLoad, kRestoreWrongKind, kArchiveDataOnlyText},
        {220, 4, kLoad, kRestoreWrongKind, kArchiveDataOnlyText},
        {219, 2, kLoad, kRestoreUnsupported, u""},
        {221, 2, kLoad, kRestoreUnsupported, u""},
    };
    TempDir dir;
    for (const Case& c : cases) {
        SCOPED_TRACE("version " + std::to_string(c.version) + " kind " + std::to_string(c.kind));
        Store store;
        std::string path = versionFile(dir, c.version, c.kind);
        int result = c.loader == kRestore ? restoreBackupFile(store.entries, store.masters, path)
                                          : loadArchive(store.entries, store.masters, path);
        EXPECT_EQ(result, c.result);
        FeatureMessage m =
            c.loader == kRestore ? restoreMessage(result) : loadArchiveMessage(result);
        EXPECT_EQ(m.text, c.message);
        EXPECT_EQ(store.allEntries().size(), result == kRestoreDone ? 1u : 0u)
            << "a refused file adds nothing";
    }
}

TEST(RestoreTest, DamagedFilesFailAndKeepWhatWasAlreadyAdded) {
    TempDir dir;
    testing::writeFile(dir.file("empty"), "");
    testing::writeFile(dir.file("garbage"), std::string(4096, '\x5a'));
    std::string good = testing::readFile(fixture("backup.qrb"));
    testing::writeFile(dir.file("cut"), good.substr(0, good.size() / 2));
    struct Case {
        std::string path;
        bool load;
        int result;
        std::size_t entriesAfter;
        const char* detail;  // part of the reason
    } cases[] = {
        {dir.file("empty"), false, kRestoreFailed, 0, "empty"},
        {dir.file("garbage"), true, kRestoreFailed, 0, "signature"},
        {dir.file("cut"), false, kRestoreFailed, 0, "outside"},
        {dir.file("missing"), false, kRestoreFailed, 0, "no such file"},
        {fixture("bad/no-dataversion.qrb"), true, kRestoreFailed, 0, "DataVersion"},
        {fixture("bad/truncated-record.qra"), true, kRestoreFailed, 1, "Record1"},
        {fixture("bad/truncated-record.qra"), false, kRestoreFailed, 1, "Record1"},
        {fixture("bad/bad-version.qrb"), false, kRestoreUnsupported, 0, "219"},
        {fixture("bad/bad-kind.qra"), true, kRestoreWrongKind, 0, "kind 3"},
        // Kind 3 passes a backup's kind test; the entries-only layout then
        // lacks "Clients", after the entries were added.
        {fixture("bad/bad-kind.qra"), false, kRestoreFailed, 1, "Clients"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path + (c.load ? " (load)" : " (restore)"));
        Store store;
        Status why;
        int result = c.load ? loadArchive(store.entries, store.masters, c.path, &why)
                            : restoreBackupFile(store.entries, store.masters, c.path, &why);
        EXPECT_EQ(result, c.result);
        EXPECT_NE(why.message().find(c.detail), std::string::npos) << why.message();
        EXPECT_EQ(store.allEntries().size(), c.entriesAfter);
    }
    EXPECT_EQ(loadArchiveMessage(kRestoreFailed).text, kArchiveTooOldText);
    EXPECT_EQ(restoreMessage(kRestoreFailed).text, kRestoreFailedText);
}

// The entries are read on a thread of their own while the store takes them:
// a record that cannot be read, chunks into the file, fails the restore
// after every entry before it (in the file's name order) was added.
TEST(RestoreTest, ADamagedRecordFarIntoTheFileKeepsTheEntriesBeforeIt) {
    TempDir dir;
    const std::string path =
        entriesFile(dir.file("late.qrb"), kBackupVersion, kKindBackup, 3000, 2500);
    Store store;
    Status why;
    EXPECT_EQ(restoreBackupFile(store.entries, store.masters, path, &why), kRestoreFailed);
    EXPECT_NE(why.message().find("Record2500"), std::string::npos) << why.message();
    EXPECT_EQ(store.allEntries().size(), 2500u);
}

// The store refusing a record stops the restore there, the reading thread
// with it, and names the record.
TEST(RestoreTest, ARecordTheStoreRefusesEndsTheRestoreThere) {
    TempDir dir;
    const std::string path = entriesFile(dir.file("many.qrb"), kBackupVersion, kKindBackup, 3000);
    Store store;
    ASSERT_EQ(sqlite3_exec(store.platform->file().handle(),
                           "CREATE TEMP TRIGGER refuse BEFORE INSERT ON records "
                           "WHEN (SELECT count(*) FROM records) >= 1200 "
                           "BEGIN SELECT RAISE(FAIL, 'full'); END",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    const std::size_t before = store.allEntries().size();
    Status why;
    EXPECT_EQ(restoreBackupFile(store.entries, store.masters, path, &why), kRestoreFailed);
    EXPECT_NE(why.message().find("cannot add a time entry"), std::string::npos) << why.message();
    EXPECT_NE(why.message().find("Record"), std::string::npos) << why.message();
    const std::size_t added = store.allEntries().size() - before;
    EXPECT_GT(added, 0u);
    EXPECT_LT(added, 1200u);
}

// One client "Acme" with one item in each list.
std::string oneClientBackup(const TempDir& dir, const std::u16string& second = u"") {
    Store source;
    for (const std::u16string& name : {std::u16string(u"Acme"), second}) {
        if (name.empty()) continue;
        ClientId id = source.addClientNamed(name);
        addProjectTask(source.masters.projects, id, u"Web", u"Design");
        addTask(source.masters.tasks, id, u"Calls");
        addContact(source.masters.contacts, id, u"Ann " + name);
        addRate(source.masters.rates, 1, 80.0, id, u"Overtime", true);
    }
    std::string path = dir.file("clients" + text(second) + ".qrb");
    EXPECT_TRUE(createBackupFile(source.entries, source.masters, path));
    return path;
}

TEST(RestoreTest, ListsOfAClientThatExistsGoToTheClientAddedLast) {
    struct Case {
        const char* what;
        std::vector<std::u16string> before;  // clients already in the store
        std::u16string second;               // a second client in the file
        std::u16string owner;                // whose id Acme's lists get; empty: 0
        std::size_t projectsOfOwner;         // Acme's, and Zeta's when filed there too
    } cases[] = {
        {"into empty tables", {}, u"", u"Acme", 1},
        {"Acme exists", {u"Acme"}, u"", u"", 1},
        // Zeta is added after Acme's lists were filed under 0.
        {"Acme exists, Zeta is new", {u"Acme"}, u"Zeta", u"", 1},
        // Zeta exists: its lists join those of Acme, added just before.
        {"Acme new, Zeta exists", {u"Zeta"}, u"Zeta", u"Acme", 2},
    };
    TempDir dir;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Store store;
        for (const std::u16string& name : c.before) store.addClientNamed(name);
        ASSERT_EQ(restoreBackupFile(store.entries, store.masters, oneClientBackup(dir, c.second)),
                  kRestoreDone);
        ClientId owner = c.owner.empty() ? 0 : store.client(c.owner).clientId;
        if (!c.owner.empty() && !c.before.empty()) {
            EXPECT_NE(owner, store.client(c.before[0]).clientId);
        }
        EXPECT_EQ(projectsOf(store.masters.projects, owner).size(), c.projectsOfOwner);
        std::vector<NamedRecord> contacts = namesOf(store.masters.contacts, owner);
        ASSERT_FALSE(contacts.empty());
        EXPECT_EQ(text(contacts[0].name), "Ann Acme");
        std::vector<RateRecord> rates = ratesOf(store.masters.rates, owner);
        ASSERT_FALSE(rates.empty());
        EXPECT_EQ(rates[0].rate, 8000u);
        EXPECT_EQ(rates[0].rateType, 1);
        EXPECT_TRUE(rates[0].flag);
    }
}

TEST(RestoreTest, RestoringTwiceDoublesTheEntries) {
    Store source;
    ASSERT_TRUE(addEntry(source.entries, entryAt(at(2024, 3, 1), u"Acme", u"x")));
    TempDir dir;
    ASSERT_TRUE(createBackupFile(source.entries, source.masters, dir.file("b.qrb")));
    Store store;
    for (int round = 1; round <= 2; ++round) {
        ASSERT_EQ(restoreBackupFile(store.entries, store.masters, dir.file("b.qrb")), kRestoreDone);
        EXPECT_EQ(store.allEntries().size(), static_cast<std::size_t>(round));
    }
}

class ArchiveTest : public ::testing::Test {
  protected:
    // Entries one tick either side of the range and on both its bounds.
    void SetUp() override {
        for (FILETIME d : {start_ - 1, start_, middle_, end_, end_ + 1}) {
            ASSERT_TRUE(addEntry(store_.entries, entryAt(d)));
        }
    }
    std::vector<FILETIME> datesLeft() {
        std::vector<FILETIME> dates;
        for (const TimeEntry& e : store_.allEntries()) dates.push_back(e.date);
        return dates;
    }
    std::vector<FILETIME> datesIn(const std::string& path) {
        Store other;
        EXPECT_EQ(loadArchive(other.entries, other.masters, path), kRestoreDone);
        std::vector<FILETIME> dates;
        for (const TimeEntry& e : other.allEntries()) dates.push_back(e.date);
        return dates;
    }

    Store store_;
    TempDir dir_;
    FILETIME start_ = at(2024, 2, 1);
    FILETIME middle_ = at(2024, 2, 10, 12, 0, 1);
    FILETIME end_ = at(2024, 2, 29, 23, 59, 59);
};

TEST_F(ArchiveTest, RangeBoundsBelongToTheRange) {
    for (bool remove : {false, true}) {
        SCOPED_TRACE(remove ? "with delete" : "without delete");
        std::string path = dir_.file(remove ? "d.qra" : "k.qra");
        ASSERT_TRUE(createArchive(store_.entries, store_.masters, ArchiveType::kDateRange, start_,
                                  end_, {}, remove, path));
        EXPECT_EQ(datesIn(path), (std::vector<FILETIME>{start_, middle_, end_}));
        if (remove) {
            EXPECT_EQ(datesLeft(), (std::vector<FILETIME>{start_ - 1, end_ + 1}));
        } else {
            EXPECT_EQ(datesLeft().size(), 5u);
        }
    }
}

TEST_F(ArchiveTest, EmptyRangeGivesAnEmptyArchiveThatLoads) {
    std::string path = dir_.file("e.qra");
    ASSERT_TRUE(createArchive(store_.entries, store_.masters, ArchiveType::kDateRange,
                              at(2030, 1, 1), at(2030, 1, 2), {}, true, path));
    EXPECT_EQ(datesLeft().size(), 5u);
    EXPECT_EQ(loadArchive(store_.entries, store_.masters, path), kRestoreDone);
    EXPECT_EQ(datesLeft().size(), 5u);
    QB_DUMP_OR_SKIP(dump, path);
    EXPECT_EQ(dump.out,
              "qrb-dump 1\nversion=220 kind=2 (entries-archive) records=0 clients=absent\n")
        << dump.err;
}

TEST_F(ArchiveTest, LoadingTwiceDoublesAndAClientArchiveIsRefused) {
    std::string entriesPath = dir_.file("r.qra");
    ASSERT_TRUE(createArchive(store_.entries, store_.masters, ArchiveType::kDateRange, start_, end_,
                              {}, false, entriesPath));
    Store other;
    EXPECT_EQ(loadArchive(other.entries, other.masters, entriesPath), kRestoreDone);
    EXPECT_EQ(loadArchive(other.entries, other.masters, entriesPath), kRestoreDone);
    EXPECT_EQ(other.allEntries().size(), 6u);

    store_.addClientNamed(u"Acme");
    std::string clientsPath = dir_.file("c.qra");
    ASSERT_TRUE(createArchive(store_.entries, store_.masters, ArchiveType::kClients, 0, 0,
                              {store_.client(u"Acme").oid}, false, clientsPath));
    EXPECT_EQ(loadArchive(other.entries, other.masters, clientsPath), kRestoreWrongKind);
    EXPECT_EQ(other.allEntries().size(), 6u);
    EXPECT_EQ(allClients(other.masters.clients).size(), 0u);
}

TEST_F(ArchiveTest, ClientArchiveKeepsTheChosenOrderAndDeletesOnlyThoseClients) {
    for (const char16_t* name : {u"Alpha", u"Beta", u"Gamma"}) {
        ClientId id = store_.addClientNamed(name);
        addTask(store_.masters.tasks, id, u"Task of " + std::u16string(name));
        addRate(store_.masters.rates, 0, 50.0, id, u"Normal", false);
    }
    ClientId beta = store_.client(u"Beta").clientId;
    ClientId gamma = store_.client(u"Gamma").clientId;
    std::string path = dir_.file("c.qra");
    ASSERT_TRUE(createArchive(store_.entries, store_.masters, ArchiveType::kClients, 0, 0,
                              {store_.client(u"Gamma").oid, store_.client(u"Alpha").oid}, true,
                              path));
    std::vector<ClientRecord> left = allClients(store_.masters.clients);
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].name, u"Beta");
    EXPECT_EQ(namesOf(store_.masters.tasks, beta).size(), 1u);
    EXPECT_TRUE(namesOf(store_.masters.tasks, gamma).empty());
    EXPECT_TRUE(ratesOf(store_.masters.rates, gamma).empty());
    EXPECT_EQ(datesLeft().size(), 5u) << "entries keep their client's name";

    Store other;
    ASSERT_EQ(restoreBackupFile(other.entries, other.masters, path), kRestoreDone);
    EXPECT_EQ(allClients(other.masters.clients).size(), 2u);
    QB_DUMP_OR_SKIP(dump, path);
    EXPECT_NE(dump.out.find("records=0 clients=2\nclient 0: name=\"Gamma\""), std::string::npos)
        << dump.out << dump.err;
}

TEST_F(ArchiveTest, NothingIsDeletedWhenTheFileCannotBeWritten) {
    Status why;
    EXPECT_FALSE(createArchive(store_.entries, store_.masters, ArchiveType::kDateRange, start_,
                               end_, {}, true, "/nonexistent/dir/a.qra", &why));
    EXPECT_NE(why.message().find("/nonexistent/dir/a.qra"), std::string::npos);
    EXPECT_EQ(datesLeft().size(), 5u);
}

// A writer whose client step fails: the file written so far stays on disk.
class FailingClients : public BackupWriter {
  public:
    using BackupWriter::BackupWriter;
    bool writeClients(CompoundStorage&) override { return fail(Status::ioError("disk full")); }
};

TEST(BackupFileTest, AFailedBackupLeavesWhatItWroteOnDisk) {
    Store store;
    ASSERT_TRUE(addEntry(store.entries, entryAt(at(2024, 3, 1))));
    TempDir dir;
    FailingClients writer(store.entries, store.masters);
    EXPECT_FALSE(writer.createFile(dir.file("half.qrb")));
    EXPECT_EQ(writer.lastError().message(), "disk full");
    Store other;
    // The entries are there; "Clients" is not, so a restore fails after them.
    EXPECT_EQ(restoreBackupFile(other.entries, other.masters, dir.file("half.qrb")),
              kRestoreFailed);
    EXPECT_EQ(other.allEntries().size(), 1u);
}

TEST(BackupProgressTest, RunningNumberIsShownBeforeItGrows) {
    struct Recorder : ProgressDisplay {
        std::vector<std::string> lines;
        void changed() override {
            lines.push_back(std::to_string(position()) + "/" + std::to_string(total()) + " " +
                            utf16ToUtf8(line()));
        }
    } progress;
    Store store;
    ASSERT_TRUE(addEntry(store.entries, entryAt(at(2024, 3, 1))));
    ASSERT_TRUE(addEntry(store.entries, entryAt(at(2024, 3, 2))));
    store.addClientNamed(u"Acme");
    TempDir dir;
    ASSERT_TRUE(createBackupFile(store.entries, store.masters, dir.file("p.qrb"), &progress));
    EXPECT_EQ(progress.lines, (std::vector<std::string>{
                                  "0/3 Backing up record 1...", "1/3 Backing up record 1...",
                                  "2/3 Backing up record 2...", "3/3 Backing up record 3..."}));
}

}  // namespace
}  // namespace qb
