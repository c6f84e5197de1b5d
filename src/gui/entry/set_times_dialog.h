#pragma once

// "Set...": the work's start and end time, from which the editor takes the
// start time and the duration.

#include <QDialog>
#include <QString>

#include "platform/win_types.h"

class QTimeEdit;

namespace qb {

struct LocaleInfo;

// The display format of a time picker from the user's time picture, without
// the seconds, as the device's picker shows it.
QString timePickerFormat(const LocaleInfo& locale);

class SetTimesDialog : public QDialog {
    Q_OBJECT
  public:
    SetTimesDialog(const SYSTEMTIME& start, int minutes, const LocaleInfo& locale,
                   QWidget* parent = nullptr);

    // The times of day chosen; the date fields are those of the start given.
    SYSTEMTIME start() const;
    SYSTEMTIME end() const;

  private:
    SYSTEMTIME day_;
    QTimeEdit* start_;
    QTimeEdit* end_;
};

}  // namespace qb
