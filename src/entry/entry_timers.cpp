#include "entry/entry_timers.h"

#include <limits>

#include "app/settings.h"
#include "entry/duration_rule.h"
#include "entry/entry_form.h"
#include "entry/note_text.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/time_entry.h"

namespace qb {
namespace {

constexpr std::int64_t kTicksPerSecond = 10000000;
constexpr std::uint32_t kMostSeconds = std::numeric_limits<std::uint32_t>::max();

// Whole seconds from `from` to `to`; nothing when the span runs backwards.
std::uint64_t secondsBetween(FILETIME from, FILETIME to) {
    return to > from ? (to - from) / kTicksPerSecond : 0;
}

std::uint32_t cappedSum(std::uint32_t counted, std::uint64_t more) {
    std::uint64_t sum = counted + more;
    return sum > kMostSeconds ? kMostSeconds : static_cast<std::uint32_t>(sum);
}

// Stops the counting at `at`: what was counted up to then goes into the
// stored seconds.
void fold(EntryTimer& t, FILETIME at) {
    t.elapsed = timerElapsed(t, at);
    t.resumed = 0;
}

}  // namespace

std::uint32_t timerElapsed(const EntryTimer& timer, FILETIME now) {
    if (timer.state != TimerState::kRecording || timer.resumed == 0) return timer.elapsed;
    return cappedSum(timer.elapsed, secondsBetween(timer.resumed, now));
}

std::vector<int> EntryTimerSet::tick(FILETIME now, std::vector<int>* rebased) {
    std::vector<int> ticked;
    for (int i = 0; i < kCount; ++i) {
        EntryTimer& t = timer(i);
        if (t.state != TimerState::kRecording) continue;
        if (now < t.resumed || (previousTick_ != 0 && now < previousTick_)) {
            // Counted up to the previous tick, but never from before the
            // moment the timer began counting.
            fold(t, previousTick_ > t.resumed ? previousTick_ : t.resumed);
            t.resumed = now;
            if (rebased) rebased->push_back(i);
        }
        ticked.push_back(i);
    }
    previousTick_ = now;
    return ticked;
}

bool EntryTimerSet::record(int index, FILETIME now) {
    EntryTimer& t = timer(index);
    SYSTEMTIME start;
    if (t.state != TimerState::kIdle || !fileTimeToSystemTime(now, &start)) return false;
    t.start = start;
    t.elapsed = 0;
    t.resumed = now;
    t.state = TimerState::kRecording;
    return true;
}

bool EntryTimerSet::pause(int index, FILETIME now) {
    EntryTimer& t = timer(index);
    switch (t.state) {
        case TimerState::kRecording:
            fold(t, now);
            t.state = TimerState::kPaused;
            return true;
        case TimerState::kPaused:
            t.resumed = now;
            t.state = TimerState::kRecording;
            return true;
        case TimerState::kComplete:
            // Its entry was not made (refused, or the program ended while
            // the editor was open): the timer waits, paused, with its time.
            t.state = TimerState::kPaused;
            return true;
        case TimerState::kIdle:
            break;
    }
    return false;
}

bool EntryTimerSet::complete(int index, std::vector<std::uint8_t> note, FILETIME now) {
    EntryTimer& t = timer(index);
    if (t.state == TimerState::kIdle) return false;
    fold(t, now);
    t.state = TimerState::kComplete;
    t.note = std::move(note);
    return true;
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

bool EntryTimerSet::anyRecording() const {
    for (const EntryTimer& t : timers_) {
        if (t.state == TimerState::kRecording) return true;
    }
    return false;
}

bool EntryTimerSet::load(TimerTable& table) {
    EntryTimers stored;
    if (!table.readTimers(&stored)) return false;
    timers_ = std::move(stored);
    return true;
}

bool EntryTimerSet::save(TimerTable& table, int index) const {
    return table.writeTimer(index, timer(index));
}

EntryTimerSet::Update EntryTimerSet::update(TimerTable& table, int index,
                                            const std::function<bool(EntryTimerSet&)>& change) {
    DataFile& file = table.platform().file();
    if (!file.beginBatch()) return Update::kFailed;
    if (!load(table)) {
        file.rollbackBatch();
        return Update::kFailed;
    }
    if (!change(*this)) {
        file.rollbackBatch();
        return Update::kRefused;
    }
    if (!save(table, index) || !file.commitBatch()) {
        file.rollbackBatch();
        load(table);
        return Update::kFailed;
    }
    return Update::kDone;
}

std::u16string timerClockText(std::uint32_t elapsed) {
    long e = static_cast<long>(elapsed);
    return utf8ToUtf16(stringPrintf("%02ld:%02ld:%02ld", e / 3600, (e / 60) % 60, e % 60));
}

std::u16string_view timerStateName(TimerState state) {
    switch (state) {
        case TimerState::kRecording:
            return u"recording";
        case TimerState::kPaused:
            return u"paused";
        case TimerState::kComplete:
            return u"complete";
        case TimerState::kIdle:
            break;
    }
    return u"idle";
}

std::u16string timerName(int index) {
    return utf8ToUtf16(stringPrintf("Timer %d", index + 1));
}

std::u16string timerSubject(const EntryTimer& timer) {
    if (!timer.client.empty()) return timer.client;
    std::u16string note = noteText(timer.note);
    std::size_t end = note.find_first_of(u"\r\n");
    return end == std::u16string::npos ? note : note.substr(0, end);
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
    entry.client = timer.client;
    entry.project = timer.project;
    entry.task = timer.task;
    return {};
}

bool resetAsks(const EntryTimer& timer) {
    return timer.state != TimerState::kIdle;
}

}  // namespace qb
