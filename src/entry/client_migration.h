#pragma once

// Moving projects or tasks from one client to another ("Check Projects to
// migrate:", "Check Tasks to migrate:"). See docs/client_setup.md.

#include <string>
#include <string_view>
#include <vector>

#include "store/master_data.h"

namespace qb {

class DataFile;

inline constexpr std::u16string_view kMigrateProjectsPrompt = u"Check Projects to migrate:";
inline constexpr std::u16string_view kMigrateTasksPrompt = u"Check Tasks to migrate:";

struct MigrationResult {
    bool ok = false;
    std::size_t moved = 0;   // records that now belong to the target client
    std::size_t merged = 0;  // records dropped because the target had them
};

// Moves every pair of each named project to client `to`. A pair the target
// already holds is not duplicated: the source's record goes. Time entries,
// rates and contacts stay as they are. Nothing moves when `from` equals `to`.
// One batch: all or nothing.
MigrationResult migrateProjects(DataFile& file, MasterTables& tables, ClientId from, ClientId to,
                                const std::vector<std::u16string>& projects);

// The same for tasks outside projects (the "Tasks" group).
MigrationResult migrateTasks(DataFile& file, MasterTables& tables, ClientId from, ClientId to,
                             const std::vector<std::u16string>& tasks);

// Moves every project, task, contact and rate of client `from` to `to`, as
// the migrations do: what the target holds already goes instead of being
// repeated. Opens no batch of its own; the caller's batch holds it.
bool mergeClientRecords(MasterTables& tables, ClientId from, ClientId to, MigrationResult* result);

}  // namespace qb
