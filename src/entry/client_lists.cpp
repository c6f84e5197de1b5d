#include "entry/client_lists.h"

#include <algorithm>

#include "platform/data_file.h"
#include "store/tables.h"

namespace qb {
namespace {

CEOID addOne(MasterTables& tables, ListLevel level, const ListTarget& target,
             const std::u16string& item) {
    switch (level) {
        case ListLevel::kClients:
            return addClient(tables.clients, item);
        case ListLevel::kProjects:
            return addProjectTask(tables.projects, target.client, item, u"");
        case ListLevel::kTasks:
            return target.project.empty()
                       ? addTask(tables.tasks, target.client, item)
                       : addProjectTask(tables.projects, target.client, target.project, item);
        case ListLevel::kContacts:
            return addContact(tables.contacts, target.client, item);
    }
    return 0;
}

}  // namespace

bool importListItems(DataFile& file, MasterTables& tables, ListLevel level,
                     const ListTarget& target, const std::vector<std::u16string>& items,
                     std::size_t* added) {
    *added = 0;
    if (!file.beginBatch()) return false;
    std::size_t count = 0;
    for (const std::u16string& item : items) {
        if (addOne(tables, level, target, item) != 0) ++count;
    }
    if (!file.commitBatch()) return false;
    *added = count;
    return true;
}

std::vector<std::u16string> listItemsOf(MasterTables& tables, ListLevel level,
                                        const ListTarget& target) {
    std::vector<std::u16string> names;
    switch (level) {
        case ListLevel::kClients:
            for (const ClientRecord& c : allClients(tables.clients)) names.push_back(c.name);
            break;
        case ListLevel::kProjects:
            for (const ProjectRecord& p : projectsOf(tables.projects, target.client)) {
                if (std::find(names.begin(), names.end(), p.project) == names.end()) {
                    names.push_back(p.project);
                }
            }
            break;
        case ListLevel::kTasks:
            if (target.project.empty()) {
                for (const NamedRecord& t : namesOf(tables.tasks, target.client)) {
                    names.push_back(t.name);
                }
                break;
            }
            for (const ProjectRecord& p : projectsOf(tables.projects, target.client)) {
                if (p.project == target.project && !p.task.empty()) names.push_back(p.task);
            }
            break;
        case ListLevel::kContacts:
            for (const NamedRecord& c : namesOf(tables.contacts, target.client)) {
                names.push_back(c.name);
            }
            break;
    }
    return names;
}

}  // namespace qb
