#pragma once

// The four stopwatches. They live in memory only and tick once a second
// from the window system's timer; nothing here knows about windows.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "entry/entry_form.h"
#include "platform/win_types.h"

namespace qb {

enum class TimerState : std::uint32_t { kIdle = 0, kRecording = 1, kPaused = 2, kComplete = 3 };

struct EntryTimer {
    TimerState state = TimerState::kIdle;
    SYSTEMTIME start{};
    std::uint32_t elapsed = 0;  // seconds counted while recording
    std::vector<std::uint8_t> note;
};

class EntryTimerSet {
  public:
    static constexpr int kCount = 4;

    EntryTimer& timer(int index) { return timers_[static_cast<std::size_t>(index)]; }
    const EntryTimer& timer(int index) const { return timers_[static_cast<std::size_t>(index)]; }

    // One tick of the one-second timer at local time `now`; answers the
    // indexes of the recording timers, which the window redraws.
    std::vector<int> tick(FILETIME now);

    void record(int index, const SYSTEMTIME& now);
    // Paused becomes recording; anything else becomes paused.
    void pause(int index);
    void complete(int index, std::vector<std::uint8_t> note);
    void reset(int index);
    bool anyActive() const;

  private:
    std::array<EntryTimer, kCount> timers_;
    FILETIME previousTick_ = 0;
};

// "%02ld:%02ld:%02ld" of the elapsed seconds; the hours do not wrap.
std::u16string timerClockText(std::uint32_t elapsed);

// The new entry a completed timer becomes: the defaults of a new entry, the
// timer's start as date and start time, its time through the duration
// rule, its note. Time beyond the longest duration (655.35 hours) is
// refused with kDurationRangeMessage and `entry` is left alone; the timer
// keeps its time.
FormResult entryFromTimer(const EntryTimer& timer, const Settings& settings,
                          const SYSTEMTIME& today, TimeEntry& entry);

}  // namespace qb
