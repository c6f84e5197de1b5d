// The client setup window driven as a user would: commands from its
// actions, names typed into the input dialog, questions answered, files
// chosen through the file chooser's hook.

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "entry/client_migration.h"
#include "entry/client_tree.h"
#include "entry/list_file.h"
#include "gui/app_state.h"
#include "gui/clients/client_setup_window.h"
#include "gui/clients/file_chooser.h"
#include "gui/clients/import_dialogs.h"
#include "gui/clients/input_dialog.h"
#include "gui/clients/migration_dialog.h"
#include "gui/gui_test_registry.h"
#include "gui/gui_test_support.h"
#include "store/master_data.h"
#include "store/tables.h"

namespace qb {

using namespace guitest;

namespace {

// Acme with the project Web (tasks Design and Build), the task Support and
// the contact Alice; bolt (lower case, to sort between) and Zeta, empty.
std::unique_ptr<AppState> makeState() {
    auto state = std::make_unique<AppState>(Platform::inMemory());
    if (!state->open()) return nullptr;
    MasterTables& m = state->masters();
    ClientId acme = 0;
    addClient(m.clients, u"Zeta");
    addClient(m.clients, u"Acme", &acme);
    addClient(m.clients, u"bolt");
    addProjectTask(m.projects, acme, u"Web", u"Design");
    addProjectTask(m.projects, acme, u"Web", u"Build");
    addTask(m.tasks, acme, u"Support");
    addContact(m.contacts, acme, u"Alice");
    return state;
}

ClientId idOf(AppState& state, const char16_t* client) {
    return clientIdOf(state.masters().clients, client);
}

QStringList texts(const QTreeWidgetItem* item) {
    QStringList t;
    for (int i = 0; i < item->childCount(); ++i) t << item->child(i)->text(0);
    return t;
}

QStringList rootTexts(const QTreeWidget* tree) {
    QStringList t;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) t << tree->topLevelItem(i)->text(0);
    return t;
}

QTreeWidgetItem* clientItem(ClientSetupWindow& w, const QString& name) {
    const auto found = w.tree()->findItems(name, Qt::MatchExactly);
    return found.isEmpty() ? nullptr : found.first();
}

// Groups are 0 "Projects", 1 "Tasks", 2 "Contacts".
QTreeWidgetItem* groupItem(ClientSetupWindow& w, const QString& client, int group) {
    QTreeWidgetItem* c = clientItem(w, client);
    return c ? c->child(group) : nullptr;
}

void select(ClientSetupWindow& w, QTreeWidgetItem* item) {
    QVERIFY(item);
    w.tree()->setCurrentItem(item);
}

void run(ClientSetupWindow& w, const char* action) {
    auto* a = w.findChild<QAction*>(QString::fromLatin1(action));
    QVERIFY2(a && a->isEnabled(), action);
    a->trigger();
}

// Answers the next input dialog with `text`, checking its prompt.
void typeName(const QString& prompt, const QString& text) {
    whenModal<InputDialog>([prompt, text](InputDialog* d) {
        QVERIFY(d->findChild<QLabel*>() && d->findChild<QLabel*>()->text() == prompt);
        QCOMPARE(d->field()->maxLength(), 127);
        QTest::keyClicks(d->field(), text);
        pressOk(*d);
    });
}

// The file chooser answers with `path` and filter `filter`, recording what
// it was asked.
class ChosenFile {
  public:
    explicit ChosenFile(const QString& path, int filter = 0) {
        setFileChooser([this, path, filter](const FileRequest& r, FileChoice* c) {
            asked.push_back(r);
            c->path = path;
            c->filter = filter;
            return true;
        });
    }
    ~ChosenFile() { setFileChooser(nullptr); }
    ChosenFile(const ChosenFile&) = delete;
    ChosenFile& operator=(const ChosenFile&) = delete;

    std::vector<FileRequest> asked;
};

bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

void chooseImport(int choice) {
    whenModal<ImportTypeDialog>([choice](ImportTypeDialog* d) {
        d->setChoice(choice);
        QCOMPARE(d->choice(), choice);
        pressOk(*d);
    });
}

}  // namespace

class ClientSetupTests : public QObject {
    Q_OBJECT

  private slots:
    void treeShowsClientsWithTheirGroups();
    void addCommands();
    void renameInPlace();
    void deleteAsksForClientsAndProjectsOnly();
    void importListFile();
    void importListFailsWithTheStopIcon();
    void importContactsFromAVCard();
    void exportListOfTheSelectedLevel();
    void migrateProjects();
};

void ClientSetupTests::treeShowsClientsWithTheirGroups() {
    auto state = makeState();
    QVERIFY(state);
    ClientSetupWindow w(*state);
    // Sorted ignoring case; every client has its three groups, even empty.
    QCOMPARE(rootTexts(w.tree()), (QStringList{"Acme", "bolt", "Zeta"}));
    QCOMPARE(texts(clientItem(w, "Zeta")), (QStringList{"Projects", "Tasks", "Contacts"}));
    QTreeWidgetItem* projects = groupItem(w, "Acme", 0);
    QCOMPARE(texts(projects->child(0)), (QStringList{"Design", "Build"}));
    // Groups keep their titles; every other node can be renamed.
    QVERIFY(!(projects->flags() & Qt::ItemIsEditable));
    QVERIFY(projects->child(0)->flags() & Qt::ItemIsEditable);
    // Only a node other than a group can be deleted.
    select(w, projects);
    QVERIFY(!w.findChild<QAction*>("delete")->isEnabled());
}

void ClientSetupTests::addCommands() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages;
    ClientSetupWindow w(*state);
    MasterTables& m = state->masters();

    typeName("Enter Client Name:", "Kilo");
    run(w, "addClient");
    const ClientId kilo = idOf(*state, u"Kilo");
    QVERIFY(kilo != kNoClient);
    QCOMPARE(rootTexts(w.tree()), (QStringList{"Acme", "bolt", "Kilo", "Zeta"}));
    QCOMPARE(w.tree()->currentItem()->text(0), QStringLiteral("Kilo"));

    // An empty name adds nothing, and says nothing.
    typeName("Enter Client Name:", "");
    run(w, "addClient");
    QCOMPARE(w.tree()->topLevelItemCount(), 4);

    typeName("Enter Project Name:", "Site");
    run(w, "addProject");
    QCOMPARE(projectsOf(m.projects, kilo).size(), std::size_t{1});
    QVERIFY(projectsOf(m.projects, kilo)[0].project == u"Site" &&
            projectsOf(m.projects, kilo)[0].task.empty());
    QCOMPARE(w.tree()->currentItem()->text(0), QStringLiteral("Site"));

    // With the project selected a task becomes a pair of it ...
    typeName("Enter Task Name:", "Layout");
    run(w, "addTask");
    QCOMPARE(w.tree()->currentItem()->text(0), QStringLiteral("Layout"));
    QCOMPARE(w.tree()->currentItem()->parent()->text(0), QStringLiteral("Site"));
    QVERIFY(projectsOf(m.projects, kilo).back().task == u"Layout");
    QVERIFY(namesOf(m.tasks, kilo).empty());

    // ... with the client selected, a task of the client.
    select(w, clientItem(w, "Kilo"));
    typeName("Enter Task Name:", "Calls");
    run(w, "addTask");
    QCOMPARE(namesOf(m.tasks, kilo).size(), std::size_t{1});
    QCOMPARE(w.tree()->currentItem()->parent()->text(0), QStringLiteral("Tasks"));

    typeName("Enter Contact Name:", "Kim");
    run(w, "addContact");
    QVERIFY(namesOf(m.contacts, kilo).at(0).name == u"Kim");
    QCOMPARE(texts(groupItem(w, "Kilo", 2)), QStringList{"Kim"});
    QVERIFY(messages.shown.empty());
}

void ClientSetupTests::renameInPlace() {
    auto state = makeState();
    QVERIFY(state);
    ClientSetupWindow w(*state);
    const ClientId acme = idOf(*state, u"Acme");
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QTreeWidgetItem* web = groupItem(w, "Acme", 0)->child(0);
    select(w, web);
    w.tree()->setFocus();
    // Enter opens the box over the node (and does not close the window).
    QTest::keyClick(w.tree(), Qt::Key_Return);
    auto* box = w.tree()->findChild<QLineEdit*>("rename");
    QVERIFY(box);
    QCOMPARE(box->maxLength(), 127);
    box->selectAll();
    QTest::keyClicks(box, "Portal");
    QTest::keyClick(box, Qt::Key_Return);
    // Both pairs of the project follow.
    QTRY_COMPARE(texts(groupItem(w, "Acme", 0)), QStringList{"Portal"});
    const auto pairs = projectsOf(state->masters().projects, acme);
    QCOMPARE(pairs.size(), std::size_t{2});
    QVERIFY(pairs[0].project == u"Portal" && pairs[1].project == u"Portal");
    QCOMPARE(w.tree()->currentItem()->text(0), QStringLiteral("Portal"));
    QVERIFY(w.isVisible());

    // A client renamed onto another client's name is refused and says so.
    Messages messages;
    QTreeWidgetItem* acmeItem = groupItem(w, "Acme", 0)->parent();
    w.tree()->editItem(acmeItem);
    box = w.tree()->findChild<QLineEdit*>("rename");
    QVERIFY(box);
    box->selectAll();
    QTest::keyClicks(box, "Zeta");
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(messages.texts(), QStringList{"A client named \"Zeta\" already exists."});
    QCOMPARE(messages.shown[0].icon, MessageIcon::kExclamation);
    QCOMPARE(acmeItem->text(0), QStringLiteral("Acme"));
    QCOMPARE(idOf(*state, u"Acme"), acme);
    QCOMPARE(allClients(state->masters().clients).size(), std::size_t{3});

    // A contact's box takes 63 characters.
    w.tree()->editItem(groupItem(w, "Acme", 2)->child(0));
    box = w.tree()->findChild<QLineEdit*>("rename");
    QVERIFY(box);
    QCOMPARE(box->maxLength(), 63);
}

void ClientSetupTests::deleteAsksForClientsAndProjectsOnly() {
    auto state = makeState();
    QVERIFY(state);
    ClientSetupWindow w(*state);
    MasterTables& m = state->masters();
    const ClientId acme = idOf(*state, u"Acme");
    addRate(m.rates, 0, 50.0, acme, u"Hourly", false);

    // Tasks and contacts go without a question.
    Messages messages(QMessageBox::No);
    select(w, groupItem(w, "Acme", 0)->child(0)->child(0));
    run(w, "delete");
    select(w, groupItem(w, "Acme", 2)->child(0));
    run(w, "delete");
    QVERIFY(messages.shown.empty());
    QCOMPARE(projectsOf(m.projects, acme).size(), std::size_t{1});
    QVERIFY(namesOf(m.contacts, acme).empty());
    QVERIFY(groupItem(w, "Acme", 2)->childCount() == 0);

    // A client asks first; No keeps everything.
    select(w, clientItem(w, "Acme"));
    run(w, "delete");
    QCOMPARE(messages.shown.size(), std::size_t{1});
    const MessageRequest& asked = messages.shown[0];
    QCOMPARE(asked.text, toQt(std::u16string(kDeleteClientQuestion)));
    QCOMPARE(asked.icon, MessageIcon::kExclamation);
    QCOMPARE(asked.defaultButton, QMessageBox::No);
    QVERIFY(clientItem(w, "Acme"));
    QVERIFY(idOf(*state, u"Acme") == acme);

    messages.answer(QMessageBox::Yes);
    run(w, "delete");
    QVERIFY(!clientItem(w, "Acme"));
    QVERIFY(idOf(*state, u"Acme") == kNoClient);
    QVERIFY(projectsOf(m.projects, acme).empty() && namesOf(m.tasks, acme).empty() &&
            ratesOf(m.rates, acme).empty());
    QCOMPARE(w.tree()->currentItem()->text(0), QStringLiteral("bolt"));

    // A project asks its own question.
    ClientId bolt = idOf(*state, u"bolt");
    addProjectTask(m.projects, bolt, u"App", u"");
    ClientSetupWindow again(*state);
    select(again, groupItem(again, "bolt", 0)->child(0));
    run(again, "delete");
    QCOMPARE(messages.last(), toQt(std::u16string(kDeleteProjectQuestion)));
    QVERIFY(projectsOf(m.projects, bolt).empty());
}

void ClientSetupTests::importListFile() {
    auto state = makeState();
    QVERIFY(state);
    QTemporaryDir dir;
    const QString path = dir.filePath("projects.txt");
    const QByteArray longLine(200, 'x');
    QVERIFY(writeFile(path, "Alpha\r\n\r\nBeta\n" + longLine + "\r\n"));
    Messages messages;
    ChosenFile chosen(path);
    ClientSetupWindow w(*state);
    QTreeWidgetItem* tasks = groupItem(w, "Acme", 1);
    select(w, tasks);

    chooseImport(1);
    run(w, "import");
    QCOMPARE(chosen.asked.size(), std::size_t{1});
    QCOMPARE(chosen.asked[0].title, QStringLiteral("Import List..."));
    QCOMPARE(chosen.asked[0].filters, QStringList{"List File (*.txt)"});
    const QStringList expected{"Web", "Alpha", "Beta", QString(127, 'x')};
    QCOMPARE(texts(groupItem(w, "Acme", 0)), expected);
    // The selection stays where it was.
    QCOMPARE(w.tree()->currentItem(), groupItem(w, "Acme", 1));
    QVERIFY(messages.shown.empty() && w.tree()->updatesEnabled());
}

void ClientSetupTests::importListFailsWithTheStopIcon() {
    auto state = makeState();
    QVERIFY(state);
    QTemporaryDir dir;
    const QString path = dir.filePath("readonly.txt");
    QVERIFY(writeFile(path, "Gamma\r\n"));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    Messages messages;
    ChosenFile chosen(path);
    ClientSetupWindow w(*state);
    chooseImport(0);
    run(w, "import");
    QCOMPARE(messages.last(), toQt(std::u16string(kImportFailedMessage)));
    QCOMPARE(messages.shown.at(0).icon, MessageIcon::kStop);
    QVERIFY(idOf(*state, u"Gamma") == kNoClient);
    QCOMPARE(w.tree()->topLevelItemCount(), 3);
}

void ClientSetupTests::importContactsFromAVCard() {
    auto state = makeState();
    QVERIFY(state);
    QTemporaryDir dir;
    const QString path = dir.filePath("people.vcf");
    QVERIFY(writeFile(path,
                      "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Carol Diaz\r\nORG:Diaz Ltd;Sales\r\n"
                      "END:VCARD\r\nBEGIN:VCARD\r\nVERSION:3.0\r\nN:Evans;Dan;;;\r\n"
                      "END:VCARD\r\nBEGIN:VCARD\r\nVERSION:3.0\r\nFN:Erin Fox\r\nEND:VCARD\r\n"));
    ChosenFile chosen(path);
    ClientSetupWindow w(*state);
    select(w, clientItem(w, "bolt"));
    QStringList listed;
    chooseImport(ImportTypeDialog::kContactsFile);
    whenModal<ContactsImportDialog>([&listed](ContactsImportDialog* d) {
        QTreeWidget* list = d->list();
        QCOMPARE(list->headerItem()->text(0), QStringLiteral("File As"));
        QCOMPARE(list->headerItem()->text(1), QStringLiteral("Company"));
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            listed << list->topLevelItem(i)->text(0) + "|" + list->topLevelItem(i)->text(1);
        }
        list->topLevelItem(2)->setCheckState(0, Qt::Checked);
        list->topLevelItem(1)->setCheckState(0, Qt::Checked);
        pressOk(*d);
    });
    run(w, "import");
    QCOMPARE(listed, (QStringList{"Carol Diaz|Diaz Ltd", "Evans, Dan|", "Erin Fox|"}));
    // The checked ones, in list order.
    QCOMPARE(texts(groupItem(w, "bolt", 2)), (QStringList{"Evans, Dan", "Erin Fox"}));
    QCOMPARE(namesOf(state->masters().contacts, idOf(*state, u"bolt")).size(), std::size_t{2});
}

void ClientSetupTests::exportListOfTheSelectedLevel() {
    auto state = makeState();
    QVERIFY(state);
    QTemporaryDir dir;
    const QString path = dir.filePath("tasks.txt");
    ClientSetupWindow w(*state);
    {
        // A task under a project: that project's tasks, as Unicode text.
        ChosenFile chosen(path, 1);
        select(w, groupItem(w, "Acme", 0)->child(0)->child(1));
        run(w, "export");
        QVERIFY(chosen.asked.at(0).save);
        QCOMPARE(chosen.asked[0].filters,
                 (QStringList{"Text Files (*.txt)", "Unicode Text (*.txt)"}));
    }
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll(), QByteArray("\xFF\xFE"
                                     "D\0e\0s\0i\0g\0n\0\r\0\n\0B\0u\0i\0l\0d\0",
                                     2 + 2 * 13));
}

void ClientSetupTests::migrateProjects() {
    auto state = makeState();
    QVERIFY(state);
    MasterTables& m = state->masters();
    const ClientId acme = idOf(*state, u"Acme");
    const ClientId zeta = idOf(*state, u"Zeta");
    addProjectTask(m.projects, acme, u"Ops", u"");
    ClientSetupWindow w(*state);
    select(w, groupItem(w, "Acme", 0)->child(0));
    QStringList offered;
    whenModal<MigrationDialog>([&offered](MigrationDialog* d) {
        QVERIFY(d->findChild<QLabel*>()->text() == QStringLiteral("Check Projects to migrate:"));
        auto* names = child<QListWidget>(*d, "names");
        for (int i = 0; i < names->count(); ++i) {
            offered << names->item(i)->text() +
                           (names->item(i)->checkState() == Qt::Checked ? "*" : "");
        }
        auto* target = child<QComboBox>(*d, "target");
        QCOMPARE(target->count(), 2);  // every other client
        choose(target, QStringLiteral("Zeta"));
        pressOk(*d);
    });
    run(w, "migrateProjects");
    // The selected project starts checked, once per name.
    QCOMPARE(offered, (QStringList{"Web*", "Ops"}));
    QCOMPARE(projectsOf(m.projects, zeta).size(), std::size_t{2});
    QCOMPARE(projectsOf(m.projects, acme).size(), std::size_t{1});
    QCOMPARE(texts(groupItem(w, "Zeta", 0)), QStringList{"Web"});
    QCOMPARE(texts(groupItem(w, "Acme", 0)), QStringList{"Ops"});

    // Tasks of the "Tasks" group move the same way.
    select(w, groupItem(w, "Acme", 1)->child(0));
    whenModal<MigrationDialog>([](MigrationDialog* d) {
        QCOMPARE(d->findChild<QLabel*>()->text(), QStringLiteral("Check Tasks to migrate:"));
        choose(child<QComboBox>(*d, "target"), QStringLiteral("bolt"));
        pressOk(*d);
    });
    run(w, "migrateTasks");
    QVERIFY(namesOf(m.tasks, acme).empty());
    QCOMPARE(texts(groupItem(w, "bolt", 1)), QStringList{"Support"});
}

QB_GUI_TEST(ClientSetupTests);

}  // namespace qb

#include "client_setup_tests.moc"
