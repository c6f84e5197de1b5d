#include "store/master_data.h"

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "store/entry_walk.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {
namespace {

class MasterDataTest : public ::testing::Test {
protected:
    std::unique_ptr<Platform> platform = Platform::inMemory();
    MasterTables m{*platform};

    void SetUp() override { ASSERT_TRUE(m.open()); }

    TimeEntry entry(const std::u16string& client, const std::u16string& project,
                    const std::u16string& task) {
        TimeEntry e;
        e.client = client;
        e.project = project;
        e.task = task;
        return e;
    }

    std::vector<std::u16string> dropList(ListKind kind) {
        ListTable list(*platform, ListTable::Order::kByKind);
        list.open();
        return list.items(kind);
    }
};

TEST_F(MasterDataTest, SavingAnEntryRegistersItsClientProjectAndLists) {
    TimeEntry e = entry(u"Acme", u"Web", u"Design");
    e.phase = u"Build";
    e.currency = u"EUR";
    e.custom2 = u"c2";
    registerMasterData(m, e);
    registerMasterData(m, e);  // saving again changes nothing

    std::vector<ClientRecord> clients = allClients(m.clients);
    ASSERT_EQ(clients.size(), 1u);
    EXPECT_EQ(clients[0].name, u"Acme");
    EXPECT_EQ(clients[0].clientId, 1u);
    std::vector<ProjectRecord> projects = projectsOf(m.projects, 1);
    ASSERT_EQ(projects.size(), 1u);
    EXPECT_EQ(projects[0].project, u"Web");
    EXPECT_EQ(projects[0].task, u"Design");
    EXPECT_TRUE(namesOf(m.tasks, 1).empty());
    EXPECT_TRUE(namesOf(m.contacts, 1).empty()) << "no bill-to, no contact";
    EXPECT_EQ(dropList(kListPhase), (std::vector<std::u16string>{u"Build"}));
    EXPECT_EQ(dropList(kListCurrency), (std::vector<std::u16string>{u"EUR"}));
    EXPECT_EQ(dropList(kListCustom2), (std::vector<std::u16string>{u"c2"}));
    EXPECT_TRUE(dropList(kListCustom1).empty());

    TimeEntry noProject = entry(u"Acme", u"", u"Support");
    noProject.billTo = u"Bob";
    registerMasterData(m, noProject);
    EXPECT_EQ(projectsOf(m.projects, 1).size(), 1u);
    ASSERT_EQ(namesOf(m.tasks, 1).size(), 1u);
    EXPECT_EQ(namesOf(m.tasks, 1)[0].name, u"Support");
    ASSERT_EQ(namesOf(m.contacts, 1).size(), 1u);
    EXPECT_EQ(namesOf(m.contacts, 1)[0].name, u"Bob");
}

TEST_F(MasterDataTest, ClientsDifferingInCaseAreTwoClients) {
    ClientId a = 0, b = 0;
    EXPECT_NE(addClient(m.clients, u"acme", &a), 0u);
    EXPECT_NE(addClient(m.clients, u"Acme", &b), 0u);
    EXPECT_EQ(addClient(m.clients, u"Acme"), 0u);
    EXPECT_EQ(addClient(m.clients, u""), 0u);
    EXPECT_NE(a, b);
    EXPECT_EQ(clientIdOf(m.clients, u"acme"), a);
    EXPECT_EQ(clientIdOf(m.clients, u"ACME"), kNoClient);
}

TEST_F(MasterDataTest, DuplicateChecksCompareTheFirst127Characters) {
    std::u16string longName(127, u'x');
    EXPECT_NE(addTask(m.tasks, 1, longName + u"a"), 0u);
    EXPECT_EQ(addTask(m.tasks, 1, longName + u"b"), 0u);
    EXPECT_NE(addTask(m.tasks, 2, longName + u"b"), 0u) << "another client";
    EXPECT_NE(addProjectTask(m.projects, 1, u"P", u"t1"), 0u);
    EXPECT_NE(addProjectTask(m.projects, 1, u"P", u"t2"), 0u);
    EXPECT_EQ(addProjectTask(m.projects, 1, u"P", u"t1"), 0u);
    EXPECT_EQ(addProjectTask(m.projects, 1, u"", u"t1"), 0u);
}

TEST_F(MasterDataTest, DeletingAClientKeepsEntriesAndOtherClientsAndDefaultRates) {
    EntryTable entries(*platform);
    ASSERT_TRUE(entries.open());
    for (const char16_t* name : {u"Acme", u"Globex"}) {
        TimeEntry e = entry(name, u"Web", u"Design");
        e.billTo = u"Bob";
        ASSERT_TRUE(addEntry(entries, e));
        registerMasterData(m, e);
        ClientId id = clientIdOf(m.clients, name);
        addTask(m.tasks, id, u"Loose");
        addRate(m.rates, 0, 10, id, u"Hourly", false);
    }
    addRate(m.rates, 3, 99, kDefaultRatesClient, u"Flat", false);
    ClientId acme = clientIdOf(m.clients, u"Acme");
    ASSERT_TRUE(m.clients.seekEqual(CEPROPVAL::wstr(1002, u"Acme")));
    ASSERT_TRUE(removeClient(m, {m.clients.currentOid()}));

    EXPECT_EQ(clientIdOf(m.clients, u"Acme"), kNoClient);
    EXPECT_TRUE(projectsOf(m.projects, acme).empty());
    EXPECT_TRUE(namesOf(m.tasks, acme).empty());
    EXPECT_TRUE(namesOf(m.contacts, acme).empty());
    EXPECT_TRUE(ratesOf(m.rates, acme).empty());
    ClientId globex = clientIdOf(m.clients, u"Globex");
    EXPECT_EQ(projectsOf(m.projects, globex).size(), 1u);
    EXPECT_EQ(ratesOf(m.rates, globex).size(), 1u);
    EXPECT_EQ(ratesOf(m.rates, kDefaultRatesClient).size(), 1u);

    std::vector<std::u16string> clientsOfEntries;
    walkEntries(entries, 0, ~0ull, [&](const TimeEntry& e) {
        clientsOfEntries.push_back(e.client);
        return true;
    });
    EXPECT_EQ(clientsOfEntries, (std::vector<std::u16string>{u"Acme", u"Globex"}));
}

TEST_F(MasterDataTest, RatesAreStoredTruncatedToHundredths) {
    struct Case {
        double typed;
        std::uint32_t stored;
    } cases[] = {{0.29, 28}, {0.58, 57}, {1.16, 115}, {2.05, 204}, {45.5, 4550}, {0, 0}};
    for (const Case& c : cases) {
        CEOID oid = addRate(m.rates, 1, c.typed, 7, u"r", true);
        ASSERT_TRUE(m.rates.seekOid(oid));
        RateRecord r;
        ASSERT_TRUE(readRate(m.rates, &r));
        EXPECT_EQ(r.rate, c.stored) << c.typed;
        EXPECT_EQ(r.rateType, 1);
        EXPECT_EQ(r.clientId, 7u);
        EXPECT_TRUE(r.flag);
    }
    ASSERT_TRUE(m.rates.seekFirst());
    ASSERT_TRUE(updateRate(m.rates, 4, 12.5, 7, u"changed", false));
    RateRecord r;
    ASSERT_TRUE(readRate(m.rates, &r));
    EXPECT_EQ(r.description, u"changed");
    EXPECT_EQ(r.rate, 1250u);
}

TEST_F(MasterDataTest, RemovingAProjectRemovesEveryPairOfIt) {
    addProjectTask(m.projects, 1, u"Web", u"a");
    addProjectTask(m.projects, 1, u"Web", u"b");
    addProjectTask(m.projects, 1, u"App", u"a");
    addProjectTask(m.projects, 2, u"Web", u"a");
    ASSERT_TRUE(removeProject(m.projects, 1, u"Web"));
    std::vector<ProjectRecord> left = projectsOf(m.projects, 1);
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].project, u"App");
    EXPECT_EQ(projectsOf(m.projects, 2).size(), 1u);
}

}  // namespace
}  // namespace qb
