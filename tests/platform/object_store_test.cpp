#include "platform/object_store.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "platform/data_file.h"
#include "platform/record_codec.h"

namespace qb {
namespace {

constexpr std::uint32_t kName = makePropId(100, CEVT_LPWSTR);
constexpr std::uint32_t kNumber = makePropId(101, CEVT_UI4);
constexpr std::uint32_t kWhen = makePropId(102, CEVT_FILETIME);

class ObjectStoreTest : public ::testing::Test {
  protected:
    std::unique_ptr<DataFile> file = DataFile::openInMemory();
    ObjectStore store{*file};

    std::unique_ptr<Database> makeDatabase(std::uint32_t sortProp,
                                           std::vector<std::uint32_t> sorts = {kName, kNumber}) {
        DatabaseInfo info{u"People", 42, std::move(sorts)};
        CEOID oid = store.createDatabase(info);
        EXPECT_NE(oid, 0u);
        return store.openDatabase(&oid, u"", sortProp);
    }

    static std::vector<CEPROPVAL> person(const std::u16string& name, std::uint32_t number) {
        return {CEPROPVAL::wstr(100, name), CEPROPVAL::ui4(101, number)};
    }

    // The names of the records in the handle's sort order.
    static std::vector<std::u16string> names(Database& db) {
        std::vector<std::u16string> result;
        std::vector<CEPROPVAL> props;
        for (CEOID oid = db.seek(CEDB_SEEK_BEGINNING, 0); oid != 0;
             oid = db.seek(CEDB_SEEK_CURRENT, 1)) {
            EXPECT_NE(db.readProps(nullptr, &props, nullptr), 0u);
            std::u16string name = u"-";
            for (const CEPROPVAL& p : props) {
                if (p.propid == kName) name = p.str;
            }
            result.push_back(name);
        }
        return result;
    }
};

TEST_F(ObjectStoreTest, DatabasesAreFoundByTypeAndDescribedByOid) {
    CEOID a = store.createDatabase({u"A", 7, {kName}});
    CEOID b = store.createDatabase({u"B", 8, {kNumber, kName}});
    EXPECT_EQ(store.createDatabase({u"A", 9, {}}), 0u) << "names are unique";
    EXPECT_EQ(store.createDatabase({std::u16string(32, u'x'), 9, {}}), 0u)
        << "31 characters at most";

    std::vector<CEOID> ids;
    ASSERT_TRUE(store.findDatabases(0, &ids));
    EXPECT_EQ(ids, (std::vector<CEOID>{a, b}));
    ASSERT_TRUE(store.findDatabases(8, &ids));
    EXPECT_EQ(ids, (std::vector<CEOID>{b}));

    DatabaseInfo info;
    ASSERT_TRUE(store.oidGetInfo(b, &info));
    EXPECT_EQ(info.name, u"B");
    EXPECT_EQ(info.type, 8u);
    EXPECT_EQ(info.sortProps, (std::vector<std::uint32_t>{kNumber, kName}));
    EXPECT_FALSE(store.oidGetInfo(9999, &info));
}

TEST_F(ObjectStoreTest, OpenRefusesUnknownNamesAndUndeclaredSortOrders) {
    store.createDatabase({u"A", 7, {kName}});
    CEOID oid = 0;
    EXPECT_EQ(store.openDatabase(&oid, u"a", kName), nullptr) << "names are case-sensitive";
    EXPECT_EQ(store.openDatabase(&oid, u"A", kNumber), nullptr);
    EXPECT_NE(store.openDatabase(&oid, u"A", kName), nullptr);
    EXPECT_NE(oid, 0u);
}

TEST_F(ObjectStoreTest, RecordsFollowTheSortOrderWithMissingValuesLast) {
    auto byName = makeDatabase(kName);
    byName->writeProps(0, person(u"beta", 2));
    byName->writeProps(0, {CEPROPVAL::ui4(101, 0)});  // no name
    byName->writeProps(0, person(u"Zed", 3));
    byName->writeProps(0, person(u"alpha", 9));
    byName->writeProps(0, person(u"alp", 1));
    // Code-unit order: capitals before small letters, a prefix first.
    EXPECT_EQ(names(*byName),
              (std::vector<std::u16string>{u"Zed", u"alp", u"alpha", u"beta", u"-"}));

    CEOID oid = byName->databaseOid();
    auto byNumber = store.openDatabase(&oid, u"", kNumber);
    EXPECT_EQ(names(*byNumber),
              (std::vector<std::u16string>{u"-", u"alp", u"beta", u"Zed", u"alpha"}));
}

TEST_F(ObjectStoreTest, EachSeekKind) {
    auto db = makeDatabase(kNumber);
    CEOID r10 = db->writeProps(0, person(u"a", 10));
    CEOID r20a = db->writeProps(0, person(u"b", 20));
    CEOID r20b = db->writeProps(0, person(u"c", 20));
    CEOID r30 = db->writeProps(0, person(u"d", 30));
    CEPROPVAL v20 = CEPROPVAL::ui4(101, 20);
    CEPROPVAL v15 = CEPROPVAL::ui4(101, 15);
    CEPROPVAL v99 = CEPROPVAL::ui4(101, 99);

    EXPECT_EQ(db->seek(CEDB_SEEK_BEGINNING, 0), r10);
    EXPECT_EQ(db->seek(CEDB_SEEK_BEGINNING, 2), r20b);
    EXPECT_EQ(db->seek(CEDB_SEEK_CURRENT, 1), r30);
    EXPECT_EQ(db->seek(CEDB_SEEK_CURRENT, 1), 0u) << "past the end";

    EXPECT_EQ(db->seek(CEDB_SEEK_VALUEFIRSTEQUAL, 0, &v20), r20a);
    EXPECT_EQ(db->seek(CEDB_SEEK_VALUENEXTEQUAL, 0, &v20), r20b);
    EXPECT_EQ(db->seek(CEDB_SEEK_VALUENEXTEQUAL, 0, &v20), 0u);
    EXPECT_EQ(db->seek(CEDB_SEEK_VALUEFIRSTEQUAL, 0, &v15), 0u);

    // Value-greater finds an equal record, else the next larger one.
    EXPECT_EQ(db->seek(CEDB_SEEK_VALUEGREATER, 0, &v20), r20a);
    EXPECT_EQ(db->seek(CEDB_SEEK_VALUEGREATER, 0, &v15), r20a);
    EXPECT_EQ(db->seek(CEDB_SEEK_VALUEGREATER, 0, &v99), 0u);

    EXPECT_EQ(db->seek(CEDB_SEEK_CEOID, r30), r30);
    EXPECT_EQ(db->seek(CEDB_SEEK_CEOID, 12345), 0u);
    std::vector<CEPROPVAL> props;
    long error = 0;
    EXPECT_EQ(db->readProps(nullptr, &props, &error), 0u);
    EXPECT_EQ(error, ERROR_NO_MORE_ITEMS) << "a failed seek leaves no current record";
}

TEST_F(ObjectStoreTest, HandlesKeepTheirOwnCursors) {
    auto first = makeDatabase(kNumber);
    CEOID oid = first->databaseOid();
    auto second = store.openDatabase(&oid, u"", kName);
    CEOID a = first->writeProps(0, person(u"z", 1));
    CEOID b = first->writeProps(0, person(u"y", 2));
    EXPECT_EQ(first->seek(CEDB_SEEK_BEGINNING, 0), a);
    EXPECT_EQ(second->seek(CEDB_SEEK_BEGINNING, 0), b);
    EXPECT_EQ(first->seek(CEDB_SEEK_CURRENT, 1), b);
    EXPECT_EQ(second->seek(CEDB_SEEK_CURRENT, 1), a);
}

TEST_F(ObjectStoreTest, UpdatesReplaceAppendAndDeleteProperties) {
    auto db = makeDatabase(kName);
    CEOID oid = db->writeProps(
        0, {CEPROPVAL::wstr(100, u"n"), CEPROPVAL::ui4(101, 1), CEPROPVAL::fileTime(102, 77)});
    ASSERT_NE(oid, 0u);
    std::vector<CEPROPVAL> change{CEPROPVAL::ui4(101, 2), CEPROPVAL::fileTime(102, 0).deleted(),
                                  CEPROPVAL::blobOf(103, {1, 2, 3}),
                                  CEPROPVAL::wstr(104, u"").deleted()};
    EXPECT_EQ(db->writeProps(oid, change), oid);
    EXPECT_EQ(db->writeProps(4242, change), 0u) << "no such record";

    db->seek(CEDB_SEEK_CEOID, oid);
    std::vector<CEPROPVAL> props;
    ASSERT_EQ(db->readProps(nullptr, &props, nullptr), oid);
    ASSERT_EQ(props.size(), 3u);
    EXPECT_EQ(props[0].str, u"n");
    EXPECT_EQ(props[1].num, 2u);
    EXPECT_EQ(props[2].blob, (std::vector<std::uint8_t>{1, 2, 3}));

    std::vector<std::uint32_t> which{kWhen, kNumber};
    ASSERT_EQ(db->readProps(&which, &props, nullptr), oid);
    EXPECT_EQ(props[0].flags, CEDB_PROPNOTFOUND);
    EXPECT_EQ(props[1].num, 2u);
}

TEST_F(ObjectStoreTest, AWriteDuringAWalkIsSeenAndTheWalkGoesOn) {
    auto db = makeDatabase(kNumber);
    std::vector<CEOID> ids;
    for (std::uint32_t i = 1; i <= 6; ++i) ids.push_back(db->writeProps(0, person(u"p", i * 10)));

    // Delete one behind the walk, as the archive does.
    std::vector<std::uint32_t> seen;
    std::vector<CEPROPVAL> props;
    CEOID pending = 0;
    for (CEOID oid = db->seek(CEDB_SEEK_BEGINNING, 0); oid != 0;) {
        db->readProps(nullptr, &props, nullptr);
        seen.push_back(static_cast<std::uint32_t>(props[1].num));
        CEOID current = oid;
        oid = db->seek(CEDB_SEEK_CURRENT, 1);
        if (pending) db->deleteRecord(pending);
        pending = current;
    }
    db->deleteRecord(pending);
    EXPECT_EQ(seen, (std::vector<std::uint32_t>{10, 20, 30, 40, 50, 60}));
    EXPECT_EQ(db->seek(CEDB_SEEK_BEGINNING, 0), 0u);
    EXPECT_FALSE(db->deleteRecord(ids[0])) << "already gone";
}

// A walk reads the record it stands on where the scan holds it; another
// handle's seek makes the scan let go, and the record must still read whole
// and the walk go on past equal keys.
TEST_F(ObjectStoreTest, TheRecordStoodOnOutlivesTheScanLettingGo) {
    auto walker = makeDatabase(kNumber);
    CEOID oid = walker->databaseOid();
    auto other = store.openDatabase(&oid, u"", kName);
    const std::u16string names[] = {u"a", u"b", u"c", u"d"};
    for (const std::u16string& name : names) walker->writeProps(0, person(name, 7));

    std::vector<std::u16string> seen;
    std::string_view encoded;
    for (CEOID at = walker->seek(CEDB_SEEK_BEGINNING, 0); at != 0;
         at = walker->seek(CEDB_SEEK_CURRENT, 1)) {
        other->seek(CEDB_SEEK_BEGINNING, 0);
        ASSERT_EQ(walker->readEncoded(&encoded, nullptr), at);
        PropReader reader(encoded);
        PropView first;
        ASSERT_TRUE(reader.next(first));
        std::u16string name;
        assignText(first.bytes, name);
        seen.push_back(name);
    }
    EXPECT_EQ(seen, (std::vector<std::u16string>{u"a", u"b", u"c", u"d"}));
}

TEST_F(ObjectStoreTest, ARecordThatDoesNotDecodeReadsAsAnError) {
    auto db = makeDatabase(kName);
    CEOID oid = db->writeProps(0, person(u"ok", 1));
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(file->handle(), "UPDATE records SET props = x'6400' || props WHERE oid = ?",
                       -1, &stmt, nullptr);
    sqlite3_bind_int64(stmt, 1, oid);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_DONE);
    sqlite3_finalize(stmt);

    ASSERT_EQ(db->seek(CEDB_SEEK_CEOID, oid), oid);
    std::vector<CEPROPVAL> props;
    long error = 0;
    EXPECT_EQ(db->readProps(nullptr, &props, &error), 0u);
    EXPECT_EQ(error, ERROR_INVALID_DATA);
    EXPECT_EQ(db->writeProps(oid, person(u"x", 2)), 0u) << "a damaged record is not rewritten";
}

// A record made on another thread with encodeNew is stored as writeProps
// stores the values: the same bytes, in the same place of each sort order.
TEST_F(ObjectStoreTest, EncodedRecordsAreStoredAsWrittenOnes) {
    const std::vector<std::vector<CEPROPVAL>> records = {
        person(u"b", 2),
        person(u"a", 3),
        {CEPROPVAL::ui4(101, 1)},  // no name: last by name
        {CEPROPVAL::wstr(100, u"c"), CEPROPVAL::wstr(100, u"d"), CEPROPVAL::ui4(101, 0),
         CEPROPVAL::fileTime(102, 5).deleted()},
    };
    const CEOID writtenOid = store.createDatabase({u"Written", 42, {kName, kNumber}});
    const CEOID encodedOid = store.createDatabase({u"Encoded", 42, {kName, kNumber}});
    std::unique_ptr<Database> written[2], encoded[2];
    const std::uint32_t sorts[2] = {kName, kNumber};
    for (int i = 0; i < 2; ++i) {
        CEOID a = writtenOid, b = encodedOid;
        written[i] = store.openDatabase(&a, u"", sorts[i]);
        encoded[i] = store.openDatabase(&b, u"", sorts[i]);
        ASSERT_TRUE(written[i] && encoded[i]);
    }
    for (const std::vector<CEPROPVAL>& values : records) {
        ASSERT_NE(written[0]->writeProps(0, values), 0u);
        ASSERT_NE(encoded[0]->insertEncoded(Database::encodeNew(values)), 0u);
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(names(*encoded[i]), names(*written[i]));
        for (CEOID a = written[i]->seek(CEDB_SEEK_BEGINNING, 0),
                   b = encoded[i]->seek(CEDB_SEEK_BEGINNING, 0);
             a != 0 || b != 0; a = written[i]->seek(CEDB_SEEK_CURRENT, 1),
                   b = encoded[i]->seek(CEDB_SEEK_CURRENT, 1)) {
            std::string_view bytesA, bytesB;
            ASSERT_NE(written[i]->readEncoded(&bytesA, nullptr), 0u);
            ASSERT_NE(encoded[i]->readEncoded(&bytesB, nullptr), 0u);
            EXPECT_EQ(std::string(bytesA), std::string(bytesB));
        }
    }
    EXPECT_EQ(names(*encoded[0]), (std::vector<std::u16string>{u"a", u"b", u"d", u"-"}));
}

}  // namespace
}  // namespace qb
