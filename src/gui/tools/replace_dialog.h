#pragma once

// Replace Field Text: a text of one field renamed in the master data and
// in every entry, after a question, with a progress bar while it runs.

#include <QDialog>

#include "entry/replace_text.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace qb {

class AppState;

class ReplaceDialog : public QDialog {
    Q_OBJECT
  public:
    explicit ReplaceDialog(AppState& state, QWidget* parent = nullptr);

    // OK: the two refusals, the question, then the work; the dialog closes
    // when it is done.
    void accept() override;

    // What the last run changed (nothing before a run).
    const ReplaceResult& result() const { return result_; }

  private:
    class Bar;
    void refillFind();
    // The "Find:" item chosen, -1 while the box holds typed text.
    int findIndex() const;

    AppState& state_;
    QComboBox* type_;
    QComboBox* find_;
    QLineEdit* replacement_;
    QLabel* status_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    ReplaceResult result_;
};

}  // namespace qb
