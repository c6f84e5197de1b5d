#include "entry/entry_undo.h"

#include <algorithm>

#include "store/tables.h"

namespace qb {
namespace {

// The fields an entry shows and the editor writes; the id is not compared.
bool sameEntry(const TimeEntry& a, const TimeEntry& b) {
    return a.billable == b.billable && a.paid == b.paid && a.client == b.client &&
           a.project == b.project && a.phase == b.phase && a.task == b.task &&
           a.currency == b.currency && a.billTo == b.billTo && a.custom1 == b.custom1 &&
           a.custom2 == b.custom2 && a.custom3 == b.custom3 && a.rateType == b.rateType &&
           a.date == b.date && a.notes == b.notes && a.duration == b.duration && a.rate == b.rate;
}

std::optional<TimeEntry> readOid(EntryTable& table, CEOID id) {
    TimeEntry e;
    if (id == 0 || !table.seekOid(id) || readEntry(table, e) != 0) return std::nullopt;
    e.recordOid = id;
    return e;
}

constexpr std::size_t kMostSteps = 100;

}  // namespace

std::vector<CEPROPVAL> recordProperties(EntryTable& table, CEOID id) {
    std::vector<CEPROPVAL> values;
    if (id == 0 || !table.seekOid(id) || table.readAll(&values) != 0) values.clear();
    return values;
}

CEOID readdRecord(EntryTable& table, const std::vector<CEPROPVAL>& properties) {
    if (properties.empty() || !table.add(properties)) return 0;
    return table.currentOid();
}

EntrySnapshot takeSnapshot(EntryTable& table, CEOID watched) {
    EntrySnapshot s;
    if (table.seekFirst()) {
        do {
            s.ids.push_back(table.currentOid());
        } while (table.seekNext());
    }
    std::sort(s.ids.begin(), s.ids.end());
    s.watched = watched;
    s.entry = readOid(table, watched);
    if (s.entry) s.record = recordProperties(table, watched);
    return s;
}

UndoStep compareWithSnapshot(EntryTable& table, const EntrySnapshot& before, std::u16string name) {
    UndoStep step{std::move(name), {}};
    if (before.entry) {
        std::optional<TimeEntry> now = readOid(table, before.watched);
        if (!now) {
            step.changes.push_back({before.entry, std::nullopt, before.record});
        } else if (!sameEntry(*now, *before.entry)) {
            step.changes.push_back({before.entry, now, {}});
        }
    }
    std::vector<CEOID> added;
    if (table.seekFirst()) {
        do {
            CEOID id = table.currentOid();
            if (!std::binary_search(before.ids.begin(), before.ids.end(), id)) added.push_back(id);
        } while (table.seekNext());
    }
    for (CEOID id : added) {
        std::optional<TimeEntry> e = readOid(table, id);
        if (e) step.changes.push_back({std::nullopt, e, recordProperties(table, id)});
    }
    return step;
}

void EntryUndo::push(UndoStep step) {
    if (step.changes.empty()) return;
    undo_.push_back(std::move(step));
    if (undo_.size() > kMostSteps) undo_.erase(undo_.begin());
    redo_.clear();
}

void EntryUndo::clear() {
    undo_.clear();
    redo_.clear();
}

bool EntryUndo::undo(EntryTable& table) {
    if (undo_.empty()) return false;
    UndoStep step = std::move(undo_.back());
    undo_.pop_back();
    if (!apply(table, step, true)) {
        clear();
        return false;
    }
    redo_.push_back(std::move(step));
    return true;
}

bool EntryUndo::redo(EntryTable& table) {
    if (redo_.empty()) return false;
    UndoStep step = std::move(redo_.back());
    redo_.pop_back();
    if (!apply(table, step, false)) {
        clear();
        return false;
    }
    undo_.push_back(std::move(step));
    return true;
}

// Going backwards, `after` is what the table holds and `before` what it
// should hold again; forwards the other way round. An entry brought back
// gets a new id, which the step then remembers for the way back.
bool EntryUndo::apply(EntryTable& table, UndoStep& step, bool backwards) {
    touched_.clear();
    bool ok = true;
    for (EntryChange& c : step.changes) {
        std::optional<TimeEntry>& from = backwards ? c.after : c.before;
        std::optional<TimeEntry>& to = backwards ? c.before : c.after;
        if (from && to) {
            TimeEntry target = *to;
            target.recordOid = from->recordOid;
            if (!table.seekOid(from->recordOid) || !updateEntry(table, target)) {
                ok = false;
                continue;
            }
            to->recordOid = from->recordOid;
            touched_.push_back(from->recordOid);
        } else if (from) {
            // Keep the record as it stands now, so it comes back the same.
            std::vector<CEPROPVAL> current = recordProperties(table, from->recordOid);
            if (current.empty() || !table.remove(from->recordOid)) {
                ok = false;
                continue;
            }
            c.record = std::move(current);
        } else if (to) {
            CEOID id = readdRecord(table, c.record);
            if (id == 0) {
                ok = false;
                continue;
            }
            to->recordOid = id;
            touched_.push_back(id);
        }
    }
    return ok;
}

}  // namespace qb
