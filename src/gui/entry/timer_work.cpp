#include "gui/entry/timer_work.h"

#include <QTimer>
#include <QWidget>

#include "gui/app_state.h"
#include "gui/entry/idle_source.h"
#include "gui/message_box.h"
#include "platform/calendar.h"
#include "platform/date_format.h"
#include "views/date_texts.h"

namespace qb {

FILETIME timerNow() {
    FILETIME now = 0;
    systemTimeToFileTime(localNow(), &now);
    return now;
}

TimerWork::TimerWork(AppState& state, QWidget* window, std::unique_ptr<IdleSource> idle)
    : QObject(window),
      state_(state),
      window_(window),
      table_(state.platform()),
      clock_(new QTimer(this)),
      idle_(std::move(idle)) {
    if (table_.open()) timers_.load(table_);
    // The timers count whether or not a window shows them.
    clock_->setInterval(1000);
    connect(clock_, &QTimer::timeout, this, [this] { tick(timerNow()); });
    clock_->start();
}

TimerWork::~TimerWork() = default;

std::uint32_t TimerWork::elapsed(int index) const {
    return timers_.elapsed(index, timerNow());
}

bool TimerWork::apply(int index, const std::function<bool(EntryTimerSet&)>& change) {
    if (!table_.isOpen() && !table_.open()) {
        fail(window_, QStringLiteral("The timers cannot be opened in %1.")
                          .arg(QString::fromStdString(state_.platform().file().path())));
        return false;
    }
    const EntryTimerSet::Update result = timers_.update(table_, index, change);
    if (result == EntryTimerSet::Update::kFailed) {
        fail(window_, QStringLiteral("The timer cannot be written to %1.")
                          .arg(QString::fromStdString(state_.platform().file().path())));
    }
    // Even a refusal read the timers afresh.
    emit changed();
    return result == EntryTimerSet::Update::kDone;
}

void TimerWork::record(int index) {
    const FILETIME now = timerNow();
    apply(index, [&](EntryTimerSet& t) { return t.record(index, now); });
}

void TimerWork::pause(int index) {
    const FILETIME now = timerNow();
    apply(index, [&](EntryTimerSet& t) { return t.pause(index, now); });
}

void TimerWork::complete(int index) {
    emit completing(index);
    const FILETIME now = timerNow();
    if (apply(index,
              [&](EntryTimerSet& t) { return t.complete(index, t.timer(index).note, now); })) {
        emit completed(index);
    }
}

void TimerWork::reset(int index) {
    apply(index, [&](EntryTimerSet& t) {
        t.reset(index);
        return true;
    });
}

void TimerWork::finishCompleted(int index) {
    apply(index, [&](EntryTimerSet& t) {
        if (t.timer(index).state != TimerState::kComplete) return false;
        t.reset(index);
        return true;
    });
}

void TimerWork::setDetails(int index, const std::vector<std::uint8_t>& note,
                           const std::u16string& client, const std::u16string& project,
                           const std::u16string& task) {
    const EntryTimer& shown = timers_.timer(index);
    if (shown.note == note && shown.client == client && shown.project == project &&
        shown.task == task) {
        return;
    }
    apply(index, [&](EntryTimerSet& t) {
        EntryTimer& timer = t.timer(index);
        timer.note = note;
        timer.client = client;
        timer.project = project;
        timer.task = task;
        return true;
    });
}

void TimerWork::reload() {
    if (!table_.isOpen() && !table_.open()) return;
    EntryTimerSet fresh = timers_;
    if (!fresh.load(table_)) return;
    bool same = true;
    for (int i = 0; i < EntryTimerSet::kCount; ++i) same = same && fresh.timer(i) == timer(i);
    if (same) return;
    timers_.load(table_);
    emit changed();
}

void TimerWork::tick(FILETIME now) {
    std::vector<int> rebased;
    const bool recording = !timers_.tick(now, &rebased).empty();
    for (int index : rebased) {
        const EntryTimer counted = timers_.timer(index);
        apply(index, [&](EntryTimerSet& t) {
            if (t.timer(index).state != TimerState::kRecording) return false;
            t.timer(index).elapsed = counted.elapsed;
            t.timer(index).resumed = counted.resumed;
            return true;
        });
    }
    if (recording) emit ticked();
    watchIdle(now);
}

void TimerWork::watchIdle(FILETIME now) {
    // Only a recording timer, or an absence that began with one, needs
    // the desktop asked.
    if (!idle_ || asking_ || (!timers_.anyRecording() && !idleWatch_.away())) return;
    const std::uint32_t limit = idleMinutes(state_.registry());
    const std::optional<std::uint32_t> seconds = limit == 0 ? std::nullopt : idle_->idleSeconds();
    if (!seconds) return;
    if (auto span = idleWatch_.sample(now, *seconds, limit, timers_.anyRecording())) {
        askAboutIdle(*span);
    }
}

void TimerWork::askAboutIdle(const IdleSpan& span) {
    const FILETIME now = timerNow();
    std::uint32_t counted = 0;
    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        counted += idleSecondsCounted(timers_.timer(i), span, now);
    }
    if (counted == 0) return;
    SYSTEMTIME since{};
    fileTimeToSystemTime(span.from, &since);
    MessageRequest question;
    question.text = toQt(idleQuestion(span, shortTimeText(state_.locale(), since)));
    question.icon = MessageIcon::kQuestion;
    question.buttons = QMessageBox::Yes | QMessageBox::No | QMessageBox::Abort;
    question.defaultButton = QMessageBox::Yes;
    question.buttonTexts = {{QMessageBox::Yes, toQt(std::u16string(kIdleKeepText))},
                            {QMessageBox::No, toQt(std::u16string(kIdleDiscardText))},
                            {QMessageBox::Abort, toQt(std::u16string(kIdleDiscardAndPauseText))}};
    asking_ = true;
    const QMessageBox::StandardButton pressed = showMessage(window_, question);
    asking_ = false;
    IdleAnswer answer = IdleAnswer::kKeep;
    if (pressed == QMessageBox::No) answer = IdleAnswer::kDiscard;
    if (pressed == QMessageBox::Abort) answer = IdleAnswer::kDiscardAndPause;
    if (answer == IdleAnswer::kKeep) return;
    const FILETIME answered = timerNow();
    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        if (idleSecondsCounted(timers_.timer(i), span, answered) == 0) continue;
        apply(i, [&](EntryTimerSet& t) {
            return applyIdleAnswer(t.timer(i), span, answer, answered);
        });
    }
}

}  // namespace qb
