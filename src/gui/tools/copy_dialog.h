#pragma once

// Copy...: copies of one entry on the following days, to the end of its
// week or to a chosen date.

#include <QDialog>
#include <vector>

#include "store/time_entry.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QRadioButton;

namespace qb {

class AppState;

class CopyDialog : public QDialog {
    Q_OBJECT
  public:
    CopyDialog(AppState& state, const TimeEntry& entry, QWidget* parent = nullptr);

    // OK: the duration is checked and the copies written; the dialog stays
    // open on a refusal.
    void accept() override;

    const std::vector<CEOID>& created() const { return created_; }

  private:
    AppState& state_;
    TimeEntry entry_;
    QComboBox* duration_;
    QRadioButton* restOfWeek_;
    QRadioButton* until_;
    QDateEdit* endDate_;
    QCheckBox* weekend_;
    std::vector<CEOID> created_;
};

}  // namespace qb
