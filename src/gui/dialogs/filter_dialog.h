#pragma once

// "Custom..." of the Filter menu: the view filter as combo boxes and check
// boxes. OK rewrites the filter from the choices; the caller saves it and
// refreshes the view.

#include <QDialog>

#include "views/entry_filter.h"

class QCheckBox;
class QComboBox;

namespace qb {

class AppState;

class FilterDialog : public QDialog {
    Q_OBJECT

  public:
    FilterDialog(AppState& state, EntryFilter& filter, QWidget* parent = nullptr);

    void accept() override;

  private:
    EntryFilter& filter_;
    QComboBox* client_;
    QComboBox* project_;
    QComboBox* phase_;
    QComboBox* custom_[3];
    QComboBox* currency_;
    QComboBox* billTo_;
    QComboBox* rateType_;
    QCheckBox* unpaid_;
    QCheckBox* paid_;
    QCheckBox* nonBillable_;
};

}  // namespace qb
