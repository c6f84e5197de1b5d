#pragma once

// The two dialogs of the client setup's Import: what to import, and which
// of the contacts file's people become contacts.

#include <QDialog>
#include <string>
#include <vector>

#include "entry/vcard.h"

class QButtonGroup;
class QTreeWidget;

namespace qb {

// "Select the type to import:". Choices 0 to 3 are list files of clients,
// projects, tasks and contacts (ListLevel's order); 4 is the contacts file.
class ImportTypeDialog : public QDialog {
    Q_OBJECT

  public:
    static constexpr int kContactsFile = 4;

    // Without a selected client only clients can be imported.
    ImportTypeDialog(bool clientSelected, QWidget* parent = nullptr);

    int choice() const;
    void setChoice(int choice);

  private:
    QButtonGroup* choices_;
};

// "List to be imported:": the contacts with their "File As" and "Company",
// each with a check box.
class ContactsImportDialog : public QDialog {
    Q_OBJECT

  public:
    ContactsImportDialog(const std::vector<VCardContact>& contacts, QWidget* parent = nullptr);

    QTreeWidget* list() const { return list_; }
    // The "File As" names checked, in list order.
    std::vector<std::u16string> chosen() const;

  private:
    QTreeWidget* list_;
};

}  // namespace qb
