#include "entry/entry_timers.h"

#include "app/settings.h"
#include "entry/duration_rule.h"
#include "entry/entry_form.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/time_entry.h"

namespace qb {

std::vector<int> EntryTimerSet::tick(FILETIME now) {
    if (previousTick_ == 0) previousTick_ = now;
    std::int64_t delta =
        (static_cast<std::int64_t>(now) - static_cast<std::int64_t>(previousTick_)) / 10000000;
    std::vector<int> ticked;
    for (int i = 0; i < kCount; ++i) {
        EntryTimer& t = timer(i);
        if (t.state != TimerState::kRecording) continue;
        // A tick never adds nothing, even when the clock has not moved on.
        t.elapsed += delta == 0 ? 1u : static_cast<std::uint32_t>(delta);
        ticked.push_back(i);
    }
    previousTick_ = now;
    return ticked;
}

void EntryTimerSet::record(int index, const SYSTEMTIME& now) {
    EntryTimer& t = timer(index);
    t.start = now;
    t.state = TimerState::kRecording;
}

void EntryTimerSet::pause(int index) {
    EntryTimer& t = timer(index);
    t.state = t.state == TimerState::kPaused ? TimerState::kRecording : TimerState::kPaused;
}

void EntryTimerSet::complete(int index, std::vector<std::uint8_t> note) {
    EntryTimer& t = timer(index);
    t.state = TimerState::kComplete;
    t.note = std::move(note);
}

void EntryTimerSet::reset(int index) {
    timer(index) = EntryTimer();
}

bool EntryTimerSet::anyActive() const {
    for (const EntryTimer& t : timers_) {
        if (t.state != TimerState::kIdle) return true;
    }
    return false;
}

std::u16string timerClockText(std::uint32_t elapsed) {
    long e = static_cast<long>(elapsed);
    return utf8ToUtf16(stringPrintf("%02ld:%02ld:%02ld", e / 3600, (e / 60) % 60, e % 60));
}

FormResult entryFromTimer(const EntryTimer& timer, const Settings& settings,
                          const SYSTEMTIME& today, TimeEntry& entry) {
    const std::optional<std::uint16_t> duration = durationFromSeconds(timer.elapsed, settings);
    if (!duration) return {false, kDurationRangeMessage, FormField::kDuration};
    entry = prepareEntry(nullptr, settings, today);
    setEntryDay(entry, timer.start);
    setStartTime(entry, timer.start);
    entry.duration = *duration;
    entry.notes = timer.note;
    return {};
}

}  // namespace qb
