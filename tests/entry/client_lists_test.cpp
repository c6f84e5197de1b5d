#include "entry/client_lists.h"

#include "bulk_support.h"
#include "entry/client_migration.h"
#include "entry/drop_lists.h"

namespace qb {
namespace {

using ClientListsTest = StoreTest;
using Names = std::vector<std::u16string>;

TEST_F(ClientListsTest, ImportAddsInOrderAsEachAddDoes) {
    ClientId acme = client(u"Acme");
    addProjectTask(m.projects, acme, u"Web", u"");
    std::size_t added = 0;
    struct Case {
        ListLevel level;
        ListTarget target;
        Names items;
        std::size_t added;
    } cases[] = {
        {ListLevel::kClients, {}, {u"Zed", u"Acme", u"Bee", u"Zed"}, 2},
        {ListLevel::kProjects, {acme, u""}, {u"Web", u"Docs"}, 1},
        {ListLevel::kTasks, {acme, u"Web"}, {u"Design", u"Build"}, 2},
        {ListLevel::kTasks, {acme, u""}, {u"Admin"}, 1},
        {ListLevel::kContacts, {acme, u""}, {u"Bob", u"Ann"}, 2},
    };
    for (const Case& c : cases) {
        ASSERT_TRUE(importListItems(platform->file(), m, c.level, c.target, c.items, &added));
        EXPECT_EQ(added, c.added) << static_cast<int>(c.level);
    }
    EXPECT_EQ(listItemsOf(m, ListLevel::kClients, {}), (Names{u"Acme", u"Bee", u"Zed"}));
    EXPECT_EQ(listItemsOf(m, ListLevel::kProjects, {acme, u""}), (Names{u"Web", u"Docs"}));
    EXPECT_EQ(listItemsOf(m, ListLevel::kTasks, {acme, u"Web"}), (Names{u"Design", u"Build"}));
    EXPECT_EQ(listItemsOf(m, ListLevel::kTasks, {acme, u""}), (Names{u"Admin"}));
    EXPECT_EQ(listItemsOf(m, ListLevel::kContacts, {acme, u""}), (Names{u"Bob", u"Ann"}));
}

TEST_F(ClientListsTest, MigrationMovesAndMerges) {
    ClientId from = client(u"Old");
    ClientId to = client(u"New");
    addProjectTask(m.projects, from, u"Web", u"Design");
    addProjectTask(m.projects, from, u"Web", u"Build");
    addProjectTask(m.projects, from, u"Docs", u"");
    addProjectTask(m.projects, to, u"Web", u"Build");
    addTask(m.tasks, from, u"Admin");
    addTask(m.tasks, from, u"Calls");
    CEOID e = entry(u"Old", u"Design", 1, true, u"Web");

    MigrationResult r = migrateProjects(platform->file(), m, from, to, {u"Web"});
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.moved, 1u);
    EXPECT_EQ(r.merged, 1u);
    EXPECT_EQ(listItemsOf(m, ListLevel::kProjects, {from, u""}), (Names{u"Docs"}));
    EXPECT_EQ(listItemsOf(m, ListLevel::kTasks, {to, u"Web"}), (Names{u"Design", u"Build"}));
    ASSERT_TRUE(migrateTasks(platform->file(), m, from, to, {u"Calls"}).ok);
    EXPECT_EQ(listItemsOf(m, ListLevel::kTasks, {from, u""}), (Names{u"Admin"}));
    EXPECT_EQ(listItemsOf(m, ListLevel::kTasks, {to, u""}), (Names{u"Calls"}));
    EXPECT_EQ(stored(e).client, u"Old");
    EXPECT_EQ(migrateProjects(platform->file(), m, to, to, {u"Web"}).moved, 0u);
}

TEST_F(ClientListsTest, DropListEditing) {
    ListTable list(*platform, ListTable::Order::kByKind);
    ASSERT_TRUE(list.open());
    EXPECT_FALSE(canDeleteAll(list, kListPhase));
    std::size_t added = 0;
    ASSERT_TRUE(importDropItems(platform->file(), list, kListPhase, {u"A", u"B", u"A"}, &added));
    EXPECT_EQ(added, 2u);
    EXPECT_TRUE(canDeleteAll(list, kListPhase));
    EXPECT_EQ(renameDropItem(list, kListPhase, u"A", u"B"), RenameOutcome::kTaken);
    EXPECT_EQ(renameDropItem(list, kListPhase, u"A", u""), RenameOutcome::kBlank);
    EXPECT_EQ(renameDropItem(list, kListPhase, u"Z", u"Y"), RenameOutcome::kMissing);
    EXPECT_EQ(renameDropItem(list, kListPhase, u"A", u"A"), RenameOutcome::kUnchanged);
    ASSERT_EQ(renameDropItem(list, kListPhase, u"A", std::u16string(70, u'x')),
              RenameOutcome::kRenamed);
    EXPECT_EQ(list.items(kListPhase), (Names{std::u16string(63, u'x'), u"B"}));
}

}  // namespace
}  // namespace qb
