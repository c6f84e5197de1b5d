#pragma once

// The four entry timers as records of their own property database, so that
// a running timer outlives the process and every face of the program (the
// desktop and the command line) drives the same four.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/win_types.h"
#include "store/property_table.h"

namespace qb {

enum class TimerState : std::uint32_t { kIdle = 0, kRecording = 1, kPaused = 2, kComplete = 3 };

struct EntryTimer {
    TimerState state = TimerState::kIdle;
    // The moment "Record" was pressed (local time).
    SYSTEMTIME start{};
    // Seconds counted while recording, up to `resumed`.
    std::uint32_t elapsed = 0;
    // While recording: the moment the counting last began (Record, or the
    // resume after a pause); 0 otherwise. Keeping the moment rather than a
    // running count is what lets the time go on counting while no process
    // runs.
    FILETIME resumed = 0;
    // The note (UTF-16LE text); empty means none.
    std::vector<std::uint8_t> note;
    // What the entry made from the timer starts with; may be empty.
    std::u16string client;
    std::u16string project;
    std::u16string task;

    bool operator==(const EntryTimer& other) const;
};

inline constexpr int kTimerCount = 4;
using EntryTimers = std::array<EntryTimer, kTimerCount>;

// One record per timer, found by its slot (0-3). A slot without a record is
// an idle timer, so a store that has never held a timer reads as four idle
// ones.
class TimerTable : public PropertyTable {
  public:
    using PropertyTable::PropertyTable;

    // Reads the four timers; false when a stored record cannot be read.
    bool readTimers(EntryTimers* out);
    // Writes one timer over its slot's record (adding it the first time).
    bool writeTimer(int slot, const EntryTimer& timer);

  protected:
    TableCatalogue catalogue() const override;
};

}  // namespace qb
