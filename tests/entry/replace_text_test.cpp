#include "entry/replace_text.h"

#include <algorithm>

#include "bulk_support.h"

namespace qb {
namespace {

class ReplaceTextTest : public StoreTest {
  protected:
    struct Counter : ReplaceProgress {
        long range = -1, steps = 0;
        void setRange(long maximum) override { range = maximum; }
        void step() override { ++steps; }
    };

    ReplaceResult replace(ReplaceField field, const std::u16string& find,
                          const std::u16string& with, Counter* progress = nullptr) {
        return replaceFieldText(platform->file(), entries, m, field, find, with, progress);
    }
};

TEST_F(ReplaceTextTest, ClientMatchesWholeTextCaseSensitively) {
    client(u"Acme");
    client(u"acme");
    CEOID exact = entry(u"Acme", u"T", 1);
    CEOID lower = entry(u"acme", u"T", 2);
    CEOID longer = entry(u"Acme Inc", u"T", 3);
    Counter progress;
    ReplaceResult r = replace(ReplaceField::kClient, u"Acme", u"Acme Ltd", &progress);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.masterRenamed, 1);
    EXPECT_EQ(r.entriesChanged, 1);
    EXPECT_EQ(stored(exact).client, u"Acme Ltd");
    EXPECT_EQ(stored(lower).client, u"acme");
    EXPECT_EQ(stored(longer).client, u"Acme Inc");
    EXPECT_NE(clientIdOf(m.clients, u"Acme Ltd"), kNoClient);
    EXPECT_NE(clientIdOf(m.clients, u"acme"), kNoClient);
    EXPECT_EQ(progress.range, 4);
    EXPECT_EQ(progress.steps, 4);
}

TEST(ReplaceText, TaskAndProjectTaskRenameDifferentMasterRecords) {
    struct Case {
        ReplaceField field;
        std::u16string pairTask, ownTask;
    } cases[] = {
        {ReplaceField::kTask, u"Design", u"Draft"},
        {ReplaceField::kProjectTask, u"Draft", u"Design"},
    };
    for (const Case& c : cases) {
        auto store = Platform::inMemory();
        MasterTables tables(*store);
        EntryTable none(*store);
        ASSERT_TRUE(tables.open() && none.open());
        ClientId acme = 0;
        addClient(tables.clients, u"Acme", &acme);
        addProjectTask(tables.projects, acme, u"Web", u"Design");
        addTask(tables.tasks, acme, u"Design");
        ASSERT_TRUE(
            replaceFieldText(store->file(), none, tables, c.field, u"Design", u"Draft", nullptr)
                .ok);
        EXPECT_EQ(projectsOf(tables.projects, acme)[0].task, c.pairTask);
        EXPECT_EQ(namesOf(tables.tasks, acme)[0].name, c.ownTask);
    }
}

TEST_F(ReplaceTextTest, BothTaskChoicesChangeTheEntriesTask) {
    CEOID underProject = entry(u"Acme", u"Design", 1, true, u"Web");
    CEOID own = entry(u"Acme", u"Design", 2);
    ASSERT_TRUE(replace(ReplaceField::kTask, u"Design", u"Draft").ok);
    EXPECT_EQ(stored(underProject).task, u"Draft");
    EXPECT_EQ(stored(own).task, u"Draft");
    ASSERT_TRUE(replace(ReplaceField::kProjectTask, u"Draft", u"Sketch").ok);
    EXPECT_EQ(stored(own).task, u"Sketch");
}

TEST_F(ReplaceTextTest, DropListsAndChoices) {
    ListTable list(*platform, ListTable::Order::kByKind);
    ASSERT_TRUE(list.open());
    list.addItem(kListPhase, u"Build");
    list.addItem(kListCurrency, u"Build");
    ASSERT_TRUE(replace(ReplaceField::kPhase, u"Build", u"Make").ok);
    EXPECT_EQ(list.items(kListPhase), (std::vector<std::u16string>{u"Make"}));
    EXPECT_EQ(list.items(kListCurrency), (std::vector<std::u16string>{u"Build"}));
    EXPECT_EQ(findChoices(m, ReplaceField::kCurrency), (std::vector<std::u16string>{u"Build"}));
    EXPECT_EQ(replaceFieldText(ReplaceField::kProjectTask), u"Project-Task");
    EXPECT_EQ(replaceFieldText(ReplaceField::kBillTo), u"Bill To");
}

// Replacing a client with the name of another client merges the two: the
// projects, tasks, contacts and rates of the first move over, what the
// second holds already is not repeated, and one client is left.
TEST_F(ReplaceTextTest, ClientOntoAnotherClientMerges) {
    ClientId acme = client(u"Acme");
    ClientId bolt = client(u"Bolt");
    addProjectTask(m.projects, acme, u"Web", u"Design");
    addProjectTask(m.projects, acme, u"Web", u"Deploy");
    addProjectTask(m.projects, acme, u"Docs", u"");
    addProjectTask(m.projects, bolt, u"Web", u"Design");
    addTask(m.tasks, acme, u"Admin");
    addTask(m.tasks, acme, u"Support");
    addTask(m.tasks, bolt, u"Support");
    addContact(m.contacts, acme, u"Alice");
    addContact(m.contacts, bolt, u"Alice");
    addContact(m.contacts, acme, u"Carol");
    addRate(m.rates, 0, 50, acme, u"Std", false);
    addRate(m.rates, 0, 50, bolt, u"Std", false);
    addRate(m.rates, 1, 75, acme, u"Late", false);
    CEOID moved = entry(u"Acme", u"Admin", 1);

    ReplaceResult r = replace(ReplaceField::kClient, u"Acme", u"Bolt");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(allClients(m.clients).size(), 1u);
    EXPECT_EQ(clientIdOf(m.clients, u"Acme"), kNoClient);
    EXPECT_EQ(stored(moved).client, u"Bolt");
    EXPECT_EQ(r.entriesChanged, 1);

    std::vector<std::u16string> pairs;
    for (const ProjectRecord& p : projectsOf(m.projects, bolt)) {
        pairs.push_back(p.project + u"/" + p.task);
    }
    std::sort(pairs.begin(), pairs.end());
    EXPECT_EQ(pairs, (std::vector<std::u16string>{u"Docs/", u"Web/Deploy", u"Web/Design"}));
    auto names = [](const std::vector<NamedRecord>& records) {
        std::vector<std::u16string> n;
        for (const NamedRecord& r : records) n.push_back(r.name);
        std::sort(n.begin(), n.end());
        return n;
    };
    EXPECT_EQ(names(namesOf(m.tasks, bolt)), (std::vector<std::u16string>{u"Admin", u"Support"}));
    EXPECT_EQ(names(namesOf(m.contacts, bolt)), (std::vector<std::u16string>{u"Alice", u"Carol"}));
    std::vector<std::u16string> rates;
    for (const RateRecord& rate : ratesOf(m.rates, bolt)) rates.push_back(rate.description);
    std::sort(rates.begin(), rates.end());
    EXPECT_EQ(rates, (std::vector<std::u16string>{u"Late", u"Std"}));
    // Nothing is left under the merged client's id.
    EXPECT_TRUE(projectsOf(m.projects, acme).empty());
    EXPECT_TRUE(namesOf(m.tasks, acme).empty());
    EXPECT_TRUE(namesOf(m.contacts, acme).empty());
    EXPECT_TRUE(ratesOf(m.rates, acme).empty());
    // The client record and the repeated pair, task, contact and rate went;
    // the other five records moved.
    EXPECT_EQ(r.masterMerged, 5);
    EXPECT_EQ(r.masterRenamed, 5);
}

// Project, task, bill-to and drop-list texts: a rename that would repeat a
// record of the same client (or list) drops it; other clients keep theirs.
TEST_F(ReplaceTextTest, TextsOntoPresentTextsMergeWithoutRepeats) {
    struct Case {
        ReplaceField field;
        const char16_t* find;
        const char16_t* with;
        long merged;
        long renamed;
    };
    const Case cases[] = {
        {ReplaceField::kProject, u"Site", u"Web", 1, 2},  // Site/Design repeats Web/Design
        {ReplaceField::kProjectTask, u"Draft", u"Design", 1, 1},
        {ReplaceField::kTask, u"Admin", u"Support", 1, 1},  // Acme has both; Bolt only Admin
        {ReplaceField::kBillTo, u"Bob", u"Alice", 1, 0},
        {ReplaceField::kPhase, u"Draft", u"Final", 1, 0},
    };
    for (const Case& c : cases) {
        auto store = Platform::inMemory();
        MasterTables t(*store);
        EntryTable none(*store);
        ASSERT_TRUE(t.open() && none.open());
        ClientId acme = 0;
        ClientId bolt = 0;
        addClient(t.clients, u"Acme", &acme);
        addClient(t.clients, u"Bolt", &bolt);
        addProjectTask(t.projects, acme, u"Web", u"Design");
        addProjectTask(t.projects, acme, u"Site", u"Design");
        addProjectTask(t.projects, acme, u"Site", u"Survey");
        addProjectTask(t.projects, acme, u"Web", u"Draft");
        addProjectTask(t.projects, acme, u"Docs", u"Draft");
        addProjectTask(t.projects, bolt, u"Site", u"Design");
        addTask(t.tasks, acme, u"Admin");
        addTask(t.tasks, acme, u"Support");
        addTask(t.tasks, bolt, u"Admin");
        addContact(t.contacts, acme, u"Alice");
        addContact(t.contacts, acme, u"Bob");
        ListTable list(*store, ListTable::Order::kByKind);
        ASSERT_TRUE(list.open());
        list.addItem(kListPhase, u"Draft");
        list.addItem(kListPhase, u"Final");

        const ReplaceResult r =
            replaceFieldText(store->file(), none, t, c.field, c.find, c.with, nullptr);
        ASSERT_TRUE(r.ok);
        EXPECT_EQ(r.masterMerged, c.merged) << static_cast<int>(c.field);
        EXPECT_EQ(r.masterRenamed, c.renamed) << static_cast<int>(c.field);
        // No client holds a repeat, whichever field was replaced.
        for (ClientId id : {acme, bolt}) {
            const auto pairs = projectsOf(t.projects, id);
            for (std::size_t i = 0; i < pairs.size(); ++i) {
                for (std::size_t j = i + 1; j < pairs.size(); ++j) {
                    EXPECT_FALSE(pairs[i].project == pairs[j].project &&
                                 pairs[i].task == pairs[j].task);
                }
            }
            for (PropertyTable* named : {static_cast<PropertyTable*>(&t.tasks),
                                         static_cast<PropertyTable*>(&t.contacts)}) {
                const auto records = namesOf(*named, id);
                for (std::size_t i = 0; i < records.size(); ++i) {
                    for (std::size_t j = i + 1; j < records.size(); ++j) {
                        EXPECT_NE(records[i].name, records[j].name);
                    }
                }
            }
        }
        EXPECT_EQ(list.items(kListPhase).size(), c.field == ReplaceField::kPhase ? 1u : 2u);
    }
}

TEST(ReplaceCheck, KeepsBothQuirks) {
    EXPECT_EQ(checkReplace(0, u"x"), ReplaceCheck::kFirstFindItem);
    EXPECT_EQ(checkReplace(2, u""), ReplaceCheck::kEmptyReplacement);
    EXPECT_EQ(checkReplace(-1, u"x"), ReplaceCheck::kOk);
    EXPECT_TRUE(kReplaceRefusalText.empty());
}

}  // namespace
}  // namespace qb
