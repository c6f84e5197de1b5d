#pragma once

// The timers in sight: a panel of the main window with one row per timer
// that is not idle (its name, its client or note, its running clock, and
// Pause and Task Complete at one click), and a word and a way to the timer
// window when none is.

#include <QDockWidget>
#include <array>

#include "store/timer_table.h"

class QLabel;
class QPushButton;

namespace qb {

class TimerWork;

class TimerPanel : public QDockWidget {
    Q_OBJECT
  public:
    TimerPanel(TimerWork& work, QWidget* parent);

  signals:
    void openTimersRequested();

  private:
    struct Row {
        QWidget* row = nullptr;
        QLabel* icon = nullptr;
        QLabel* subject = nullptr;
        QLabel* clock = nullptr;
        QPushButton* pause = nullptr;
        QPushButton* complete = nullptr;
    };

    void showTimers();
    void showClocks();

    TimerWork& work_;
    std::array<Row, kTimerCount> rows_;
    QWidget* none_;
};

}  // namespace qb
