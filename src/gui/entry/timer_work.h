#pragma once

// The desktop's side of the four entry timers: every button of the timer
// window, the panel and the tray comes here, goes through the core's rules
// and is written to the store at once; the one-second clock; what another
// process changed; and the question about idle time.

#include <QObject>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "entry/entry_timers.h"
#include "entry/timer_idle.h"
#include "gui/entry/idle_source.h"

class QTimer;
class QWidget;

namespace qb {

class AppState;

class TimerWork : public QObject {
    Q_OBJECT
  public:
    // The idle source is the desktop's own unless a test passes one; null
    // leaves idle time undetected.
    TimerWork(AppState& state, QWidget* window, std::unique_ptr<IdleSource> idle);
    ~TimerWork() override;

    const EntryTimer& timer(int index) const { return timers_.timer(index); }
    // The seconds the timer's clock shows now.
    std::uint32_t elapsed(int index) const;
    bool anyActive() const { return timers_.anyActive(); }
    bool anyRecording() const { return timers_.anyRecording(); }
    bool idleDetected() const { return idle_ != nullptr; }

    // The buttons.
    void record(int index);
    void pause(int index);
    // Task Complete: the timer stops with its note; completed() follows.
    void complete(int index);
    void reset(int index);
    // After the editor of a completed timer: the timer starts over, unless
    // another process has meanwhile reset it and started it again.
    void finishCompleted(int index);
    // What the timer window's note and boxes hold.
    void setDetails(int index, const std::vector<std::uint8_t>& note, const std::u16string& client,
                    const std::u16string& project, const std::u16string& task);

    // Reads the timers again (another process changed the store).
    void reload();
    // One second of the clock at local time `now`.
    void tick(FILETIME now);

  signals:
    // A timer's state or details changed (here or in another process).
    void changed();
    // A second passed while a timer records.
    void ticked();
    // Task Complete is about to stop the timer: what a window holds of its
    // note and work belongs in it first.
    void completing(int index);
    // Task Complete was pressed on the timer.
    void completed(int index);

  private:
    // Applies `change` to the stored timers and announces the outcome; a
    // failed write is told to the user.
    bool apply(int index, const std::function<bool(EntryTimerSet&)>& change);
    void watchIdle(FILETIME now);
    void askAboutIdle(const IdleSpan& span);

    AppState& state_;
    QWidget* window_;
    TimerTable table_;
    EntryTimerSet timers_;
    QTimer* clock_;
    std::unique_ptr<IdleSource> idle_;
    IdleWatch idleWatch_;
    bool asking_ = false;
};

// The local time as the clock counts it.
FILETIME timerNow();

}  // namespace qb
