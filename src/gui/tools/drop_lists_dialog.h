#pragma once

// Edit Drop Lists: the phase, currency and custom lists of the entry
// editor, edited in place, emptied, or filled from a list file.

#include <QDialog>
#include <memory>

#include "store/tables.h"

class QComboBox;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace qb {

class AppState;

class DropListsDialog : public QDialog {
    Q_OBJECT
  public:
    explicit DropListsDialog(AppState& state, QWidget* parent = nullptr);
    ~DropListsDialog() override;

    void deleteSelected();
    void importList();
    void deleteAll();

  private:
    ListKind kind() const;
    void refill();
    void updateButtons();
    void itemEdited(QListWidgetItem* item);

    AppState& state_;
    std::unique_ptr<ListTable> lists_;
    QComboBox* type_;
    QListWidget* items_;
    QPushButton* delete_;
    QPushButton* import_;
    QPushButton* deleteAll_;
};

}  // namespace qb
