#pragma once

// Saving an entry from the editor: the record and what the master data
// learns from it are committed together, so a crash never leaves an entry
// whose client the lists do not know.

#include "store/time_entry.h"

namespace qb {

class DataFile;
class EntryTable;
struct MasterTables;

enum class EntrySave {
    kSaved,
    kNotStarted,  // the data file would not open a batch; nothing written
    kNotSaved,    // the entry or the batch could not be written; rolled back
};

// Adds a new entry (recordOid becomes its id) or rewrites its record, then
// registers its client, project, task, contact and drop-list texts. On
// failure the entry keeps the record id it came with. A bulk add that
// knows the master data already learned these texts (an earlier entry of
// the same batch had them all) passes learn = false.
EntrySave saveEditedEntry(DataFile& file, EntryTable& entries, MasterTables& masters,
                          TimeEntry& entry, bool learn = true);

}  // namespace qb
