#include "store/entry_walk.h"

#include "store/record_props.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

long walkEntries(EntryTable& table, FILETIME start, FILETIME end,
                 const std::function<bool(const TimeEntry&)>& visit) {
    long visited = 0;
    TimeEntry entry;
    for (bool found = table.seekAfter(CEPROPVAL::fileTime(kPropDate, start)); found;
         found = table.seekNext()) {
        if (readEntry(table, entry) != 0 || entry.date > end) break;
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
        if (readEntry(table, entry) != 0 || entry.date > end) break;
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
