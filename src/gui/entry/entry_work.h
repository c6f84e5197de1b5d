#pragma once

// The entry commands of the main window: "New", "Edit...", the entry
// timers with their one-second clock, and the quick summary.

#include <QObject>

#include "entry/entry_timers.h"

class QTimer;

namespace qb {

class AppState;
class MainWindow;

class EntryWork : public QObject {
    Q_OBJECT
  public:
    EntryWork(MainWindow& window, AppState& state);

    void newEntry();
    void editSelected();
    void openTimers();
    void openSummary();
    // A timer's "Task Complete": the editor on the entry it becomes, then the
    // timer starts over whether the entry was saved or not.
    void recordTimer(int index);
    // One second of the clock at local time `now`.
    void tick(FILETIME now);

    EntryTimerSet& timers() { return timers_; }

  signals:
    void timerTicked(int index);

  private:
    void updateTimersButton();

    MainWindow& window_;
    AppState& state_;
    EntryTimerSet timers_;
    QTimer* clock_;
};

// Registers the handlers with the main window; the work lives as long as it.
EntryWork* installEntryWork(MainWindow& window, AppState& state);

}  // namespace qb
