#pragma once

// The "Criteria" sheet with which exports, reports and bulk operations
// choose their entries: a private filter whose date range always applies.

#include <QDialog>

#include "views/entry_filter.h"

class QCheckBox;
class QComboBox;
class QDateEdit;

namespace qb {

class AppState;

class CriteriaSheet : public QDialog {
    Q_OBJECT

  public:
    // The pages start from `preset` (a preset without dates starts on
    // today); a preset text that no list holds is offered as a choice of its
    // own so that it is kept.
    CriteriaSheet(AppState& state, const EntryFilter& preset, QWidget* parent = nullptr);
    // Names the command the criteria are for in the title ("Export CSV -
    // Quillarbor"); empty keeps the plain title.
    void setPurpose(const QString& purpose);

    // The criteria the pages hold: both dates, each combo box that is not at
    // "(All)", the three check boxes.
    EntryFilter criteria() const;

  private:
    QWidget* makeCriteriaPage(AppState& state, const EntryFilter& preset);
    QWidget* makeMoreChoicesPage(AppState& state, const EntryFilter& preset);

    QDateEdit* start_ = nullptr;
    QDateEdit* end_ = nullptr;
    QComboBox* client_ = nullptr;
    QComboBox* project_ = nullptr;
    QComboBox* phase_ = nullptr;
    QComboBox* task_ = nullptr;
    QComboBox* billTo_ = nullptr;
    QCheckBox* unpaid_ = nullptr;
    QCheckBox* paid_ = nullptr;
    QCheckBox* nonBillable_ = nullptr;
    QComboBox* currency_ = nullptr;
    QComboBox* rateType_ = nullptr;
    QComboBox* custom_[3] = {};
};

}  // namespace qb
