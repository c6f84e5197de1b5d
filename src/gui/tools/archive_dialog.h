#pragma once

// The archive dialog: what goes into the archive (the entries of a date
// range, or checked clients) and whether it is deleted afterwards.

#include <QDialog>
#include <vector>

#include "backup/archive_writer.h"
#include "platform/win_types.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QListWidget;

namespace qb {

class AppState;

class ArchiveDialog : public QDialog {
    Q_OBJECT
  public:
    // The dates start as the current view's period.
    ArchiveDialog(AppState& state, const SYSTEMTIME& start, const SYSTEMTIME& end,
                  QWidget* parent = nullptr);

    ArchiveType type() const;
    // The range as the archive compares it: the start day's first second to
    // the end day's last.
    FILETIME rangeStart() const;
    FILETIME rangeEnd() const;
    // The record ids of the checked clients, in list order.
    std::vector<CEOID> checkedClients() const;
    bool deleteWhenArchived() const;

  private:
    void typeChanged(int index);

    QComboBox* type_;
    QDateEdit* start_;
    QDateEdit* end_;
    QListWidget* clients_;
    QCheckBox* delete_;
};

}  // namespace qb
