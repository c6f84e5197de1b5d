#include "gui/entry/timers_window.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "entry/entry_timers.h"
#include "gui/app_state.h"
#include "gui/entry/choice_boxes.h"
#include "gui/entry/note_editor.h"
#include "gui/entry/timer_work.h"
#include "gui/help.h"
#include "gui/icons.h"
#include "gui/message_box.h"
#include "views/date_texts.h"

namespace qb {
namespace {

constexpr char kClockValueStyle[] = "color: #0000ff;";

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

TimersWindow::TimersWindow(AppState& state, TimerWork& work, QWidget* parent)
    : QDialog(parent), state_(state), work_(work), storeDelay_(new QTimer(this)) {
    setWindowTitle(QStringLiteral("Entry Timers"));
    setModal(false);

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
    for (int i = 0; i < EntryTimerSet::kCount; ++i) selector_->addItem(toQt(timerName(i)));
    auto* commands = new QHBoxLayout;
    commands->addWidget(selector_);
    commands->addSpacing(fontMetrics().averageCharWidth() * 2);
    for (QPushButton* b : {record_, pause_, complete_, reset_}) commands->addWidget(b);
    commands->addStretch(1);

    choices_ = new WorkChoices(state_, this);
    auto* details = new QFormLayout;
    details->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    details->addRow(QStringLiteral("Client:"), choices_->client());
    details->addRow(QStringLiteral("Project:"), choices_->project());
    details->addRow(QStringLiteral("Task:"), choices_->task());

    note_ = new NoteEditor(this);
    note_->setObjectName(QStringLiteral("note"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, [this] { openHelp(this, "rectime"); });

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(clock);
    layout->addWidget(line);
    layout->addLayout(commands);
    layout->addLayout(details);
    layout->addWidget(note_, 1);
    layout->addWidget(buttons);

    storeDelay_->setSingleShot(true);
    storeDelay_->setInterval(700);
    connect(storeDelay_, &QTimer::timeout, this, &TimersWindow::storeDetails);
    connect(choices_, &WorkChoices::edited, storeDelay_, qOverload<>(&QTimer::start));
    connect(note_->textBox(), &QPlainTextEdit::textChanged, storeDelay_,
            qOverload<>(&QTimer::start));

    connect(record_, &QPushButton::clicked, this, &TimersWindow::record);
    connect(pause_, &QPushButton::clicked, this, &TimersWindow::pause);
    connect(complete_, &QPushButton::clicked, this, &TimersWindow::complete);
    connect(reset_, &QPushButton::clicked, this, &TimersWindow::resetTimer);
    connect(selector_, &QComboBox::currentIndexChanged, this, &TimersWindow::showTimer);
    connect(&work_, &TimerWork::ticked, this, &TimersWindow::updateClock);
    connect(&work_, &TimerWork::changed, this, &TimersWindow::timersChanged);
    connect(&work_, &TimerWork::completing, this, [this](int index) {
        if (index == shown_ && storeDelay_->isActive()) storeDetails();
    });

    showDetails();
    updateSelector();
    updateButtons();
    updateClock();
    resize(fontMetrics().averageCharWidth() * 92, fontMetrics().height() * 28);
}

void TimersWindow::showTimer(int index) {
    if (index < 0 || index >= EntryTimerSet::kCount) return;
    if (index != shown_) {
        storeDetails();
        shown_ = index;
        showDetails();
    }
    if (selector_->currentIndex() != index) {
        const QSignalBlocker quiet(selector_);
        selector_->setCurrentIndex(index);
    }
    updateButtons();
    updateClock();
}

void TimersWindow::record() {
    storeDetails();
    work_.record(shown_);
}

void TimersWindow::pause() {
    storeDetails();
    work_.pause(shown_);
}

void TimersWindow::complete() {
    storeDetails();
    // The window closes first: the editor that follows stands alone.
    const int index = shown_;
    close();
    work_.complete(index);
}

void TimersWindow::resetTimer() {
    if (resetAsks(work_.timer(shown_)) &&
        !confirm(this, toQt(std::u16string(kResetTimerQuestion)), MessageIcon::kQuestion)) {
        updateButtons();
        return;
    }
    storeDelay_->stop();
    work_.reset(shown_);
    note_->clear();
    showDetails();
}

void TimersWindow::done(int result) {
    // A note typed into a timer stays with it when the window closes.
    storeDetails();
    QDialog::done(result);
}

void TimersWindow::storeDetails() {
    storeDelay_->stop();
    work_.setDetails(shown_, note_->noteBytes(), choices_->clientText(), choices_->projectText(),
                     choices_->taskText());
}

void TimersWindow::showDetails() {
    const EntryTimer& t = work_.timer(shown_);
    if (note_->noteBytes() != t.note) note_->setNoteBytes(t.note);
    if (choices_->clientText() != t.client || choices_->projectText() != t.project ||
        choices_->taskText() != t.task) {
        choices_->show(t.client, t.project, t.task);
    }
    storeDelay_->stop();
}

void TimersWindow::timersChanged() {
    // What the user is typing wins over a change from elsewhere; it is
    // written a moment later.
    if (!storeDelay_->isActive()) showDetails();
    updateSelector();
    updateButtons();
    updateClock();
}

void TimersWindow::updateClock() {
    const EntryTimer& t = work_.timer(shown_);
    start_->setText(t.state == TimerState::kIdle ? QStringLiteral("<>")
                                                 : toQt(shortTimeText(state_.locale(), t.start)));
    duration_->setText(toQt(timerClockText(work_.elapsed(shown_))));
}

void TimersWindow::updateButtons() {
    const TimerState state = work_.timer(shown_).state;
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
        selector_->setItemIcon(i, timerStateIcon(work_.timer(i).state));
    }
}

}  // namespace qb
