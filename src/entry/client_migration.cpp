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

}  // namespace

MigrationResult migrateProjects(DataFile& file, MasterTables& tables, ClientId from, ClientId to,
                                const std::vector<std::u16string>& projects) {
    return inBatch(file, from, to, [&](MigrationResult& r) {
        std::vector<ProjectRecord> held = projectsOf(tables.projects, to);
        for (const ProjectRecord& pair : projectsOf(tables.projects, from)) {
            if (!listed(projects, pair.project)) continue;
            bool present = std::any_of(held.begin(), held.end(), [&](const ProjectRecord& h) {
                return h.project == pair.project && h.task == pair.task;
            });
            if (present) {
                if (!tables.projects.remove(pair.oid)) return false;
                ++r.merged;
            } else {
                if (!reown(tables.projects, pair.oid, to)) return false;
                ++r.moved;
            }
        }
        return true;
    });
}

MigrationResult migrateTasks(DataFile& file, MasterTables& tables, ClientId from, ClientId to,
                             const std::vector<std::u16string>& tasks) {
    return inBatch(file, from, to, [&](MigrationResult& r) {
        std::vector<NamedRecord> held = namesOf(tables.tasks, to);
        for (const NamedRecord& task : namesOf(tables.tasks, from)) {
            if (!listed(tasks, task.name)) continue;
            bool present = std::any_of(held.begin(), held.end(),
                                       [&](const NamedRecord& h) { return h.name == task.name; });
            if (present) {
                if (!tables.tasks.remove(task.oid)) return false;
                ++r.merged;
            } else {
                if (!reown(tables.tasks, task.oid, to)) return false;
                ++r.moved;
            }
        }
        return true;
    });
}

}  // namespace qb
