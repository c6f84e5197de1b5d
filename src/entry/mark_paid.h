#pragma once

// Mark Paid Entries: every entry of the criteria's date range that the
// criteria accept is written back, billable ones marked paid.

#include <functional>

#include "platform/win_types.h"

namespace qb {

class DataFile;
class EntryTable;
struct TimeEntry;

struct MarkPaidResult {
    bool ok = false;
    long written = 0;  // entries accepted and written back
    long marked = 0;   // of those, the ones that became paid
};

// Walks start..end in date order; an accepted entry that is billable and
// unpaid becomes paid, and every accepted entry is written, changed or not.
// (The criteria are the caller's: the filter dialog's rule lives above the
// entry work.) A failed batch stops the walk with ok false; batches
// committed before it stay.
MarkPaidResult markPaidEntries(DataFile& file, EntryTable& entries, FILETIME start, FILETIME end,
                               const std::function<bool(const TimeEntry&)>& accepts);

}  // namespace qb
