#pragma once

// Replace Field Text: renames a text in the master data and in every entry
// whose field holds exactly that text.

#include <string>
#include <string_view>
#include <vector>

#include "store/tables.h"

namespace qb {

class DataFile;
class EntryTable;

// The "Type:" choices, in the order of the drop-down.
enum class ReplaceField {
    kClient = 0,
    kProject = 1,
    kPhase = 2,
    kTask = 3,
    kCurrency = 4,
    kBillTo = 5,
    kCustom1 = 6,
    kCustom2 = 7,
    kCustom3 = 8,
    kProjectTask = 9,
};
inline constexpr int kReplaceFieldCount = 10;

std::u16string_view replaceFieldText(ReplaceField field);

inline constexpr std::u16string_view kReplaceQuestion =
    u"Are you sure to replace the text? Depending of the number of time entries, this may take "
    u"several minutes.";
inline constexpr std::u16string_view kUpdatingRecordsText = u"Updating Records. Please Wait...";
// "Replace With:" takes this many characters.
inline constexpr std::size_t kReplacementLimit = 127;

// OK of the dialog. Both refusals show a box whose text is empty: the
// string table's "Please select a string to search for." and "Please enter
// a string to replace with." are never shown, and the first item of "Find:"
// can never be chosen. Both quirks are kept.
enum class ReplaceCheck { kOk, kFirstFindItem, kEmptyReplacement };
ReplaceCheck checkReplace(int findIndex, std::u16string_view replacement);
inline constexpr std::u16string_view kReplaceRefusalText = u"";

// What "Find:" lists for a field: the texts its master data or drop list
// holds, in table order, without repeats.
std::vector<std::u16string> findChoices(MasterTables& tables, ReplaceField field);

// The progress bar of the dialog.
class ReplaceProgress {
  public:
    virtual void setRange(long maximum) = 0;
    virtual void step() = 0;

  protected:
    ~ReplaceProgress() = default;
};

struct ReplaceResult {
    bool ok = false;
    long masterRenamed = 0;   // master records and list items renamed (or moved)
    long masterMerged = 0;    // records that went into the one already named so
    long entriesChanged = 0;  // entries rewritten
};

// Renames the master data of the field (whole texts, case-sensitive); where
// the replacement names a record already there, the renamed one merges into
// it: a client's projects, tasks, contacts and rates move to the client
// named so, and a project/task pair, task, contact or list item that would
// repeat one of the same client or list goes. Then it
// walks every entry: where the field equals `find` exactly it takes the
// replacement (cut to 127) and is written. The progress runs from 0 to the
// number of entries + 1: one step after the master data, one per entry.
// "Task" and "Project-Task" change the same entry field; "Task" renames
// tasks outside projects, "Project-Task" the tasks of project pairs.
// All of it is one transaction: a failed write leaves the store as it was
// and answers ok false.
ReplaceResult replaceFieldText(DataFile& file, EntryTable& entries, MasterTables& tables,
                               ReplaceField field, const std::u16string& find,
                               const std::u16string& replacement, ReplaceProgress* progress);

}  // namespace qb
