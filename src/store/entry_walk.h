#pragma once

// The walk of entries by date that every period, summary, export, report and
// archive uses: both bounds inclusive, in date order.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

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

// What a file makes of its entries: the bytes of each, one writer for each
// thread that makes them.
class EntryBytes {
  public:
    virtual ~EntryBytes() = default;
    // Appends the file's bytes of `entry` to `out` (none for an entry the
    // file leaves out).
    virtual void append(const TimeEntry& entry, std::string& out) = 0;
};
using MakeEntryBytes = std::function<std::unique_ptr<EntryBytes>()>;

// The walk of walkEntriesReadingAhead for a file of entries: the bytes the
// writers make of the entries go to `take` in date order, in pieces of many
// entries, until it answers false. The reading thread makes the bytes of
// some entries itself, with a writer of its own, whenever the caller's
// thread falls behind, so that reading and making share the two threads.
void writeEntriesReadingAhead(EntryTable& table, FILETIME start, FILETIME end,
                              const MakeEntryBytes& make,
                              const std::function<bool(std::string_view bytes)>& take);

// As walkEntries, deleting each entry for which `visit` answers true. The
// cursor moves on before a record is deleted, so it never stands on a
// deleted record. Answers the number deleted.
long walkAndDelete(EntryTable& table, FILETIME start, FILETIME end,
                   const std::function<bool(const TimeEntry&)>& visit);

}  // namespace qb
