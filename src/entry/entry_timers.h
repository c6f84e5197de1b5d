#pragma once

// The four stopwatches and their rules: the buttons, the clock, the tick and
// the entry a completed timer becomes. The timers live in the data file
// (store/timer_table.h); a recording timer keeps the moment it began
// counting, so its time goes on while no process runs. Nothing here knows
// about windows.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "entry/entry_form.h"
#include "platform/win_types.h"
#include "store/timer_table.h"

namespace qb {

// The seconds a timer shows at `now`: what it counted before it last began
// recording, plus the wall-clock span since then while it records. A span
// that runs backwards (the clock was set back) counts nothing, and the sum
// stops at the largest count the field holds rather than wrapping.
std::uint32_t timerElapsed(const EntryTimer& timer, FILETIME now);

class EntryTimerSet {
  public:
    static constexpr int kCount = kTimerCount;

    EntryTimer& timer(int index) { return timers_[static_cast<std::size_t>(index)]; }
    const EntryTimer& timer(int index) const { return timers_[static_cast<std::size_t>(index)]; }
    std::uint32_t elapsed(int index, FILETIME now) const { return timerElapsed(timer(index), now); }

    // One tick of the one-second clock at local time `now`; answers the
    // indexes of the recording timers, whose clocks the window redraws.
    // The time itself comes from the wall clock, so a suspended machine
    // counts in full. A clock set back (before the previous tick, or before
    // the moment a timer began counting) would stop a clock until the wall
    // clock caught up: such a timer keeps what it had at the previous tick
    // and counts on from `now`; its index goes into `rebased`, and the
    // caller writes it.
    std::vector<int> tick(FILETIME now, std::vector<int>* rebased = nullptr);

    // The buttons. Each answers false, changing nothing, when the timer's
    // state does not offer it.
    // Record: an idle timer starts recording at `now`, which is its start.
    bool record(int index, FILETIME now);
    // Pause: recording becomes paused (the time so far is kept), paused
    // becomes recording again from `now`; the start stays the first Record.
    // A completed timer whose entry was not made becomes paused.
    bool pause(int index, FILETIME now);
    // Task Complete on a recording, paused or completed timer: the time
    // stops and the note is the timer's.
    bool complete(int index, std::vector<std::uint8_t> note, FILETIME now);
    // Reset Timer: idle, no start, no time, no note, no client, project or task.
    void reset(int index);

    bool anyActive() const;
    bool anyRecording() const;

    // The timers as the table holds them; false (the set unchanged) when
    // the table cannot be read.
    bool load(TimerTable& table);
    bool save(TimerTable& table, int index) const;

    // Reads the timers afresh, lets `change` alter them and writes back the
    // one at `index`, in one transaction, so that a change another process
    // made meanwhile is neither lost nor overwritten. `change` answers
    // false to change nothing.
    enum class Update { kDone, kRefused, kFailed };
    Update update(TimerTable& table, int index, const std::function<bool(EntryTimerSet&)>& change);

  private:
    EntryTimers timers_;
    FILETIME previousTick_ = 0;
};

inline constexpr std::u16string_view kResetTimerQuestion = u"Are you sure to reset the timer?";
// Reset Timer asks only when there is time to lose: an idle timer resets
// without the question.
bool resetAsks(const EntryTimer& timer);

// "%02ld:%02ld:%02ld" of the elapsed seconds; the hours do not wrap.
std::u16string timerClockText(std::uint32_t elapsed);

// "idle", "recording", "paused" or "complete".
std::u16string_view timerStateName(TimerState state);

// "Timer 1" to "Timer 4".
std::u16string timerName(int index);

// What a timer is about in one line: its client, else the first line of its
// note, else nothing.
std::u16string timerSubject(const EntryTimer& timer);

// The new entry a completed timer becomes: the defaults of a new entry, the
// timer's start as date and start time, its time through the duration
// rule, its note, client, project and task. Time beyond the longest
// duration (655.35 hours) is refused with kDurationRangeMessage and `entry`
// is left alone; the timer keeps its time.
FormResult entryFromTimer(const EntryTimer& timer, const Settings& settings,
                          const SYSTEMTIME& today, TimeEntry& entry);

}  // namespace qb
