#pragma once

// The client setup tree as data, and what its commands do to the master
// data: the desktop window draws these nodes, the command line prints them.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "entry/unique_names.h"
#include "store/master_data.h"

namespace qb {

enum class NodeKind : int { kClient = 0, kProject = 1, kTask = 2, kContact = 3, kGroup = 4 };

// The numbers the three group nodes carry.
inline constexpr std::int64_t kProjectsGroup = -1;
inline constexpr std::int64_t kTasksGroup = -2;
inline constexpr std::int64_t kContactsGroup = -3;

struct ClientNode {
    NodeKind kind = NodeKind::kGroup;
    // The record identifier, or the group's negative number. A project node
    // carries its first record.
    std::int64_t number = 0;
    ClientId clientId = 0;
    std::u16string text;
    // The project a task node belongs to; empty under "Tasks".
    std::u16string project;
    std::vector<ClientNode> children;
};

// Clients sorted by name, each with its "Projects" (projects, each with its
// tasks), "Tasks" and "Contacts" groups, present even when empty. Projects
// appear once per name, in table order.
std::vector<ClientNode> clientTree(MasterTables& tables);

// How many characters the rename box takes: 127, 63 for a contact, 0 for a
// group (its title is fixed).
std::size_t renameLimit(NodeKind kind);

// Writes the new name, cut to the box's limit (handed back in `newName`). A
// project is renamed in every pair of its client; entries keep the texts
// they were saved with. An empty name, a group, or a name that another
// client, or another project, task or contact of the client, holds already
// changes nothing.
RenameOutcome renameNode(MasterTables& tables, const ClientNode& node, const std::u16string& name,
                         std::u16string* newName = nullptr);
// The kind of name a node carries, for nameTakenMessage.
NameKind nameKindOf(NodeKind kind);

inline constexpr std::u16string_view kDeleteClientQuestion =
    u"This will also delete all associated projects, tasks, contacts, and rates. However, time "
    u"entries are preserved. Are you sure?";
inline constexpr std::u16string_view kDeleteProjectQuestion =
    u"Are you sure to delete this project and all its tasks?";

// The question asked before deleting a node of that kind; empty for tasks
// and contacts, which go without one.
std::u16string_view deleteQuestion(NodeKind kind);

// Deletes the node's records: a client with its projects, tasks, contacts
// and rates; a project with all its pairs; a task or contact alone. Time
// entries are never touched. A group cannot be deleted.
bool deleteNode(MasterTables& tables, const ClientNode& node);

// Finds a node: the client by exact name; under it, when `kind` asks, the
// project, the task (of `project` when given, else under "Tasks") or the
// contact named `name`. Answers null when there is none.
const ClientNode* findNode(const std::vector<ClientNode>& tree, const std::u16string& client,
                           NodeKind kind, const std::u16string& name = {},
                           const std::u16string& project = {});

}  // namespace qb
