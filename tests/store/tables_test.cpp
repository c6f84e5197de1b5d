#include "store/tables.h"

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "store/master_data.h"
#include "store/record_props.h"

namespace qb {
namespace {

std::vector<DatabaseInfo> allDatabases(Platform& p) {
    std::vector<CEOID> ids;
    p.objects().findDatabases(0, &ids);
    std::vector<DatabaseInfo> result;
    for (CEOID id : ids) {
        DatabaseInfo info;
        p.objects().oidGetInfo(id, &info);
        result.push_back(info);
    }
    return result;
}

TEST(TablesTest, AFirstStartCreatesTheSevenDatabasesAndTheCounter) {
    auto p = Platform::inMemory();
    EntryTable entries(*p);
    ASSERT_TRUE(entries.open());
    MasterTables masters(*p);
    ASSERT_TRUE(masters.open());

    struct Expected {
        std::u16string name;
        std::uint32_t type;
        std::vector<std::uint32_t> sorts;
    };
    const std::vector<Expected> expected = {
        {u"Quillarbor Data 1", 79990001, {makePropId(1001, CEVT_FILETIME)}},
        {u"Quillarbor Clients", 79990004, {makePropId(1002, CEVT_LPWSTR)}},
        {u"Quillarbor Data 2", 79990002,
         {makePropId(1102, CEVT_UI2), makePropId(1101, CEVT_LPWSTR)}},
        {u"Quillarbor Projects", 79990005, {makePropId(1201, CEVT_UI4)}},
        {u"Quillarbor Tasks", 79990006, {makePropId(1201, CEVT_UI4)}},
        {u"Quillarbor Contacts", 79990007, {makePropId(1201, CEVT_UI4)}},
        {u"Quillarbor Rates", 79990003, {makePropId(1201, CEVT_UI4)}},
    };
    std::vector<DatabaseInfo> made = allDatabases(*p);
    ASSERT_EQ(made.size(), expected.size());
    for (std::size_t i = 0; i < made.size(); ++i) {
        EXPECT_EQ(made[i].name, expected[i].name);
        EXPECT_EQ(made[i].type, expected[i].type);
        EXPECT_EQ(made[i].sortProps, expected[i].sorts);
    }
    EXPECT_EQ(nextClientId(*p), 1u);
    EXPECT_EQ(nextClientId(*p), 2u);

    // A second start finds everything and makes nothing new.
    MasterTables again(*p);
    ASSERT_TRUE(again.open());
    EXPECT_EQ(allDatabases(*p).size(), expected.size());
    EXPECT_EQ(nextClientId(*p), 3u);
}

// An older store kept the counter seed in the registry.
TEST(TablesTest, AClientsDatabaseWithoutCounterTakesTheRegistrySeed) {
    for (bool withSeed : {true, false}) {
        auto p = Platform::inMemory();
        p->objects().createDatabase({u"Quillarbor Clients", 79990004, {kClientNameSort}});
        if (withSeed) {
            p->registry().createKey(RegRoot::HKEY_CURRENT_USER, kAppKey)->setDword("NextClient", 57);
        }
        ClientTable clients(*p);
        ASSERT_TRUE(clients.open());
        EXPECT_EQ(nextClientId(*p), withSeed ? 57u : 1u);
    }
}

TEST(TablesTest, NoCounterMeansNoClientId) {
    auto p = Platform::inMemory();
    EXPECT_EQ(nextClientId(*p), 0u);
}

TEST(TablesTest, DropListItemsAreUniquePerKindAndNeverEmpty) {
    auto p = Platform::inMemory();
    ListTable byText(*p, ListTable::Order::kByText);
    ASSERT_TRUE(byText.open());
    EXPECT_NE(byText.addItem(kListPhase, u"Design"), 0u);
    EXPECT_EQ(byText.addItem(kListPhase, u"Design"), 0u);
    EXPECT_EQ(byText.addItem(kListPhase, u""), 0u);
    EXPECT_NE(byText.addItem(kListCurrency, u"Design"), 0u) << "another kind";
    EXPECT_NE(byText.addItem(kListPhase, u"design"), 0u) << "case matters";
    EXPECT_NE(byText.addItem(kListPhase, u"Build"), 0u);

    ListTable byKind(*p, ListTable::Order::kByKind);
    ASSERT_TRUE(byKind.open());
    EXPECT_EQ(byKind.items(kListPhase), (std::vector<std::u16string>{u"Design", u"design", u"Build"}));
    EXPECT_EQ(byText.items(kListPhase), (std::vector<std::u16string>{u"Build", u"Design", u"design"}));
    EXPECT_EQ(byKind.addItem(kListPhase, u"Build"), 0u);
    EXPECT_TRUE(byKind.removeItem(kListPhase, u"Design"));
    EXPECT_FALSE(byKind.removeItem(kListPhase, u"Design"));
    EXPECT_TRUE(byKind.removeKind(kListPhase));
    EXPECT_TRUE(byKind.items(kListPhase).empty());
    EXPECT_EQ(byKind.items(kListCurrency), (std::vector<std::u16string>{u"Design"}));
}

TEST(TablesTest, TheSystemAddressBookIsNamedByTheRegistry) {
    auto p = Platform::inMemory();
    SystemContactsTable missing(*p);
    EXPECT_FALSE(missing.open()) << "never created by us";
    EXPECT_EQ(missing.name(), u"Contacts Database");

    p->registry()
        .createKey(RegRoot::HKEY_LOCAL_MACHINE, "Explorer\\Database")
        ->setString("ContactsDatabase", u"Address Book");
    p->objects().createDatabase({u"Address Book", 24, {kFileAsSort}});
    SystemContactsTable named(*p);
    EXPECT_TRUE(named.open());
    EXPECT_EQ(named.name(), u"Address Book");
}

TEST(TablesTest, CursorPairWalksAllOrTheFilteredRecords) {
    auto p = Platform::inMemory();
    TaskTable tasks(*p);
    ASSERT_TRUE(tasks.open());
    addTask(tasks, 2, u"a");
    addTask(tasks, 1, u"b");
    addTask(tasks, 2, u"c");
    auto count = [&](const CEPROPVAL* filter) {
        int n = 0;
        for (bool f = tasks.first(filter); f; f = tasks.next()) ++n;
        return n;
    };
    CEPROPVAL two = CEPROPVAL::ui4(kPropClientId, 2);
    EXPECT_EQ(count(nullptr), 3);
    EXPECT_EQ(count(&two), 2);
    EXPECT_TRUE(tasks.removeAllFor(2));
    EXPECT_EQ(count(nullptr), 1);
}

}  // namespace
}  // namespace qb
