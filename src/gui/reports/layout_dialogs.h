#pragma once

// The report designer's small dialogs: the name prompt of "Save...", the
// picker of "Custom..." and "Organize Reports...".

#include <QDialog>
#include <string>

#include "report/saved_layouts.h"

class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace qb {

class NamePrompt : public QDialog {
    Q_OBJECT
  public:
    NamePrompt(const std::u16string& name, QWidget* parent = nullptr);
    std::u16string name() const;
    // False on Cancel.
    static bool ask(QWidget* parent, std::u16string* name);

  private:
    QLineEdit* edit_;
};

// "Custom...": one saved layout chosen by name.
class LayoutPicker : public QDialog {
    Q_OBJECT
  public:
    LayoutPicker(const std::vector<SavedLayout>& layouts, QWidget* parent = nullptr);
    const SavedLayout* chosen() const;
    // False on Cancel, and after telling that nothing is saved.
    static bool pick(Platform& platform, QWidget* parent, SavedLayout* chosen);

  private:
    std::vector<SavedLayout> layouts_;
    QListWidget* list_;
};

// "Organize Reports...": deletes at once, renames in place.
class OrganizeReports : public QDialog {
    Q_OBJECT
  public:
    OrganizeReports(Platform& platform, QWidget* parent = nullptr);
    // Tells that nothing is saved instead of opening an empty list.
    static void organize(Platform& platform, QWidget* parent);

  private:
    void fill();
    void deleteSelected();
    void commitRename(QListWidgetItem* item);
    void updateButtons();

    Platform& platform_;
    QListWidget* list_;
    QPushButton* delete_;
    QPushButton* rename_;
    bool filling_ = false;
};

}  // namespace qb
