#include "gui/entry/timer_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "entry/entry_timers.h"
#include "gui/app_state.h"
#include "gui/entry/timer_work.h"
#include "gui/icons.h"

namespace qb {
namespace {

QString numbered(const char* name, int index) {
    return QStringLiteral("%1%2").arg(QLatin1String(name)).arg(index + 1);
}

}  // namespace

TimerPanel::TimerPanel(TimerWork& work, QWidget* parent)
    : QDockWidget(QStringLiteral("Timers"), parent), work_(work) {
    setObjectName(QStringLiteral("timerPanel"));
    // Always in sight: it may move and float, but not close.
    setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    auto* body = new QWidget(this);
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(6, 2, 6, 4);
    column->setSpacing(2);

    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        Row& r = rows_[static_cast<std::size_t>(i)];
        r.row = new QWidget(body);
        r.row->setObjectName(numbered("timerRow", i));
        r.icon = new QLabel(r.row);
        auto* name = new QLabel(toQt(timerName(i)), r.row);
        QFont bold = name->font();
        bold.setBold(true);
        name->setFont(bold);
        r.subject = new QLabel(r.row);
        r.subject->setObjectName(numbered("subject", i));
        r.subject->setTextFormat(Qt::PlainText);
        r.subject->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        r.clock = new QLabel(r.row);
        r.clock->setObjectName(numbered("clock", i));
        r.clock->setFont(bold);
        r.clock->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        r.clock->setMinimumWidth(
            r.clock->fontMetrics().horizontalAdvance(QStringLiteral("000:00:00")) + 8);
        r.pause = new QPushButton(QStringLiteral("Pause"), r.row);
        r.pause->setObjectName(numbered("pause", i));
        r.pause->setCheckable(true);
        r.complete = new QPushButton(QStringLiteral("Task Complete"), r.row);
        r.complete->setObjectName(numbered("complete", i));
        auto* line = new QHBoxLayout(r.row);
        line->setContentsMargins(0, 0, 0, 0);
        line->addWidget(r.icon);
        line->addWidget(name);
        line->addSpacing(8);
        line->addWidget(r.subject, 1);
        line->addWidget(r.clock);
        line->addSpacing(8);
        line->addWidget(r.pause);
        line->addWidget(r.complete);
        column->addWidget(r.row);
        connect(r.pause, &QPushButton::clicked, this, [this, i] { work_.pause(i); });
        connect(r.complete, &QPushButton::clicked, this, [this, i] { work_.complete(i); });
    }

    none_ = new QWidget(body);
    none_->setObjectName(QStringLiteral("noTimer"));
    auto* noneLine = new QHBoxLayout(none_);
    noneLine->setContentsMargins(0, 0, 0, 0);
    auto* icon = new QLabel(none_);
    icon->setPixmap(timersIcon(false).pixmap(16, 16));
    auto* open = new QPushButton(QStringLiteral("Entry Timers..."), none_);
    open->setObjectName(QStringLiteral("openTimers"));
    noneLine->addWidget(icon);
    noneLine->addWidget(new QLabel(QStringLiteral("No timer is running."), none_), 1);
    noneLine->addWidget(open);
    column->addWidget(none_);
    connect(open, &QPushButton::clicked, this, &TimerPanel::openTimersRequested);

    setWidget(body);
    connect(&work_, &TimerWork::changed, this, &TimerPanel::showTimers);
    connect(&work_, &TimerWork::ticked, this, &TimerPanel::showClocks);
    showTimers();
}

void TimerPanel::showTimers() {
    bool any = false;
    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        Row& r = rows_[static_cast<std::size_t>(i)];
        const EntryTimer& t = work_.timer(i);
        const bool shown = t.state != TimerState::kIdle;
        any = any || shown;
        r.row->setVisible(shown);
        if (!shown) continue;
        r.icon->setPixmap(timerStateIcon(t.state).pixmap(16, 16));
        r.subject->setText(toQt(timerSubject(t)));
        r.pause->setEnabled(t.state == TimerState::kRecording || t.state == TimerState::kPaused);
        r.pause->setChecked(t.state == TimerState::kPaused);
    }
    none_->setVisible(!any);
    showClocks();
}

void TimerPanel::showClocks() {
    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        Row& r = rows_[static_cast<std::size_t>(i)];
        if (work_.timer(i).state != TimerState::kIdle) {
            r.clock->setText(toQt(timerClockText(work_.elapsed(i))));
        }
    }
}

}  // namespace qb
