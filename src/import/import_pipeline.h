#pragma once

// The one way another tracker's rows become entries: read the rows, map
// each onto the entry editor's boxes, check it by the rules that OK of the
// editor applies (duration rule, rate rule), and add every accepted row with
// what the master data learns, in one transaction. One refused row and
// nothing of the file is added. A row already imported before is counted
// and left alone.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "app/settings.h"
#include "import/import_row.h"
#include "store/time_entry.h"

namespace qb {

class DataFile;
class EntryTable;
struct MasterTables;

struct ImportTarget {
    DataFile& file;
    EntryTable& entries;
    MasterTables& masters;
    const Settings& settings;
};

enum class RowFate { kAdded, kKnown, kRefused };

struct RowOutcome {
    std::size_t line = 0;
    RowFate fate = RowFate::kAdded;
    // The entry as it is (or would be) stored; for a refused row its day,
    // start, client, project and task as far as they were read.
    TimeEntry entry;
    std::string reason;  // why a row is refused
};

using RowObserver = std::function<void(const RowOutcome&)>;

enum class ImportStatus {
    kDone,        // everything accepted (and, unless a dry run, added)
    kRefused,     // some rows refused; nothing added
    kUnreadable,  // the file is not of the format; nothing added
    kFailed,      // the store could not be written; nothing added
};

struct ImportSummary {
    ImportStatus status = ImportStatus::kDone;
    std::size_t imported = 0;  // added (or, in a dry run, that would be)
    std::size_t already = 0;
    std::size_t refused = 0;
    ReadStatus read;  // why the file is unreadable
};

// Imports the file's bytes. A dry run checks every row the same way and
// writes nothing. `observe` sees every row in file order.
ImportSummary importFile(ImportFormat format, std::string_view bytes, const ImportOptions& options,
                         ImportTarget& target, bool dryRun, const RowObserver& observe);

// The summary line of the command line and the desktop:
// "imported N, already imported M, refused K".
std::string summaryLine(const ImportSummary& summary);

}  // namespace qb
