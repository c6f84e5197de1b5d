#include "gui/entry/timer_tray.h"

#include <QApplication>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QWidget>

#include "entry/entry_timers.h"
#include "gui/app_state.h"
#include "gui/entry/timer_work.h"
#include "gui/icons.h"

namespace qb {
namespace {

// "Timer 1: 00:12:03, recording, Acme"
QString timerLine(const TimerWork& work, int index) {
    const EntryTimer& t = work.timer(index);
    QString line = toQt(timerName(index));
    if (t.state == TimerState::kIdle) {
        return line + QStringLiteral(": ") + toQt(std::u16string(timerStateName(t.state)));
    }
    line += QStringLiteral(": %1, %2")
                .arg(toQt(timerClockText(work.elapsed(index))),
                     toQt(std::u16string(timerStateName(t.state))));
    const std::u16string subject = timerSubject(t);
    if (!subject.empty()) line += QStringLiteral(", ") + toQt(subject);
    return line;
}

}  // namespace

TimerTray::TimerTray(TimerWork& work, QWidget* window)
    : QObject(window), work_(work), window_(window) {
    menu_ = new QMenu(window);
    connect(menu_, &QMenu::aboutToShow, this, &TimerTray::rebuildMenu);
    rebuildMenu();
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
    icon_ = new QSystemTrayIcon(this);
    icon_->setContextMenu(menu_);
    connect(icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason r) {
        if (r == QSystemTrayIcon::Trigger || r == QSystemTrayIcon::DoubleClick) showWindow();
    });
    connect(&work_, &TimerWork::changed, this, &TimerTray::showState);
    connect(&work_, &TimerWork::ticked, this, &TimerTray::showState);
    showState();
    icon_->show();
}

TimerTray::~TimerTray() = default;

void TimerTray::rebuildMenu() {
    menu_->clear();
    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        const TimerState state = work_.timer(i).state;
        QMenu* sub = menu_->addMenu(timerStateIcon(state), timerLine(work_, i));
        QAction* record =
            sub->addAction(QStringLiteral("Record"), this, [this, i] { work_.record(i); });
        record->setEnabled(state == TimerState::kIdle);
        QAction* pause =
            sub->addAction(QStringLiteral("Pause"), this, [this, i] { work_.pause(i); });
        pause->setCheckable(true);
        pause->setChecked(state == TimerState::kPaused);
        pause->setEnabled(state == TimerState::kRecording || state == TimerState::kPaused);
        QAction* complete = sub->addAction(QStringLiteral("Task Complete"), this, [this, i] {
            showWindow();
            work_.complete(i);
        });
        complete->setEnabled(state != TimerState::kIdle);
    }
    menu_->addSeparator();
    menu_->addAction(QStringLiteral("Entry Timers..."), this, [this] {
        showWindow();
        emit openTimersRequested();
    });
    menu_->addAction(QStringLiteral("Show Quillarbor"), this, &TimerTray::showWindow);
    menu_->addSeparator();
    menu_->addAction(QStringLiteral("Quit"), window_, &QWidget::close);
}

void TimerTray::showState() {
    icon_->setIcon(timersIcon(work_.anyRecording()));
    QStringList lines{QStringLiteral("Quillarbor")};
    for (int i = 0; i < EntryTimerSet::kCount; ++i) {
        if (work_.timer(i).state != TimerState::kIdle) lines << timerLine(work_, i);
    }
    if (lines.size() == 1) lines << QStringLiteral("No timer is running.");
    icon_->setToolTip(lines.join(QLatin1Char('\n')));
}

void TimerTray::showWindow() {
    window_->setWindowState((window_->windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window_->show();
    window_->raise();
    window_->activateWindow();
}

}  // namespace qb
