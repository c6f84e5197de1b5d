#pragma once

// Undo and redo of the main window's changes to entries (edit, delete,
// Mark As Paid, copy, new entry). A command is bracketed by a snapshot
// before and a comparison after; what changed becomes one step. A deleted
// entry comes back as a new record with every property it had, so only its
// identifier differs.

#include <optional>
#include <string>
#include <vector>

#include "platform/win_types.h"
#include "store/time_entry.h"

namespace qb {

class EntryTable;

// Every stored property of the record `id`, as read; empty when there is
// no such record.
std::vector<CEPROPVAL> recordProperties(EntryTable& table, CEOID id);
// Adds a record holding exactly these properties; answers its id, 0 when
// the store refuses.
CEOID readdRecord(EntryTable& table, const std::vector<CEPROPVAL>& properties);

// One entry's part of a step: the record before and after the command.
// Only `before` is set for a deleted entry, only `after` for a new one.
struct EntryChange {
    std::optional<TimeEntry> before;
    std::optional<TimeEntry> after;
    // The whole record of a deleted or added entry, to bring it back.
    std::vector<CEPROPVAL> record;
};

struct UndoStep {
    std::u16string name;  // "Edit", "Delete", ...: the menu says "Undo Edit"
    std::vector<EntryChange> changes;
};

// What a command may change, taken before it runs: the ids of every entry,
// and the selected entry's record.
struct EntrySnapshot {
    std::vector<CEOID> ids;  // sorted
    CEOID watched = 0;
    std::optional<TimeEntry> entry;
    std::vector<CEPROPVAL> record;
};
EntrySnapshot takeSnapshot(EntryTable& table, CEOID watched);
// The step from the snapshot to the table as it is now: entries added since,
// and the watched entry changed or deleted. No changes: an empty step.
UndoStep compareWithSnapshot(EntryTable& table, const EntrySnapshot& before, std::u16string name);

class EntryUndo {
  public:
    // Keeps a step with changes; a new step drops whatever could be redone.
    void push(UndoStep step);
    bool canUndo() const { return !undo_.empty(); }
    bool canRedo() const { return !redo_.empty(); }
    std::u16string undoName() const { return canUndo() ? undo_.back().name : u""; }
    std::u16string redoName() const { return canRedo() ? redo_.back().name : u""; }
    // Applies the last step backwards (forwards). False when a record the
    // step needs is gone (changed elsewhere meanwhile): the step is dropped
    // and the history cleared, since the steps behind it no longer fit.
    bool undo(EntryTable& table);
    bool redo(EntryTable& table);
    void clear();
    // Entry ids the last undo or redo left standing for the step's entries
    // (new ids of entries brought back), to select one.
    const std::vector<CEOID>& touched() const { return touched_; }

  private:
    bool apply(EntryTable& table, UndoStep& step, bool backwards);

    std::vector<UndoStep> undo_;
    std::vector<UndoStep> redo_;
    std::vector<CEOID> touched_;
};

}  // namespace qb
