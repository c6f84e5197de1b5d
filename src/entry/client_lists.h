#pragma once

// Lists of master data in and out of the client setup: each imported line
// becomes a client, project, task or contact; Export List writes the names
// of one level of the tree.

#include <cstddef>
#include <string>
#include <vector>

#include "store/master_data.h"

namespace qb {

class DataFile;

enum class ListLevel { kClients = 0, kProjects = 1, kTasks = 2, kContacts = 3 };

// The selection an import or export works on: the client (for all but
// clients) and, for tasks, the project when a project is selected.
struct ListTarget {
    ClientId client = 0;
    std::u16string project;
};

// Adds the items in order, in one batch, each as the matching Add command
// adds it (which refuses empty and present names; the import itself tests
// nothing). Answers how many were added; false when the batch failed, in
// which case nothing was added.
bool importListItems(DataFile& file, MasterTables& tables, ListLevel level,
                     const ListTarget& target, const std::vector<std::u16string>& items,
                     std::size_t* added);

// The names of a level in table order: all clients; the projects of the
// client, once per name; the tasks of the selected project or, without
// one, the client's own tasks; the client's contacts.
std::vector<std::u16string> listItemsOf(MasterTables& tables, ListLevel level,
                                        const ListTarget& target);

}  // namespace qb
