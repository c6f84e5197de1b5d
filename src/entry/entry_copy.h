#pragma once

// Copy...: copies of one entry on the following days. The day rule is in
// docs/client_setup.md ("Copy").

#include <optional>
#include <string>
#include <vector>

#include "app/settings.h"
#include "entry/entry_form.h"
#include "platform/win_types.h"
#include "store/time_entry.h"

namespace qb {

class DataFile;
class EntryTable;
struct MasterTables;

struct CopyRequest {
    // The "Duration:" box as typed.
    std::u16string duration;
    // "Specific end date:"; none for "Rest of the week".
    std::optional<SYSTEMTIME> until;
    bool includeWeekend = false;
};

// The days that get a copy: from the day after the entry's day up to and
// including the last day of its week (the week start of the options) or the
// chosen end date; Saturdays and Sundays only with includeWeekend. An end
// date not after the entry's day gives none.
std::vector<SYSTEMTIME> copyDays(const SYSTEMTIME& entryDay, const CopyRequest& request,
                                 const Settings& settings);

struct CopyResult {
    FormResult check;            // the Duration box's refusal, if any
    bool ok = false;             // the copies were written
    std::vector<CEOID> created;  // their record ids, in date order
};

// OK of the dialog: the duration must not be blank nor hold letters; it
// goes through the duration rule (a box still showing the entry's duration
// keeps it; one outside 0 to 655.35 hours is refused). Each copy takes every field of the entry
// but its record, its day (the time of day and the start-time mark stay)
// and its duration, and is saved as the editor saves (master data too), all
// in one batch.
CopyResult copyEntry(DataFile& file, EntryTable& entries, MasterTables& masters,
                     const TimeEntry& source, const CopyRequest& request, const Settings& settings);

}  // namespace qb
