#pragma once

// The walk of entries by date that every period, summary, export, report and
// archive uses: both bounds inclusive, in date order.

#include <functional>

#include "platform/win_types.h"

namespace qb {

class EntryTable;
struct TimeEntry;

// Calls `visit` for each entry with start <= date <= end until it answers
// false. Answers the number of entries visited.
long walkEntries(EntryTable& table, FILETIME start, FILETIME end,
                 const std::function<bool(const TimeEntry&)>& visit);

// As walkEntries, for a walk whose visitor only reads: the records are read
// on a second connection, in a thread of its own, ahead of the visits, so
// that the file is read while the entries are used. The visitor must not
// write to the store. Where a second connection cannot see what this one
// sees (an in-memory store, a batch open) it is walkEntries.
long walkEntriesReadingAhead(EntryTable& table, FILETIME start, FILETIME end,
                             const std::function<bool(const TimeEntry&)>& visit);

// As walkEntries, deleting each entry for which `visit` answers true. The
// cursor moves on before a record is deleted, so it never stands on a
// deleted record. Answers the number deleted.
long walkAndDelete(EntryTable& table, FILETIME start, FILETIME end,
                   const std::function<bool(const TimeEntry&)>& visit);

}  // namespace qb
