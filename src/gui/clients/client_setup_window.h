#pragma once

// "Client Setup...": clients with their projects, tasks and contacts as one
// tree, kept by Add, in-place rename, Delete, Import, Export List and the
// migration of projects and tasks to another client. Every change goes to
// the master data at once; the tree is then drawn again from it.

#include <QDialog>

#include "entry/client_lists.h"
#include "entry/client_tree.h"

class QAction;
class QModelIndex;
class QTreeWidget;
class QTreeWidgetItem;

namespace qb {

class AppState;
class MainWindow;

class ClientSetupWindow : public QDialog {
    Q_OBJECT

  public:
    ClientSetupWindow(AppState& state, QWidget* parent = nullptr);
    ~ClientSetupWindow() override;

    QTreeWidget* tree() const { return tree_; }
    // The node an item shows (without its children).
    static ClientNode nodeOf(const QModelIndex& index);
    static ClientNode nodeOf(const QTreeWidgetItem* item);

    // Writes the name typed over the node and draws the tree again.
    void renameAt(const QModelIndex& index, const QString& name);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QAction* addCommand(const char* name, const QString& text, void (ClientSetupWindow::*run)());
    void addClient();
    void addProject();
    void addTask();
    void addContact();
    void addNamed(ListLevel level, const QString& prompt);
    void deleteSelected();
    void importList();
    void importListFile(ListLevel level, const ClientNode& selected);
    void importContactsFile(const ClientNode& selected);
    void exportList();
    void migrateProjects();
    void migrateTasks();
    void migrate(bool projects);

    bool selectedNode(ClientNode* node) const;
    // Adds the items as `level` in one batch and draws the tree again with
    // `select` selected.
    bool addItems(ListLevel level, const ListTarget& target,
                  const std::vector<std::u16string>& items, const ClientNode& select);
    // Draws the tree from the master data, keeping what was expanded, and
    // selects `select` (by record, else by name, else its client).
    void refill(const ClientNode& select);
    void updateCommands();

    AppState& state_;
    QTreeWidget* tree_;
    QAction* addProject_;
    QAction* addTask_;
    QAction* addContact_;
    QAction* delete_;
    QAction* export_;
    QAction* migrateProjects_;
    QAction* migrateTasks_;
};

// Makes "Client Setup..." of the main window live; the main view is drawn
// again after the window closes.
void installClientSetup(MainWindow& window, AppState& state);

}  // namespace qb
