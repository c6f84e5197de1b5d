#include "store/entry_save.h"

#include "platform/data_file.h"
#include "store/master_data.h"
#include "store/tables.h"

namespace qb {

EntrySave saveEditedEntry(DataFile& file, EntryTable& entries, MasterTables& masters,
                          TimeEntry& entry, bool learn) {
    if (!file.beginBatch()) return EntrySave::kNotStarted;
    // A new entry gets its id while the batch is open; a rollback takes the
    // record away again, so the id must go too or a second try would update
    // a record that does not exist.
    const CEOID before = entry.recordOid;
    if (saveEntry(entries, entry)) {
        if (learn) registerMasterData(masters, entry);
        if (file.commitBatch()) return EntrySave::kSaved;
    } else {
        file.rollbackBatch();
    }
    entry.recordOid = before;
    return EntrySave::kNotSaved;
}

}  // namespace qb
