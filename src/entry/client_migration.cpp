#include "entry/client_migration.h"

#include <algorithm>

#include "platform/data_file.h"
#include "store/record_props.h"
#include "store/tables.h"

namespace qb {
namespace {

bool listed(const std::vector<std::u16string>& names, const std::u16string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool reown(PropertyTable& table, CEOID oid, ClientId to) {
    return table.seekOid(oid) && table.update({CEPROPVAL::ui4(kPropClientId, to)});
}

template <typename Move>
MigrationResult inBatch(DataFile& file, ClientId from, ClientId to, Move move) {
    MigrationResult result;
    if (from == to) {
        result.ok = true;
        return result;
    }
    if (!file.beginBatch()) return result;
    if (!move(result)) {
        file.rollbackBatch();
        return MigrationResult();
    }
    result.ok = file.commitBatch();
    if (!result.ok) return MigrationResult();
    return result;
}

// A record the target holds already goes; any other changes owner.
bool moveOrDrop(PropertyTable& table, CEOID oid, bool present, ClientId to, MigrationResult& r) {
    if (present) {
        if (!table.remove(oid)) return false;
        ++r.merged;
        return true;
    }
    if (!reown(table, oid, to)) return false;
    ++r.moved;
    return true;
}

// Moves the client's pairs that `keep` names; a pair the target holds
// already is dropped instead.
template <typename Keep>
bool moveProjects(MasterTables& tables, ClientId from, ClientId to, Keep keep, MigrationResult& r) {
    std::vector<ProjectRecord> held = projectsOf(tables.projects, to);
    for (const ProjectRecord& pair : projectsOf(tables.projects, from)) {
        if (!keep(pair.project)) continue;
        bool present = std::any_of(held.begin(), held.end(), [&](const ProjectRecord& h) {
            return h.project == pair.project && h.task == pair.task;
        });
        if (!moveOrDrop(tables.projects, pair.oid, present, to, r)) return false;
    }
    return true;
}

// The same for tasks outside projects or contacts: one name each.
template <typename Keep>
bool moveNamed(PropertyTable& table, ClientId from, ClientId to, Keep keep, MigrationResult& r) {
    std::vector<NamedRecord> held = namesOf(table, to);
    for (const NamedRecord& named : namesOf(table, from)) {
        if (!keep(named.name)) continue;
        bool present = std::any_of(held.begin(), held.end(),
                                   [&](const NamedRecord& h) { return h.name == named.name; });
        if (!moveOrDrop(table, named.oid, present, to, r)) return false;
    }
    return true;
}

// Rates: one the target holds with the same description, type, value and
// flag is a repeat.
bool moveRates(RateTable& table, ClientId from, ClientId to, MigrationResult& r) {
    std::vector<RateRecord> held = ratesOf(table, to);
    for (const RateRecord& rate : ratesOf(table, from)) {
        bool present = std::any_of(held.begin(), held.end(), [&](const RateRecord& h) {
            return h.description == rate.description && h.rateType == rate.rateType &&
                   h.rate == rate.rate && h.flag == rate.flag;
        });
        if (!moveOrDrop(table, rate.oid, present, to, r)) return false;
    }
    return true;
}

}  // namespace

MigrationResult migrateProjects(DataFile& file, MasterTables& tables, ClientId from, ClientId to,
                                const std::vector<std::u16string>& projects) {
    return inBatch(file, from, to, [&](MigrationResult& r) {
        return moveProjects(
            tables, from, to, [&](const std::u16string& p) { return listed(projects, p); }, r);
    });
}

MigrationResult migrateTasks(DataFile& file, MasterTables& tables, ClientId from, ClientId to,
                             const std::vector<std::u16string>& tasks) {
    return inBatch(file, from, to, [&](MigrationResult& r) {
        return moveNamed(
            tables.tasks, from, to, [&](const std::u16string& t) { return listed(tasks, t); }, r);
    });
}

bool mergeClientRecords(MasterTables& tables, ClientId from, ClientId to, MigrationResult* result) {
    if (from == to) return true;
    const auto all = [](const std::u16string&) { return true; };
    return moveProjects(tables, from, to, all, *result) &&
           moveNamed(tables.tasks, from, to, all, *result) &&
           moveNamed(tables.contacts, from, to, all, *result) &&
           moveRates(tables.rates, from, to, *result);
}

}  // namespace qb
