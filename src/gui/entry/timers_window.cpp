#include "gui/entry/timers_window.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "entry/entry_timers.h"
#include "gui/app_state.h"
#include "gui/entry/note_editor.h"
#include "gui/help.h"
#include "gui/icons.h"
#include "gui/message_box.h"
#include "platform/calendar.h"
#include "views/date_texts.h"

namespace qb {
namespace {

constexpr char kClockValueStyle[] = "color: #0000ff;";

// A paused timer: the running clock with two bars over it.
QIcon pausedIcon() {
    QIcon icon;
    for (int size : {16, 32, 48}) {
        QPixmap pixmap = timersIcon(true).pixmap(size, size);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(size / 16.0, size / 16.0);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x3C, 0x46, 0x52));
        p.drawRoundedRect(QRectF(8.5, 8.5, 2.5, 7), 0.8, 0.8);
        p.drawRoundedRect(QRectF(12.5, 8.5, 2.5, 7), 0.8, 0.8);
        p.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon stateIcon(TimerState state) {
    switch (state) {
        case TimerState::kIdle:
            return timersIcon(false);
        case TimerState::kPaused:
            return pausedIcon();
        case TimerState::kRecording:
        case TimerState::kComplete:
            break;
    }
    return timersIcon(true);
}

QLabel* clockLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    QFont bold = label->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    label->setFont(bold);
    return label;
}

}  // namespace

TimersWindow::TimersWindow(AppState& state, EntryTimerSet& timers, QWidget* parent)
    : QDialog(parent), state_(state), timers_(timers) {
    setWindowTitle(QStringLiteral("Entry Timers"));

    start_ = clockLabel(QString(), this);
    start_->setObjectName(QStringLiteral("startValue"));
    duration_ = clockLabel(QString(), this);
    duration_->setObjectName(QStringLiteral("durationValue"));
    for (QLabel* value : {start_, duration_}) {
        value->setStyleSheet(QString::fromLatin1(kClockValueStyle));
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    // The seconds tick: a fixed width keeps the clock from shifting.
    duration_->setMinimumWidth(
        duration_->fontMetrics().horizontalAdvance(QStringLiteral("000:00:00")));
    auto* clock = new QGridLayout;
    clock->addWidget(clockLabel(QStringLiteral("Start: "), this), 0, 0);
    clock->addWidget(start_, 0, 1);
    clock->addWidget(clockLabel(QStringLiteral("Duration: "), this), 1, 0);
    clock->addWidget(duration_, 1, 1);
    clock->setColumnStretch(1, 1);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    auto button = [this](const QString& text, const char* name, bool checkable) {
        auto* b = new QPushButton(text, this);
        b->setObjectName(QString::fromLatin1(name));
        b->setCheckable(checkable);
        b->setAutoDefault(false);
        return b;
    };
    record_ = button(QStringLiteral("Record"), "record", true);
    pause_ = button(QStringLiteral("Pause"), "pause", true);
    complete_ = button(QStringLiteral("Task Complete"), "complete", false);
    reset_ = button(QStringLiteral("Reset Timer"), "reset", false);
    selector_ = new QComboBox(this);
    selector_->setObjectName(QStringLiteral("timerSelector"));
    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        selector_->addItem(QStringLiteral("Timer %1").arg(i + 1));
    }
    auto* commands = new QHBoxLayout;
    commands->addWidget(selector_);
    commands->addSpacing(fontMetrics().averageCharWidth() * 2);
    for (QPushButton* b : {record_, pause_, complete_, reset_}) commands->addWidget(b);
    commands->addStretch(1);

    note_ = new NoteEditor(this);
    note_->setObjectName(QStringLiteral("note"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, [this] { openHelp(this, "rectime"); });

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(clock);
    layout->addWidget(line);
    layout->addLayout(commands);
    layout->addWidget(note_, 1);
    layout->addWidget(buttons);

    connect(record_, &QPushButton::clicked, this, &TimersWindow::record);
    connect(pause_, &QPushButton::clicked, this, &TimersWindow::pause);
    connect(complete_, &QPushButton::clicked, this, &TimersWindow::complete);
    connect(reset_, &QPushButton::clicked, this, &TimersWindow::resetTimer);
    connect(selector_, &QComboBox::currentIndexChanged, this, &TimersWindow::showTimer);

    note_->setNoteBytes(timers_.timer(shown_).note);
    updateSelector();
    updateButtons();
    updateClock();
    resize(fontMetrics().averageCharWidth() * 92, fontMetrics().height() * 22);
}

void TimersWindow::showTimer(int index) {
    if (index < 0 || index >= EntryTimerSet::kCount) return;
    if (index != shown_) {
        storeNote();
        shown_ = index;
        note_->setNoteBytes(timers_.timer(shown_).note);
    }
    if (selector_->currentIndex() != index) {
        const QSignalBlocker quiet(selector_);
        selector_->setCurrentIndex(index);
    }
    updateButtons();
    updateClock();
}

void TimersWindow::timerTicked(int index) {
    if (index == shown_) {
        duration_->setText(toQt(timerClockText(timers_.timer(shown_).elapsed)));
    }
}

void TimersWindow::record() {
    timers_.record(shown_, localNow());
    updateButtons();
    updateClock();
}

void TimersWindow::pause() {
    timers_.pause(shown_);
    updateButtons();
}

void TimersWindow::complete() {
    timers_.complete(shown_, note_->noteBytes());
    completed_ = shown_;
    accept();
}

void TimersWindow::resetTimer() {
    if (!confirm(this, QStringLiteral("Are you sure to reset the timer?"),
                 MessageIcon::kQuestion)) {
        return;
    }
    timers_.reset(shown_);
    note_->clear();
    updateButtons();
    updateClock();
}

void TimersWindow::done(int result) {
    // A note typed into a running timer stays with it when the window closes.
    if (completed_ < 0) storeNote();
    QDialog::done(result);
}

void TimersWindow::storeNote() {
    timers_.timer(shown_).note = note_->noteBytes();
}

void TimersWindow::updateClock() {
    const EntryTimer& t = timers_.timer(shown_);
    start_->setText(t.state == TimerState::kIdle ? QStringLiteral("<>")
                                                 : toQt(shortTimeText(state_.locale(), t.start)));
    duration_->setText(toQt(timerClockText(t.elapsed)));
}

void TimersWindow::updateButtons() {
    const TimerState state = timers_.timer(shown_).state;
    const bool idle = state == TimerState::kIdle;
    record_->setEnabled(idle);
    record_->setChecked(!idle);
    pause_->setEnabled(state == TimerState::kRecording || state == TimerState::kPaused);
    pause_->setChecked(state == TimerState::kPaused);
    complete_->setEnabled(!idle);
    updateSelector();
}

void TimersWindow::updateSelector() {
    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        selector_->setItemIcon(i, stateIcon(timers_.timer(i).state));
    }
}

}  // namespace qb
