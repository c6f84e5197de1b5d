#include "gui/entry/entry_work.h"

#include <QAction>

#include "entry/entry_form.h"
#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/entry/entry_editor.h"
#include "gui/entry/idle_source.h"
#include "gui/entry/summary_dialog.h"
#include "gui/entry/timer_panel.h"
#include "gui/entry/timer_tray.h"
#include "gui/entry/timer_work.h"
#include "gui/entry/timers_window.h"
#include "gui/entry_list_widget.h"
#include "gui/icons.h"
#include "gui/main_window.h"
#include "gui/message_box.h"
#include "platform/calendar.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

EntryWork::EntryWork(MainWindow& window, AppState& state, std::unique_ptr<IdleSource> idle)
    : QObject(&window), window_(window), state_(state) {
    timers_ = new TimerWork(state, &window, idle ? std::move(idle) : desktopIdleSource());
    panel_ = new TimerPanel(*timers_, &window);
    window.addDockWidget(Qt::BottomDockWidgetArea, panel_);
    tray_ = new TimerTray(*timers_, &window);
    connect(panel_, &TimerPanel::openTimersRequested, this, &EntryWork::openTimers);
    connect(tray_, &TimerTray::openTimersRequested, this, &EntryWork::openTimers);
    connect(timers_, &TimerWork::changed, this, &EntryWork::updateTimersButton);
    // The editor opens once the button that completed the timer has returned.
    connect(timers_, &TimerWork::completed, this, &EntryWork::recordTimer, Qt::QueuedConnection);
    connect(&window, &MainWindow::storeChanged, timers_, &TimerWork::reload);
    updateTimersButton();
}

void EntryWork::newEntry() {
    const TimeEntry entry = prepareEntry(nullptr, state_.settings(), localNow());
    if (EntryEditor::edit(state_, entry, &window_)) window_.refresh();
}

void EntryWork::editSelected() {
    const CEOID id = window_.entryList().selectedId();
    TimeEntry stored;
    if (id == 0 || !state_.entries().seekOid(id) || readEntry(state_.entries(), stored) != 0) {
        return;
    }
    const TimeEntry entry = prepareEntry(&stored, state_.settings(), localNow());
    if (EntryEditor::edit(state_, entry, &window_)) window_.refresh();
}

void EntryWork::openTimers() {
    if (!timersWindow_) {
        timersWindow_ = new TimersWindow(state_, *timers_, &window_);
        timersWindow_->setAttribute(Qt::WA_DeleteOnClose);
    }
    timersWindow_->show();
    timersWindow_->raise();
    timersWindow_->activateWindow();
}

void EntryWork::recordTimer(int index) {
    TimeEntry entry;
    const FormResult made =
        entryFromTimer(timers_->timer(index), state_.settings(), localNow(), entry);
    if (!made.ok) {
        // Nothing of the time is lost: the timer waits, paused, for the user.
        warn(&window_, toQt(std::u16string(made.message)));
        timers_->pause(index);
        return;
    }
    if (EntryEditor::edit(state_, entry, &window_)) window_.refresh();
    timers_->finishCompleted(index);
}

// The summary stays beside the main window and follows its period, filter
// and entries until it is closed.
void EntryWork::openSummary() {
    const bool first = !summary_;
    if (first) {
        summary_ = new SummaryDialog(state_, &window_);
        connect(&window_, &MainWindow::refreshed, summary_, [this] {
            if (summary_->isVisible()) summary_->showPeriod(summaryPeriod());
        });
    }
    summary_->showPeriod(summaryPeriod());
    if (first) summary_->placeBeside(window_);
    summary_->show();
    summary_->raise();
    summary_->activateWindow();
}

SummaryPeriod EntryWork::summaryPeriod() const {
    SummaryPeriod p;
    const PeriodView& view = window_.periodView();
    p.ids = window_.entryList().collectIds();
    p.kind = view.kind();
    view.getPeriod(&p.start, &p.end);
    // The days come from the walk's bounds: the month's end from getPeriod
    // may lie on the next month's first day.
    FILETIME lo = 0;
    FILETIME hi = 0;
    view.bounds(&lo, &hi);
    fileTimeToSystemTime(lo, &p.firstDay);
    fileTimeToSystemTime(hi, &p.lastDay);
    return p;
}

void EntryWork::updateTimersButton() {
    if (QAction* button = window_.action(kCmdEntryTimers)) {
        button->setIcon(timersIcon(timers_->anyActive()));
    }
}

EntryWork* installEntryWork(MainWindow& window, AppState& state, std::unique_ptr<IdleSource> idle) {
    auto* work = new EntryWork(window, state, std::move(idle));
    window.setHandler(kCmdNew, [work] { work->newEntry(); });
    window.setHandler(kCmdEdit, [work] { work->editSelected(); });
    window.setHandler(kCmdEditMenu, [work] { work->editSelected(); });
    window.setHandler(kCmdEntryTimers, [work] { work->openTimers(); });
    window.setHandler(kCmdQuickSummary, [work] { work->openSummary(); });
    return work;
}

}  // namespace qb
