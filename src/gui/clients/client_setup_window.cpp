#include "gui/clients/client_setup_window.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSet>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include "entry/client_migration.h"
#include "entry/entry_form.h"
#include "entry/file_bytes.h"
#include "entry/list_file.h"
#include "entry/vcard.h"
#include "gui/app_state.h"
#include "gui/clients/file_chooser.h"
#include "gui/clients/import_dialogs.h"
#include "gui/clients/input_dialog.h"
#include "gui/clients/migration_dialog.h"
#include "gui/commands.h"
#include "gui/help.h"
#include "gui/icons.h"
#include "gui/main_window.h"
#include "gui/message_box.h"
#include "platform/data_file.h"
#include "platform/text.h"
#include "store/tables.h"
#include "views/entry_tree.h"

namespace qb {
namespace {

enum Role : int {
    kKindRole = Qt::UserRole,
    kNumberRole,
    kClientRole,
    kProjectRole,
};

QIcon iconOf(NodeKind kind) {
    switch (kind) {
        case NodeKind::kClient:
            return treeIcon(kTreeClient);
        case NodeKind::kProject:
            return treeIcon(kTreeProject);
        case NodeKind::kTask:
            return treeIcon(kTreeTask);
        case NodeKind::kContact:
            return contactIcon();
        case NodeKind::kGroup:
            break;
    }
    return groupIcon();
}

QTreeWidgetItem* makeItem(const ClientNode& node) {
    auto* item = new QTreeWidgetItem(QStringList{toQt(node.text)});
    item->setIcon(0, iconOf(node.kind));
    item->setData(0, kKindRole, static_cast<int>(node.kind));
    item->setData(0, kNumberRole, static_cast<qlonglong>(node.number));
    item->setData(0, kClientRole, node.clientId);
    item->setData(0, kProjectRole, toQt(node.project));
    if (node.kind != NodeKind::kGroup) item->setFlags(item->flags() | Qt::ItemIsEditable);
    for (const ClientNode& child : node.children) item->addChild(makeItem(child));
    return item;
}

// What the expansion of a node is remembered by while the tree is redrawn.
QString expansionKey(const ClientNode& node) {
    return QStringLiteral("%1/%2/%3/%4")
        .arg(static_cast<int>(node.kind))
        .arg(node.clientId)
        .arg(node.number)
        .arg(toQt(node.text));
}

bool sameRecord(const ClientNode& a, const ClientNode& b) {
    return a.kind == b.kind && a.clientId == b.clientId && a.number == b.number &&
           a.project == b.project;
}

bool sameName(const ClientNode& a, const ClientNode& b) {
    return a.kind == b.kind && a.clientId == b.clientId && a.text == b.text &&
           a.project == b.project;
}

// The import, export and add commands work on the selection's client and,
// for tasks, on the selected project (or the project of the selected task).
ListTarget targetOf(const ClientNode& node) {
    ListTarget target;
    target.client = node.clientId;
    if (node.kind == NodeKind::kProject) target.project = node.text;
    if (node.kind == NodeKind::kTask) target.project = node.project;
    return target;
}

// The level of the tree the selection stands on, as Export List writes it.
ListLevel levelOf(const ClientNode& node) {
    switch (node.kind) {
        case NodeKind::kClient:
            return ListLevel::kClients;
        case NodeKind::kProject:
            return ListLevel::kProjects;
        case NodeKind::kTask:
            return ListLevel::kTasks;
        case NodeKind::kContact:
            return ListLevel::kContacts;
        case NodeKind::kGroup:
            break;
    }
    if (node.number == kProjectsGroup) return ListLevel::kProjects;
    return node.number == kTasksGroup ? ListLevel::kTasks : ListLevel::kContacts;
}

// Limits the rename box by the node's kind and hands the typed name to the
// window instead of writing it into the tree.
class RenameDelegate : public QStyledItemDelegate {
  public:
    explicit RenameDelegate(ClientSetupWindow* window)
        : QStyledItemDelegate(window), window_(window) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto* line = qobject_cast<QLineEdit*>(editor)) {
            line->setObjectName(QStringLiteral("rename"));
            line->setMaxLength(
                static_cast<int>(renameLimit(ClientSetupWindow::nodeOf(index).kind)));
        }
        return editor;
    }

    void setModelData(QWidget* editor, QAbstractItemModel*,
                      const QModelIndex& index) const override {
        if (auto* line = qobject_cast<QLineEdit*>(editor)) window_->renameAt(index, line->text());
    }

  private:
    ClientSetupWindow* window_;
};

}  // namespace

// A rename box still open when the window goes would write into a window
// that is already half gone: its delegate goes first.
ClientSetupWindow::~ClientSetupWindow() {
    QAbstractItemDelegate* delegate = tree_->itemDelegate();
    tree_->setItemDelegate(nullptr);
    delete delegate;
}

ClientSetupWindow::ClientSetupWindow(AppState& state, QWidget* parent)
    : QDialog(parent), state_(state), tree_(new QTreeWidget(this)) {
    setWindowTitle(QStringLiteral("Client Setup"));
    tree_->setObjectName(QStringLiteral("clients"));
    tree_->setHeaderHidden(true);
    tree_->setUniformRowHeights(true);
    tree_->setItemDelegate(new RenameDelegate(this));
    tree_->setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed);
    tree_->installEventFilter(this);
    tree_->setMinimumSize(fontMetrics().averageCharWidth() * 44, fontMetrics().height() * 20);

    auto* addMenu = new QMenu(QStringLiteral("Add"), this);
    addMenu->addAction(
        addCommand("addClient", QStringLiteral("Client..."), &ClientSetupWindow::addClient));
    addProject_ =
        addCommand("addProject", QStringLiteral("Project..."), &ClientSetupWindow::addProject);
    addTask_ = addCommand("addTask", QStringLiteral("Task..."), &ClientSetupWindow::addTask);
    addContact_ =
        addCommand("addContact", QStringLiteral("Contact..."), &ClientSetupWindow::addContact);
    addMenu->addActions({addProject_, addTask_, addContact_});
    delete_ = addCommand("delete", QStringLiteral("Delete"), &ClientSetupWindow::deleteSelected);
    QAction* import =
        addCommand("import", QStringLiteral("Import..."), &ClientSetupWindow::importList);
    export_ =
        addCommand("export", QStringLiteral("Export List..."), &ClientSetupWindow::exportList);
    auto* migrateMenu = new QMenu(QStringLiteral("Migrate"), this);
    migrateProjects_ = addCommand("migrateProjects", QStringLiteral("Projects..."),
                                  &ClientSetupWindow::migrateProjects);
    migrateTasks_ =
        addCommand("migrateTasks", QStringLiteral("Tasks..."), &ClientSetupWindow::migrateTasks);
    migrateMenu->addActions({migrateProjects_, migrateTasks_});

    // The same commands on the tree's context menu and down the side.
    auto* separator = new QAction(this);
    separator->setSeparator(true);
    tree_->setContextMenuPolicy(Qt::ActionsContextMenu);
    tree_->addActions(
        {addMenu->menuAction(), delete_, separator, import, export_, migrateMenu->menuAction()});
    auto* commands = new QVBoxLayout;
    const auto addButton = [&](QAction* action, QMenu* menu) {
        auto* button = new QPushButton(action->text(), this);
        button->setAutoDefault(false);
        if (menu) {
            button->setMenu(menu);
        } else {
            connect(button, &QPushButton::clicked, action, &QAction::trigger);
            connect(action, &QAction::changed, button,
                    [button, action] { button->setEnabled(action->isEnabled()); });
        }
        commands->addWidget(button);
    };
    addButton(addMenu->menuAction(), addMenu);
    addButton(delete_, nullptr);
    commands->addSpacing(fontMetrics().height() / 2);
    addButton(import, nullptr);
    addButton(export_, nullptr);
    commands->addSpacing(fontMetrics().height() / 2);
    addButton(migrateMenu->menuAction(), migrateMenu);
    commands->addStretch();

    auto* body = new QHBoxLayout;
    body->addWidget(tree_, 1);
    body->addLayout(commands);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this,
            [this] { openHelp(this, "clientsetup"); });
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body, 1);
    layout->addWidget(buttons);

    connect(tree_, &QTreeWidget::currentItemChanged, this, [this] { updateCommands(); });
    refill({});
}

QAction* ClientSetupWindow::addCommand(const char* name, const QString& text,
                                       void (ClientSetupWindow::*run)()) {
    auto* action = new QAction(text, this);
    action->setObjectName(QString::fromLatin1(name));
    connect(action, &QAction::triggered, this, run);
    return action;
}

ClientNode ClientSetupWindow::nodeOf(const QModelIndex& index) {
    ClientNode node;
    node.kind = static_cast<NodeKind>(index.data(kKindRole).toInt());
    node.number = index.data(kNumberRole).toLongLong();
    node.clientId = index.data(kClientRole).toUInt();
    node.text = fromQt(index.data(Qt::DisplayRole).toString());
    node.project = fromQt(index.data(kProjectRole).toString());
    return node;
}

ClientNode ClientSetupWindow::nodeOf(const QTreeWidgetItem* item) {
    ClientNode node;
    node.kind = static_cast<NodeKind>(item->data(0, kKindRole).toInt());
    node.number = item->data(0, kNumberRole).toLongLong();
    node.clientId = item->data(0, kClientRole).toUInt();
    node.text = fromQt(item->text(0));
    node.project = fromQt(item->data(0, kProjectRole).toString());
    return node;
}

bool ClientSetupWindow::selectedNode(ClientNode* node) const {
    const QTreeWidgetItem* item = tree_->currentItem();
    if (!item) return false;
    *node = nodeOf(item);
    return true;
}

void ClientSetupWindow::updateCommands() {
    ClientNode node;
    const bool selected = selectedNode(&node);
    for (QAction* a : {addProject_, addTask_, addContact_, export_}) a->setEnabled(selected);
    delete_->setEnabled(selected && node.kind != NodeKind::kGroup);
    const bool another = tree_->topLevelItemCount() > 1;
    migrateProjects_->setEnabled(selected && another);
    migrateTasks_->setEnabled(selected && another);
}

void ClientSetupWindow::refill(const ClientNode& select) {
    QSet<QString> expanded;
    for (QTreeWidgetItemIterator it(tree_); *it; ++it) {
        if ((*it)->isExpanded()) expanded.insert(expansionKey(nodeOf(*it)));
    }
    tree_->clear();
    for (const ClientNode& client : clientTree(state_.masters())) {
        tree_->addTopLevelItem(makeItem(client));
    }
    QTreeWidgetItem* byRecord = nullptr;
    QTreeWidgetItem* byName = nullptr;
    QTreeWidgetItem* client = nullptr;
    for (QTreeWidgetItemIterator it(tree_); *it; ++it) {
        const ClientNode node = nodeOf(*it);
        if (expanded.contains(expansionKey(node))) (*it)->setExpanded(true);
        if (!byRecord && sameRecord(node, select)) byRecord = *it;
        if (!byName && sameName(node, select)) byName = *it;
        if (!client && node.kind == NodeKind::kClient && node.clientId == select.clientId) {
            client = *it;
        }
    }
    QTreeWidgetItem* current = byRecord ? byRecord : byName ? byName : client;
    if (!current) current = tree_->topLevelItem(0);
    if (current) {
        for (QTreeWidgetItem* p = current->parent(); p; p = p->parent()) p->setExpanded(true);
        tree_->setCurrentItem(current);
        tree_->scrollToItem(current);
    }
    updateCommands();
}

void ClientSetupWindow::addClient() {
    addNamed(ListLevel::kClients, QStringLiteral("Enter Client Name:"));
}

void ClientSetupWindow::addProject() {
    addNamed(ListLevel::kProjects, QStringLiteral("Enter Project Name:"));
}

void ClientSetupWindow::addTask() {
    addNamed(ListLevel::kTasks, QStringLiteral("Enter Task Name:"));
}

void ClientSetupWindow::addContact() {
    addNamed(ListLevel::kContacts, QStringLiteral("Enter Contact Name:"));
}

void ClientSetupWindow::addNamed(ListLevel level, const QString& prompt) {
    ClientNode selected;
    if (!selectedNode(&selected) && level != ListLevel::kClients) return;
    const auto name = InputDialog::ask(this, prompt, static_cast<int>(kNameLimit));
    if (!name || name->empty()) return;
    const ListTarget target = level == ListLevel::kClients ? ListTarget{} : targetOf(selected);
    if (!addItems(level, target, {*name}, selected)) return;
    // Select the new node, found by its name.
    ClientNode added;
    added.text = *name;
    added.clientId = target.client;
    switch (level) {
        case ListLevel::kClients:
            added.kind = NodeKind::kClient;
            added.clientId = clientIdOf(state_.masters().clients, *name);
            break;
        case ListLevel::kProjects:
            added.kind = NodeKind::kProject;
            break;
        case ListLevel::kTasks:
            added.kind = NodeKind::kTask;
            added.project = target.project;
            break;
        case ListLevel::kContacts:
            added.kind = NodeKind::kContact;
            break;
    }
    refill(added);
}

bool ClientSetupWindow::addItems(ListLevel level, const ListTarget& target,
                                 const std::vector<std::u16string>& items,
                                 const ClientNode& select) {
    // One redraw at the end, however long the list.
    tree_->setUpdatesEnabled(false);
    std::size_t added = 0;
    const bool ok =
        importListItems(state_.platform().file(), state_.masters(), level, target, items, &added);
    refill(select);
    tree_->setUpdatesEnabled(true);
    return ok;
}

void ClientSetupWindow::renameAt(const QModelIndex& index, const QString& name) {
    const ClientNode node = nodeOf(index);
    std::u16string newName;
    const RenameOutcome outcome = renameNode(state_.masters(), node, fromQt(name), &newName);
    // The editor is still closing over this item: redraw, or say why the
    // name was refused, once it is gone.
    if (outcome == RenameOutcome::kTaken) {
        const QString refusal = toQt(nameTakenMessage(nameKindOf(node.kind), newName));
        QTimer::singleShot(0, this, [this, refusal] { warn(this, refusal); });
        return;
    }
    if (outcome != RenameOutcome::kRenamed) return;
    QTimer::singleShot(0, this, [this, node] { refill(node); });
}

bool ClientSetupWindow::eventFilter(QObject* watched, QEvent* event) {
    // Keys typed into an open rename box are the box's own.
    if (watched == tree_ && event->type() == QEvent::KeyPress &&
        !tree_->indexWidget(tree_->currentIndex())) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        QTreeWidgetItem* item = tree_->currentItem();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && item) {
            // Enter renames, as a click on the selected node does; it must not
            // reach the dialog and close it.
            if (item->flags() & Qt::ItemIsEditable) tree_->editItem(item);
            return true;
        }
        if (key == Qt::Key_Delete && delete_->isEnabled()) {
            deleteSelected();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void ClientSetupWindow::deleteSelected() {
    QTreeWidgetItem* item = tree_->currentItem();
    if (!item) return;
    const ClientNode node = nodeOf(item);
    if (node.kind == NodeKind::kGroup) return;
    const std::u16string_view question = deleteQuestion(node.kind);
    if (!question.empty() && !confirm(this, toQt(std::u16string(question)))) return;
    // The selection moves to the next node at the same level, else the one
    // before, else the parent.
    QTreeWidgetItem* parent = item->parent();
    const int row = parent ? parent->indexOfChild(item) : tree_->indexOfTopLevelItem(item);
    const int count = parent ? parent->childCount() : tree_->topLevelItemCount();
    const int nextRow = row + 1 < count ? row + 1 : row - 1;
    QTreeWidgetItem* next = nextRow < 0 ? parent
                            : parent    ? parent->child(nextRow)
                                        : tree_->topLevelItem(nextRow);
    const ClientNode after = next ? nodeOf(next) : ClientNode{};
    deleteNode(state_.masters(), node);
    refill(after);
}

void ClientSetupWindow::importList() {
    ClientNode selected;
    const bool hasClient = selectedNode(&selected);
    ImportTypeDialog dialog(hasClient, this);
    if (dialog.exec() != QDialog::Accepted) return;
    if (dialog.choice() == ImportTypeDialog::kContactsFile) {
        importContactsFile(selected);
    } else {
        importListFile(static_cast<ListLevel>(dialog.choice()), selected);
    }
}

void ClientSetupWindow::importListFile(ListLevel level, const ClientNode& selected) {
    FileRequest request;
    request.title = QStringLiteral("Import List...");
    request.filters = QStringList{QStringLiteral("List File (*.txt)")};
    request.defaultSuffix = QStringLiteral("txt");
    FileChoice file;
    if (!chooseFile(this, request, &file)) return;
    std::vector<std::u16string> items;
    const ListTarget target = level == ListLevel::kClients ? ListTarget{} : targetOf(selected);
    if (!readListFile(localPath(file.path), ansiCodePage(state_.registry()), &items) ||
        !addItems(level, target, items, selected)) {
        fail(this, toQt(std::u16string(kImportFailedMessage)));
    }
}

void ClientSetupWindow::importContactsFile(const ClientNode& selected) {
    FileRequest request;
    request.title = QStringLiteral("Import Contacts...");
    request.filters = QStringList{QStringLiteral("Contacts (*.vcf)")};
    request.defaultSuffix = QStringLiteral("vcf");
    FileChoice file;
    if (!chooseFile(this, request, &file)) return;
    std::vector<VCardContact> contacts;
    if (!readVCardFile(localPath(file.path), &contacts, ansiCodePage(state_.registry()))) {
        fail(this, toQt(std::u16string(kImportFailedMessage)));
        return;
    }
    ContactsImportDialog dialog(contacts, this);
    if (dialog.exec() != QDialog::Accepted) return;
    std::vector<std::u16string> names;
    for (const std::u16string& name : dialog.chosen()) names.push_back(limitText(name, kNameLimit));
    if (!addItems(ListLevel::kContacts, targetOf(selected), names, selected)) {
        fail(this, toQt(std::u16string(kImportFailedMessage)));
    }
}

void ClientSetupWindow::exportList() {
    ClientNode selected;
    if (!selectedNode(&selected)) return;
    FileRequest request;
    request.save = true;
    request.title = QStringLiteral("Export List...");
    request.filters =
        QStringList{QStringLiteral("Text Files (*.txt)"), QStringLiteral("Unicode Text (*.txt)")};
    request.defaultSuffix = QStringLiteral("txt");
    FileChoice file;
    if (!chooseFile(this, request, &file)) return;
    const std::vector<std::u16string> items =
        listItemsOf(state_.masters(), levelOf(selected), targetOf(selected));
    const std::string bytes =
        listFileBytes(items, file.filter == 1, ansiCodePage(state_.registry()));
    if (!writeWholeFile(localPath(file.path), bytes)) {
        fail(this, QStringLiteral("Cannot write %1.").arg(QDir::toNativeSeparators(file.path)));
    }
}

void ClientSetupWindow::migrateProjects() {
    migrate(true);
}

void ClientSetupWindow::migrateTasks() {
    migrate(false);
}

void ClientSetupWindow::migrate(bool projects) {
    ClientNode selected;
    if (!selectedNode(&selected)) return;
    MasterTables& masters = state_.masters();
    const ClientId from = selected.clientId;
    const std::vector<std::u16string> names =
        listItemsOf(masters, projects ? ListLevel::kProjects : ListLevel::kTasks, {from, {}});
    std::vector<ClientRecord> targets;
    for (const ClientRecord& c : allClients(masters.clients)) {
        if (c.clientId != from) targets.push_back(c);
    }
    // A selected project (or task of the "Tasks" group) starts checked.
    std::u16string checked;
    if (projects && selected.kind == NodeKind::kProject) checked = selected.text;
    if (!projects && selected.kind == NodeKind::kTask && selected.project.empty()) {
        checked = selected.text;
    }
    const std::u16string_view prompt = projects ? kMigrateProjectsPrompt : kMigrateTasksPrompt;
    MigrationDialog dialog(toQt(std::u16string(prompt)), names, targets, checked, this);
    if (dialog.exec() != QDialog::Accepted) return;
    DataFile& file = state_.platform().file();
    const MigrationResult result =
        projects ? qb::migrateProjects(file, masters, from, dialog.target(), dialog.chosen())
                 : qb::migrateTasks(file, masters, from, dialog.target(), dialog.chosen());
    refill(selected);
    if (!result.ok) {
        fail(this, projects ? QStringLiteral("The projects could not be moved.")
                            : QStringLiteral("The tasks could not be moved."));
    }
}

void installClientSetup(MainWindow& window, AppState& state) {
    window.setHandler(kCmdClientSetup, [&window, &state] {
        ClientSetupWindow setup(state, &window);
        setup.exec();
        // The master data behind the view's texts and choices may have
        // changed: draw it from the store again.
        window.refresh();
    });
}

}  // namespace qb
