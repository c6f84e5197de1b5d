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

// Every node's text, depth first: the whole tree in one list.
void allTexts(const std::vector<ClientNode>& nodes, std::vector<std::u16string>* out) {
    for (const ClientNode& n : nodes) {
        out->push_back(n.text);
        allTexts(n.children, out);
    }
}

std::vector<std::u16string> allTexts(const std::vector<ClientNode>& nodes) {
    std::vector<std::u16string> t;
    allTexts(nodes, &t);
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
    ASSERT_EQ(renameNode(m, *web, u"Site"), RenameOutcome::kRenamed);
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
    ASSERT_EQ(renameNode(m, *findNode(tree, u"Acme", NodeKind::kContact, u"Bob"),
                         std::u16string(80, u'b')),
              RenameOutcome::kRenamed);
    EXPECT_EQ(namesOf(m.contacts, acme)[0].name, std::u16string(63, u'b'));
    ASSERT_EQ(renameNode(m, *findNode(tree, u"Acme", NodeKind::kTask, u"Admin"),
                         std::u16string(200, u't')),
              RenameOutcome::kRenamed);
    EXPECT_EQ(namesOf(m.tasks, acme)[0].name, std::u16string(127, u't'));
    EXPECT_EQ(renameNode(m, tree[0], u""), RenameOutcome::kBlank);
    EXPECT_EQ(renameNode(m, tree[0].children[0], u"Stuff"), RenameOutcome::kMissing)
        << "groups keep their titles";
    ASSERT_EQ(renameNode(m, tree[0], u"Acme Ltd"), RenameOutcome::kRenamed);
    EXPECT_EQ(allClients(m.clients)[0].name, u"Acme Ltd");
}

// A rename onto a name its collection holds is refused and writes nothing;
// the same name in another collection (another client's, another project's,
// or a different case) is free.
TEST_F(ClientTreeTest, RenameOntoATakenNameIsRefused) {
    ClientId acme = client(u"Acme");
    ClientId bolt = client(u"Bolt");
    addProjectTask(m.projects, acme, u"Web", u"Design");
    addProjectTask(m.projects, acme, u"Web", u"Build");
    addProjectTask(m.projects, acme, u"Docs", u"Write");
    addProjectTask(m.projects, bolt, u"App", u"Build");
    addTask(m.tasks, acme, u"Admin");
    addTask(m.tasks, acme, u"Support");
    addContact(m.contacts, acme, u"Alice");
    addContact(m.contacts, acme, u"Bob");
    struct Case {
        NodeKind kind;
        std::u16string client, name, project, to;
        RenameOutcome outcome;
    };
    const Case cases[] = {
        {NodeKind::kClient, u"Acme", u"", u"", u"Bolt", RenameOutcome::kTaken},
        {NodeKind::kClient, u"Acme", u"", u"", u"Acme", RenameOutcome::kUnchanged},
        {NodeKind::kProject, u"Acme", u"Docs", u"", u"Web", RenameOutcome::kTaken},
        {NodeKind::kTask, u"Acme", u"Design", u"Web", u"Build", RenameOutcome::kTaken},
        {NodeKind::kTask, u"Acme", u"Admin", u"", u"Support", RenameOutcome::kTaken},
        {NodeKind::kContact, u"Acme", u"Bob", u"", u"Alice", RenameOutcome::kTaken},
        {NodeKind::kProject, u"Bolt", u"App", u"", u"Web", RenameOutcome::kRenamed},
        {NodeKind::kTask, u"Acme", u"Write", u"Docs", u"Build", RenameOutcome::kRenamed},
        {NodeKind::kTask, u"Acme", u"Admin", u"", u"Design", RenameOutcome::kRenamed},
        {NodeKind::kContact, u"Acme", u"Bob", u"", u"alice", RenameOutcome::kRenamed},
        {NodeKind::kClient, u"Bolt", u"", u"", u"acme", RenameOutcome::kRenamed},
    };
    for (const Case& c : cases) {
        const std::vector<ClientNode> tree = clientTree(m);
        const ClientNode* node = c.kind == NodeKind::kClient
                                     ? findNode(tree, c.client, c.kind)
                                     : findNode(tree, c.client, c.kind, c.name, c.project);
        ASSERT_TRUE(node);
        const std::vector<std::u16string> before = allTexts(tree);
        EXPECT_EQ(renameNode(m, *node, c.to), c.outcome) << std::string(c.to.begin(), c.to.end());
        if (c.outcome != RenameOutcome::kRenamed) {
            EXPECT_EQ(allTexts(clientTree(m)), before);
        }
    }
    EXPECT_EQ(nameTakenMessage(nameKindOf(NodeKind::kClient), u"Bolt"),
              u"A client named \"Bolt\" already exists.");
    EXPECT_EQ(nameTakenMessage(nameKindOf(NodeKind::kTask), u"Build"),
              u"The task \"Build\" already exists.");
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
