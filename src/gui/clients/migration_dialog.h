#pragma once

// "Check Projects to migrate:" / "Check Tasks to migrate:": the names of one
// client with check boxes, and the client they move to.

#include <QDialog>
#include <string>
#include <vector>

#include "store/master_data.h"

class QComboBox;
class QListWidget;
class QPushButton;

namespace qb {

class MigrationDialog : public QDialog {
    Q_OBJECT

  public:
    // `targets` are the clients the names may move to; `checked` starts
    // ticked when it is one of the names.
    MigrationDialog(const QString& prompt, const std::vector<std::u16string>& names,
                    const std::vector<ClientRecord>& targets, const std::u16string& checked,
                    QWidget* parent = nullptr);

    std::vector<std::u16string> chosen() const;
    ClientId target() const;

  private:
    void updateOk();

    QListWidget* names_;
    QComboBox* target_;
    QPushButton* ok_;
};

}  // namespace qb
