#include "entry/client_tree.h"

#include <algorithm>

#include "entry/entry_form.h"
#include "platform/text.h"
#include "store/record_props.h"
#include "store/tables.h"

namespace qb {
namespace {

constexpr std::size_t kContactRenameLimit = 63;

ClientNode group(std::int64_t number, const char16_t* title, ClientId client) {
    ClientNode g;
    g.kind = NodeKind::kGroup;
    g.number = number;
    g.clientId = client;
    g.text = title;
    return g;
}

ClientNode leaf(NodeKind kind, CEOID oid, ClientId client, const std::u16string& text) {
    ClientNode n;
    n.kind = kind;
    n.number = oid;
    n.clientId = client;
    n.text = text;
    return n;
}

// The tree control inserts in the user's sort order, which ignores case;
// names that differ only in case keep a stable code-unit order.
bool sortsBefore(const ClientNode& a, const ClientNode& b) {
    int c = compareStringW(a.text, b.text, true);
    return c != 0 ? c < 0 : compareStringW(a.text, b.text, false) < 0;
}

ClientNode clientNode(MasterTables& tables, const ClientRecord& client) {
    ClientNode node = leaf(NodeKind::kClient, client.oid, client.clientId, client.name);
    ClientNode projects = group(kProjectsGroup, u"Projects", client.clientId);
    for (const ProjectRecord& pair : projectsOf(tables.projects, client.clientId)) {
        auto it = std::find_if(projects.children.begin(), projects.children.end(),
                               [&](const ClientNode& p) { return p.text == pair.project; });
        if (it == projects.children.end()) {
            projects.children.push_back(
                leaf(NodeKind::kProject, pair.oid, client.clientId, pair.project));
            it = projects.children.end() - 1;
        }
        if (pair.task.empty()) continue;
        ClientNode task = leaf(NodeKind::kTask, pair.oid, client.clientId, pair.task);
        task.project = pair.project;
        it->children.push_back(std::move(task));
    }
    ClientNode tasks = group(kTasksGroup, u"Tasks", client.clientId);
    for (const NamedRecord& t : namesOf(tables.tasks, client.clientId)) {
        tasks.children.push_back(leaf(NodeKind::kTask, t.oid, client.clientId, t.name));
    }
    ClientNode contacts = group(kContactsGroup, u"Contacts", client.clientId);
    for (const NamedRecord& c : namesOf(tables.contacts, client.clientId)) {
        contacts.children.push_back(leaf(NodeKind::kContact, c.oid, client.clientId, c.name));
    }
    node.children = {std::move(projects), std::move(tasks), std::move(contacts)};
    return node;
}

const ClientNode* childNamed(const ClientNode& parent, const std::u16string& name) {
    for (const ClientNode& c : parent.children) {
        if (c.text == name) return &c;
    }
    return nullptr;
}

}  // namespace

std::vector<ClientNode> clientTree(MasterTables& tables) {
    std::vector<ClientNode> tree;
    for (const ClientRecord& client : allClients(tables.clients)) {
        tree.push_back(clientNode(tables, client));
    }
    std::stable_sort(tree.begin(), tree.end(), sortsBefore);
    return tree;
}

std::size_t renameLimit(NodeKind kind) {
    switch (kind) {
        case NodeKind::kClient:
        case NodeKind::kProject:
        case NodeKind::kTask:
            return kNameLimit;
        case NodeKind::kContact:
            return kContactRenameLimit;
        case NodeKind::kGroup:
            break;
    }
    return 0;
}

namespace {

bool holdsName(const std::vector<NamedRecord>& names, CEOID self, const std::u16string& name) {
    return std::any_of(names.begin(), names.end(),
                       [&](const NamedRecord& n) { return n.oid != self && n.name == name; });
}

// Whether another record of the node's collection already has the name.
bool nameTaken(MasterTables& tables, const ClientNode& node, const std::u16string& name) {
    const auto oid = static_cast<CEOID>(node.number);
    switch (node.kind) {
        case NodeKind::kClient: {
            ClientRecord other;
            return tables.clients.seekEqual(CEPROPVAL::wstr(kPropClient, name)) &&
                   readClient(tables.clients, &other) && other.oid != oid;
        }
        case NodeKind::kProject:
        case NodeKind::kTask:
            if (node.kind == NodeKind::kProject || !node.project.empty()) {
                const bool project = node.kind == NodeKind::kProject;
                for (const ProjectRecord& pair : projectsOf(tables.projects, node.clientId)) {
                    if (project ? pair.project == name
                                : pair.oid != oid && pair.project == node.project &&
                                      pair.task == name) {
                        return true;
                    }
                }
                return false;
            }
            return holdsName(namesOf(tables.tasks, node.clientId), oid, name);
        case NodeKind::kContact:
            return holdsName(namesOf(tables.contacts, node.clientId), oid, name);
        case NodeKind::kGroup:
            break;
    }
    return false;
}

bool writeName(MasterTables& tables, const ClientNode& node, const std::u16string& text) {
    const auto oid = static_cast<CEOID>(node.number);
    switch (node.kind) {
        case NodeKind::kClient:
            return tables.clients.seekOid(oid) && renameClient(tables.clients, text);
        case NodeKind::kProject: {
            bool ok = true;
            for (const ProjectRecord& pair : projectsOf(tables.projects, node.clientId)) {
                if (compareStringW(pair.project, node.text, false) != 0) continue;
                ok =
                    tables.projects.seekOid(pair.oid) && renameProject(tables.projects, text) && ok;
            }
            return ok;
        }
        case NodeKind::kTask:
            if (!node.project.empty()) {
                return tables.projects.seekOid(oid) && setProjectTask(tables.projects, text);
            }
            return tables.tasks.seekOid(oid) &&
                   tables.tasks.update({CEPROPVAL::wstr(kPropText, text)});
        case NodeKind::kContact:
            return tables.contacts.seekOid(oid) &&
                   tables.contacts.update({CEPROPVAL::wstr(kPropText, text)});
        case NodeKind::kGroup:
            break;
    }
    return false;
}

}  // namespace

RenameOutcome renameNode(MasterTables& tables, const ClientNode& node, const std::u16string& name,
                         std::u16string* newName) {
    std::u16string text = limitText(name, renameLimit(node.kind));
    if (newName) *newName = text;
    if (node.kind == NodeKind::kGroup) return RenameOutcome::kMissing;
    if (text.empty()) return RenameOutcome::kBlank;
    if (text == node.text) return RenameOutcome::kUnchanged;
    if (nameTaken(tables, node, text)) return RenameOutcome::kTaken;
    return writeName(tables, node, text) ? RenameOutcome::kRenamed : RenameOutcome::kFailed;
}

NameKind nameKindOf(NodeKind kind) {
    switch (kind) {
        case NodeKind::kProject:
            return NameKind::kProject;
        case NodeKind::kTask:
            return NameKind::kTask;
        case NodeKind::kContact:
            return NameKind::kContact;
        default:
            return NameKind::kClient;
    }
}

std::u16string_view deleteQuestion(NodeKind kind) {
    if (kind == NodeKind::kClient) return kDeleteClientQuestion;
    if (kind == NodeKind::kProject) return kDeleteProjectQuestion;
    return {};
}

bool deleteNode(MasterTables& tables, const ClientNode& node) {
    const auto oid = static_cast<CEOID>(node.number);
    switch (node.kind) {
        case NodeKind::kClient:
            return removeClient(tables, {oid});
        case NodeKind::kProject:
            return removeProject(tables.projects, node.clientId, node.text);
        case NodeKind::kTask:
            return node.project.empty() ? tables.tasks.remove(oid) : tables.projects.remove(oid);
        case NodeKind::kContact:
            return tables.contacts.remove(oid);
        case NodeKind::kGroup:
            break;
    }
    return false;
}

const ClientNode* findNode(const std::vector<ClientNode>& tree, const std::u16string& client,
                           NodeKind kind, const std::u16string& name,
                           const std::u16string& project) {
    const ClientNode* owner = nullptr;
    for (const ClientNode& c : tree) {
        if (c.text == client) owner = &c;
    }
    if (!owner || kind == NodeKind::kClient) return owner;
    const ClientNode& projects = owner->children[0];
    switch (kind) {
        case NodeKind::kProject:
            return childNamed(projects, name);
        case NodeKind::kTask:
            if (!project.empty()) {
                const ClientNode* p = childNamed(projects, project);
                return p ? childNamed(*p, name) : nullptr;
            }
            return childNamed(owner->children[1], name);
        case NodeKind::kContact:
            return childNamed(owner->children[2], name);
        default:
            return nullptr;
    }
}

}  // namespace qb
