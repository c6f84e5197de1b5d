#include "entry/replace_text.h"

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

TEST(ReplaceCheck, KeepsBothQuirks) {
    EXPECT_EQ(checkReplace(0, u"x"), ReplaceCheck::kFirstFindItem);
    EXPECT_EQ(checkReplace(2, u""), ReplaceCheck::kEmptyReplacement);
    EXPECT_EQ(checkReplace(-1, u"x"), ReplaceCheck::kOk);
    EXPECT_TRUE(kReplaceRefusalText.empty());
}

}  // namespace
}  // namespace qb
