#pragma once

// "Rate Setup...": the default rates and each client's rates as a tree, with
// New, Modify and Delete. Every change goes to the rate table at once.

#include <QDialog>

#include "store/property_table.h"

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace qb {

class AppState;

class RateSetupWindow : public QDialog {
    Q_OBJECT

  public:
    RateSetupWindow(AppState& state, QWidget* parent = nullptr);

    QTreeWidget* tree() const { return tree_; }

  private:
    void newRate();
    void modifyRate();
    void deleteRate();
    void updateCommands();
    QTreeWidgetItem* selectedGroup() const;
    // Re-reads the group's rates in their order and selects the rate `select`.
    void refillGroup(QTreeWidgetItem* group, CEOID select);

    AppState& state_;
    QTreeWidget* tree_;
    QPushButton* new_;
    QPushButton* modify_;
    QPushButton* delete_;
};

}  // namespace qb
