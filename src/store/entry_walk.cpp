#include "store/entry_walk.h"

#include "store/record_props.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

namespace {

// The walk's next entry, if it lies within the range. Records without a
// date sort after every dated one, so the first of them ends the walk: such
// a record belongs to no period.
bool readWithin(EntryTable& table, FILETIME end, TimeEntry& entry) {
    bool dated = false;
    return readEntry(table, entry, &dated) == 0 && dated && entry.date <= end;
}

}  // namespace

long walkEntries(EntryTable& table, FILETIME start, FILETIME end,
                 const std::function<bool(const TimeEntry&)>& visit) {
    long visited = 0;
    TimeEntry entry;
    for (bool found = table.seekAfter(CEPROPVAL::fileTime(kPropDate, start)); found;
         found = table.seekNext()) {
        if (!readWithin(table, end, entry)) break;
        ++visited;
        if (!visit(entry)) break;
    }
    return visited;
}

long walkAndDelete(EntryTable& table, FILETIME start, FILETIME end,
                   const std::function<bool(const TimeEntry&)>& visit) {
    long deleted = 0;
    CEOID pending = 0;
    TimeEntry entry;
    for (bool found = table.seekAfter(CEPROPVAL::fileTime(kPropDate, start)); found;) {
        if (!readWithin(table, end, entry)) break;
        CEOID current = entry.recordOid;
        bool doomed = visit(entry);
        found = table.seekNext();
        if (pending != 0 && table.remove(pending)) ++deleted;
        pending = doomed ? current : 0;
    }
    if (pending != 0 && table.remove(pending)) ++deleted;
    return deleted;
}

}  // namespace qb
