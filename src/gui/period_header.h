#pragma once

#include <QWidget>

#include "platform/win_types.h"

class QLabel;
class QToolButton;
class QCalendarWidget;

namespace qb {

// The band above the entry list: the period's label (click it for the
// calendar), the week number in the week view, and Goto Today, Previous
// Period and Next Period.
class PeriodHeader : public QWidget {
    Q_OBJECT
  public:
    explicit PeriodHeader(QWidget* parent = nullptr);

    void setLabel(const QString& label);
    // The ISO week number, or 0 to show none.
    void setWeekNumber(int week);
    void setCalendarDate(const SYSTEMTIME& date, bool mondayFirst, bool weekNumbers);
    QCalendarWidget* calendar() const { return calendar_; }

  signals:
    void previousRequested();
    void nextRequested();
    void todayRequested();
    void dateSelected(const SYSTEMTIME& date);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showCalendar();

    QLabel* label_;
    QLabel* week_;
    QToolButton* today_;
    QToolButton* previous_;
    QToolButton* next_;
    QCalendarWidget* calendar_;
};

}  // namespace qb
