#include "entry/mark_paid.h"

#include "platform/data_file.h"
#include "store/entry_walk.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

MarkPaidResult markPaidEntries(DataFile& file, EntryTable& entries, FILETIME start, FILETIME end,
                               const std::function<bool(const TimeEntry&)>& accepts) {
    MarkPaidResult result;
    if (!file.beginBatch()) return result;
    // One transaction: a crash leaves every entry marked or none.
    bool ok = true;
    walkEntries(entries, start, end, [&](const TimeEntry& stored) {
        if (!accepts(stored)) return true;
        TimeEntry entry = stored;
        bool marks = entry.billable && !entry.paid;
        if (marks) entry.paid = true;
        if (!updateEntry(entries, entry)) {
            ok = false;
            return false;
        }
        ++result.written;
        if (marks) ++result.marked;
        return true;
    });
    if (!ok) {
        file.rollbackBatch();
        return result;
    }
    result.ok = file.commitBatch();
    return result;
}

}  // namespace qb
