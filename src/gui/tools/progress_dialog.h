#pragma once

// The modal dialog inside which a backup or a restore runs: the first line
// says what is going on, the second counts the records, the bar follows
// the core's ProgressDisplay.

#include <QDialog>
#include <QElapsedTimer>
#include <functional>
#include <string_view>

#include "backup/backup_progress.h"

class QLabel;
class QProgressBar;

namespace qb {

class ProgressDialog : public QDialog, public ProgressDisplay {
    Q_OBJECT
  public:
    // `showBar` false: the restore, which reports no steps.
    ProgressDialog(std::u16string_view firstLine, bool showBar, QWidget* parent = nullptr);

    // Shows the dialog and runs `work` once it is on the screen; the dialog
    // closes itself when the work is done. Answers what the work answered.
    int run(const std::function<int(BackupProgress*)>& work);

    // Test hook: called once the dialog is up and after each repaint of a
    // change, with the dialog.
    static void setObserver(std::function<void(ProgressDialog&)> observer);

    QLabel* recordLine() const { return second_; }
    QProgressBar* bar() const { return bar_; }

  protected:
    void changed() override;
    void reject() override {}  // the work cannot be cancelled

  private:
    QLabel* second_;
    QProgressBar* bar_;
    QElapsedTimer sincePaint_;
};

}  // namespace qb
