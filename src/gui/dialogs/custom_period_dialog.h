#pragma once

// "Custom Period...": the first and last day of the period to show. The two
// days are taken as given; an end before the start makes an empty period.

#include <QDialog>

#include "platform/win_types.h"

class QDateEdit;

namespace qb {

class CustomPeriodDialog : public QDialog {
    Q_OBJECT

  public:
    CustomPeriodDialog(const SYSTEMTIME& start, const SYSTEMTIME& end, QWidget* parent = nullptr);

    // The days picked, at midnight.
    SYSTEMTIME start() const;
    SYSTEMTIME end() const;

    // Shows the dialog on *start and *end and writes the picked days back on
    // OK; false when it was cancelled.
    static bool choose(QWidget* parent, SYSTEMTIME* start, SYSTEMTIME* end);

  private:
    QDateEdit* start_;
    QDateEdit* end_;
};

}  // namespace qb
