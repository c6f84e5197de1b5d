#pragma once

// The entry commands of the main window: "New", "Edit...", the entry
// timers (their window, panel and tray) and the quick summary.

#include <QObject>
#include <QPointer>

#include <memory>

#include "gui/entry/idle_source.h"
#include "gui/entry/summary_dialog.h"
#include "gui/entry/timers_window.h"

namespace qb {

class AppState;
class MainWindow;
class TimerPanel;
class TimerTray;
class TimerWork;

class EntryWork : public QObject {
    Q_OBJECT
  public:
    EntryWork(MainWindow& window, AppState& state, std::unique_ptr<IdleSource> idle);

    void newEntry();
    void editSelected();
    // Opens the timer window beside the main window, or brings it forward.
    void openTimers();
    // Opens the quick summary beside the main window, or fills it again and
    // brings it forward.
    void openSummary();
    // A timer's "Task Complete": the editor on the entry it becomes, then the
    // timer starts over whether the entry was saved or not.
    void recordTimer(int index);

    TimerWork& timers() { return *timers_; }
    TimersWindow* timersWindow() const { return timersWindow_; }
    SummaryDialog* summary() const { return summary_; }
    TimerPanel& timerPanel() { return *panel_; }
    TimerTray& timerTray() { return *tray_; }

  private:
    void updateTimersButton();
    SummaryPeriod summaryPeriod() const;

    MainWindow& window_;
    AppState& state_;
    TimerWork* timers_;
    TimerPanel* panel_;
    TimerTray* tray_;
    QPointer<TimersWindow> timersWindow_;
    QPointer<SummaryDialog> summary_;
};

// Registers the handlers with the main window; the work lives as long as
// it. Idle time comes from the desktop unless `idle` is given.
EntryWork* installEntryWork(MainWindow& window, AppState& state,
                            std::unique_ptr<IdleSource> idle = nullptr);

}  // namespace qb
