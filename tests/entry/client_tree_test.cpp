#include "entry/client_tree.h"

#include "bulk_support.h"

namespace qb {
namespace {

using ClientTreeTest = StoreTest;

std::vector<std::u16string> texts(const std::vector<ClientNode>& nodes) {
    std::vector<std::u16string> t;
    for (const ClientNode& n : nodes) t.push_back(n.text);
    return t;
}

TEST_F(ClientTreeTest, ClientsSortedWithTheirThreeGroups) {
    ClientId zeta = client(u"zeta");
    client(u"Acme");
    addProjectTask(m.projects, zeta, u"Web", u"Design");
    addProjectTask(m.projects, zeta, u"Web", u"Build");
    addProjectTask(m.projects, zeta, u"Docs", u"");
    addTask(m.tasks, zeta, u"Admin");
    addContact(m.contacts, zeta, u"Bob");

    std::vector<ClientNode> tree = clientTree(m);
    ASSERT_EQ(texts(tree), (std::vector<std::u16string>{u"Acme", u"zeta"}));
    for (const ClientNode& c : tree) {
        ASSERT_EQ(texts(c.children),
                  (std::vector<std::u16string>{u"Projects", u"Tasks", u"Contacts"}));
        EXPECT_EQ(c.children[0].number, kProjectsGroup);
        EXPECT_EQ(c.children[2].number, kContactsGroup);
    }
    const ClientNode& projects = tree[1].children[0];
    ASSERT_EQ(texts(projects.children), (std::vector<std::u16string>{u"Web", u"Docs"}));
    EXPECT_EQ(texts(projects.children[0].children),
              (std::vector<std::u16string>{u"Design", u"Build"}));
    EXPECT_TRUE(projects.children[1].children.empty());
    EXPECT_EQ(findNode(tree, u"zeta", NodeKind::kTask, u"Admin")->kind, NodeKind::kTask);
    EXPECT_EQ(findNode(tree, u"zeta", NodeKind::kContact, u"Bob")->text, u"Bob");
    EXPECT_EQ(findNode(tree, u"zeta", NodeKind::kTask, u"Admin", u"Web"), nullptr);
}

TEST_F(ClientTreeTest, RenamingAProjectRenamesEveryPair) {
    ClientId acme = client(u"Acme");
    ClientId other = client(u"Other");
    for (auto task : {u"Design", u"Build", u""}) addProjectTask(m.projects, acme, u"Web", task);
    addProjectTask(m.projects, acme, u"web", u"Lower");
    addProjectTask(m.projects, other, u"Web", u"Theirs");
    CEOID e = entry(u"Acme", u"Design", 1, true, u"Web");

    const std::vector<ClientNode> tree = clientTree(m);
    const ClientNode* web = findNode(tree, u"Acme", NodeKind::kProject, u"Web");
    ASSERT_TRUE(web);
    ASSERT_TRUE(renameNode(m, *web, u"Site"));
    int site = 0;
    for (const ProjectRecord& p : projectsOf(m.projects, acme)) site += p.project == u"Site";
    EXPECT_EQ(site, 3);
    EXPECT_EQ(projectsOf(m.projects, acme).back().project, u"web") << "case counts";
    EXPECT_EQ(projectsOf(m.projects, other)[0].project, u"Web");
    EXPECT_EQ(stored(e).project, u"Web") << "entries keep their texts";
}

TEST_F(ClientTreeTest, RenameLimitsAndRefusals) {
    ClientId acme = client(u"Acme");
    addContact(m.contacts, acme, u"Bob");
    addTask(m.tasks, acme, u"Admin");
    std::vector<ClientNode> tree = clientTree(m);
    ASSERT_TRUE(renameNode(m, *findNode(tree, u"Acme", NodeKind::kContact, u"Bob"),
                           std::u16string(80, u'b')));
    EXPECT_EQ(namesOf(m.contacts, acme)[0].name, std::u16string(63, u'b'));
    ASSERT_TRUE(renameNode(m, *findNode(tree, u"Acme", NodeKind::kTask, u"Admin"),
                           std::u16string(200, u't')));
    EXPECT_EQ(namesOf(m.tasks, acme)[0].name, std::u16string(127, u't'));
    EXPECT_FALSE(renameNode(m, tree[0], u""));
    EXPECT_FALSE(renameNode(m, tree[0].children[0], u"Stuff")) << "groups keep their titles";
    ASSERT_TRUE(renameNode(m, tree[0], u"Acme Ltd"));
    EXPECT_EQ(allClients(m.clients)[0].name, u"Acme Ltd");
}

TEST_F(ClientTreeTest, DeleteCascadeKeepsEntries) {
    ClientId acme = client(u"Acme");
    addProjectTask(m.projects, acme, u"Web", u"Design");
    addProjectTask(m.projects, acme, u"Web", u"Build");
    addProjectTask(m.projects, acme, u"Docs", u"Write");
    addTask(m.tasks, acme, u"Admin");
    addContact(m.contacts, acme, u"Bob");
    addRate(m.rates, 0, 50, acme, u"Std", false);
    CEOID e = entry(u"Acme", u"Admin", 2);

    EXPECT_EQ(deleteQuestion(NodeKind::kClient), kDeleteClientQuestion);
    EXPECT_EQ(deleteQuestion(NodeKind::kProject), kDeleteProjectQuestion);
    EXPECT_TRUE(deleteQuestion(NodeKind::kTask).empty());
    EXPECT_TRUE(deleteQuestion(NodeKind::kContact).empty());

    std::vector<ClientNode> tree = clientTree(m);
    EXPECT_FALSE(deleteNode(m, tree[0].children[1])) << "a group is not deletable";
    ASSERT_TRUE(deleteNode(m, *findNode(tree, u"Acme", NodeKind::kTask, u"Build", u"Web")));
    ASSERT_EQ(projectsOf(m.projects, acme).size(), 2u);
    ASSERT_TRUE(deleteNode(m, *findNode(tree, u"Acme", NodeKind::kProject, u"Web")));
    ASSERT_EQ(projectsOf(m.projects, acme).size(), 1u);
    ASSERT_TRUE(deleteNode(m, *findNode(tree, u"Acme", NodeKind::kClient)));
    EXPECT_TRUE(allClients(m.clients).empty());
    EXPECT_TRUE(projectsOf(m.projects, acme).empty());
    EXPECT_TRUE(namesOf(m.tasks, acme).empty());
    EXPECT_TRUE(namesOf(m.contacts, acme).empty());
    EXPECT_TRUE(ratesOf(m.rates, acme).empty());
    EXPECT_EQ(stored(e).client, u"Acme");
}

}  // namespace
}  // namespace qb
