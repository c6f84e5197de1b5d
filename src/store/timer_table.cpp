#include "store/timer_table.h"

#include "platform/calendar.h"
#include "store/record_props.h"

namespace qb {
namespace {

bool sameTime(const SYSTEMTIME& a, const SYSTEMTIME& b) {
    return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDay == b.wDay && a.wHour == b.wHour &&
           a.wMinute == b.wMinute && a.wSecond == b.wSecond && a.wMilliseconds == b.wMilliseconds;
}

std::vector<CEPROPVAL> timerValues(int slot, const EntryTimer& t) {
    FILETIME start = 0;
    if (t.state != TimerState::kIdle) systemTimeToFileTime(t.start, &start);
    return {CEPROPVAL::ui2(kPropTimerSlot, static_cast<std::uint16_t>(slot)),
            CEPROPVAL::ui4(kPropTimerState, static_cast<std::uint32_t>(t.state)),
            CEPROPVAL::fileTime(kPropTimerStart, start),
            CEPROPVAL::ui4(kPropTimerElapsed, t.elapsed),
            CEPROPVAL::fileTime(kPropTimerResumed, t.resumed),
            CEPROPVAL::blobOf(kPropNotes, t.note),
            CEPROPVAL::wstr(kPropClient, t.client),
            CEPROPVAL::wstr(kPropProject, t.project),
            CEPROPVAL::wstr(kPropTask, t.task)};
}

// A record from another version may carry a state this one does not know;
// such a timer reads as idle rather than in a state no button leaves.
TimerState stateOf(std::uint64_t value) {
    return value <= static_cast<std::uint32_t>(TimerState::kComplete)
               ? static_cast<TimerState>(value)
               : TimerState::kIdle;
}

}  // namespace

bool EntryTimer::operator==(const EntryTimer& o) const {
    return state == o.state && sameTime(start, o.start) && elapsed == o.elapsed &&
           resumed == o.resumed && note == o.note && client == o.client && project == o.project &&
           task == o.task;
}

TableCatalogue TimerTable::catalogue() const {
    return TableCatalogue{u"Quillarbor Timers", 79990013, {kTimerSlotSort}};
}

bool TimerTable::readTimers(EntryTimers* out) {
    out->fill(EntryTimer());
    std::vector<CEPROPVAL> props;
    for (bool found = seekFirst(); found; found = seekNext()) {
        if (readAll(&props) != 0) return false;
        EntryTimer t;
        int slot = -1;
        for (const CEPROPVAL& p : props) {
            switch (p.number()) {
                case kPropTimerSlot:
                    slot = static_cast<int>(p.num);
                    break;
                case kPropTimerState:
                    t.state = stateOf(p.num);
                    break;
                case kPropTimerStart:
                    if (p.num != 0) fileTimeToSystemTime(p.num, &t.start);
                    break;
                case kPropTimerElapsed:
                    t.elapsed = static_cast<std::uint32_t>(p.num);
                    break;
                case kPropTimerResumed:
                    t.resumed = p.num;
                    break;
                case kPropNotes:
                    t.note = p.blob;
                    break;
                case kPropClient:
                    t.client = p.str;
                    break;
                case kPropProject:
                    t.project = p.str;
                    break;
                case kPropTask:
                    t.task = p.str;
                    break;
                default:
                    break;
            }
        }
        if (slot >= 0 && slot < kTimerCount) (*out)[static_cast<std::size_t>(slot)] = std::move(t);
    }
    return true;
}

bool TimerTable::writeTimer(int slot, const EntryTimer& timer) {
    if (slot < 0 || slot >= kTimerCount) return false;
    std::vector<CEPROPVAL> values = timerValues(slot, timer);
    if (seekEqual(values.front())) return update(values);
    return add(values);
}

}  // namespace qb
