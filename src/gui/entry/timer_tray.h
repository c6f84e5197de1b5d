#pragma once

// The timers in the desktop's tray, when it has one: the icon shows whether
// a timer records, its tip the running clocks, and its menu offers Record,
// Pause and Task Complete for each timer.

#include <QObject>

class QMenu;
class QSystemTrayIcon;
class QWidget;

namespace qb {

class TimerWork;

class TimerTray : public QObject {
    Q_OBJECT
  public:
    TimerTray(TimerWork& work, QWidget* window);
    ~TimerTray() override;

    // Null when the desktop has no tray.
    QSystemTrayIcon* icon() const { return icon_; }
    // The tray icon's menu, rebuilt each time it opens.
    QMenu* menu() const { return menu_; }
    void rebuildMenu();

  signals:
    void openTimersRequested();

  private:
    void showState();
    void showWindow();

    TimerWork& work_;
    QWidget* window_;
    QSystemTrayIcon* icon_ = nullptr;
    QMenu* menu_ = nullptr;
};

}  // namespace qb
