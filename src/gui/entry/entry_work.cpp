#include "gui/entry/entry_work.h"

#include <QAction>
#include <QTimer>

#include "entry/entry_form.h"
#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/entry/entry_editor.h"
#include "gui/entry/summary_dialog.h"
#include "gui/entry/timers_window.h"
#include "gui/entry_list_widget.h"
#include "gui/icons.h"
#include "gui/main_window.h"
#include "gui/message_box.h"
#include "platform/calendar.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

EntryWork::EntryWork(MainWindow& window, AppState& state)
    : QObject(&window), window_(window), state_(state), clock_(new QTimer(this)) {
    // The timers count whether or not their window is open.
    clock_->setInterval(1000);
    connect(clock_, &QTimer::timeout, this, [this] {
        FILETIME now = 0;
        if (systemTimeToFileTime(localNow(), &now)) tick(now);
    });
    clock_->start();
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
    TimersWindow window(state_, timers_, &window_);
    connect(this, &EntryWork::timerTicked, &window, &TimersWindow::timerTicked);
    window.exec();
    updateTimersButton();
    if (window.completedTimer() >= 0) recordTimer(window.completedTimer());
}

void EntryWork::recordTimer(int index) {
    TimeEntry entry;
    const FormResult made =
        entryFromTimer(timers_.timer(index), state_.settings(), localNow(), entry);
    if (!made.ok) {
        // Nothing of the time is lost: the timer waits, paused, for the user.
        warn(&window_, toQt(std::u16string(made.message)));
        timers_.pause(index);
        updateTimersButton();
        return;
    }
    if (EntryEditor::edit(state_, entry, &window_)) window_.refresh();
    timers_.reset(index);
    updateTimersButton();
}

void EntryWork::openSummary() {
    SYSTEMTIME start{};
    SYSTEMTIME end{};
    PeriodView& view = window_.periodView();
    view.getPeriod(&start, &end);
    SummaryDialog dialog(state_, window_.entryList().collectIds(), view.kind(), start, end,
                         &window_);
    dialog.exec();
}

void EntryWork::tick(FILETIME now) {
    for (int index : timers_.tick(now)) emit timerTicked(index);
}

void EntryWork::updateTimersButton() {
    if (QAction* button = window_.action(kCmdEntryTimers)) {
        button->setIcon(timersIcon(timers_.anyActive()));
    }
}

EntryWork* installEntryWork(MainWindow& window, AppState& state) {
    auto* work = new EntryWork(window, state);
    window.setHandler(kCmdNew, [work] { work->newEntry(); });
    window.setHandler(kCmdEdit, [work] { work->editSelected(); });
    window.setHandler(kCmdEditMenu, [work] { work->editSelected(); });
    window.setHandler(kCmdEntryTimers, [work] { work->openTimers(); });
    window.setHandler(kCmdQuickSummary, [work] { work->openSummary(); });
    return work;
}

}  // namespace qb
