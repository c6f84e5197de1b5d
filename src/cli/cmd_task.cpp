#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "entry/client_tree.h"
#include "store/tables.h"

namespace qb {
namespace {

// A task of a project is a project/task pair; a task without one belongs
// to the client directly.
int add(CommandContext& ctx, const ClientRecord& client, const std::u16string& task,
        const std::optional<std::string>& project) {
    MasterTables& m = ctx.masters();
    CEOID added = project ? addProjectTask(m.projects, client.clientId, inputText(*project), task)
                          : addTask(m.tasks, client.clientId, task);
    if (added == 0) return ctx.refused(nameTakenMessage(NameKind::kTask, task));
    return kExitOk;
}

int remove(CommandContext& ctx, const ClientRecord& client, const std::u16string& task,
           const std::optional<std::string>& project) {
    MasterTables& m = ctx.masters();
    if (!project) {
        if (!removeNamed(m.tasks, client.clientId, task)) {
            return ctx.refused("There is no task \"" + u8(task) + "\".");
        }
        return kExitOk;
    }
    std::u16string name = u16(*project);
    for (const ProjectRecord& p : projectsOf(m.projects, client.clientId)) {
        if (p.project == name && p.task == task) {
            return m.projects.remove(p.oid) ? kExitOk : ctx.failed("cannot delete the task");
        }
    }
    return ctx.refused("There is no task \"" + u8(task) + "\" in project \"" + *project + "\".");
}

// The task's node of the client setup tree, renamed as the window does.
int rename(CommandContext& ctx, const ClientRecord& client, const std::u16string& task,
           const std::string& to, const std::optional<std::string>& project) {
    const std::vector<ClientNode> tree = clientTree(ctx.masters());
    const ClientNode* node =
        findNode(tree, client.name, NodeKind::kTask, task, project ? u16(*project) : u"");
    if (!node) return ctx.refused("There is no task \"" + u8(task) + "\".");
    std::u16string name;
    const RenameOutcome outcome = renameNode(ctx.masters(), *node, inputText(to), &name);
    return renameStatus(ctx, outcome, NameKind::kTask, name);
}

}  // namespace

int runTask(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("task needs add or delete");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1, {{"project", true}})) return kExitRefused;
    if (verb != "add" && verb != "delete" && verb != "rename") {
        return ctx.usage("unknown task command '" + verb + "'");
    }
    if (verb == "rename" && args.positional().size() != 3) {
        return ctx.usage("task rename needs CLIENT OLD NEW");
    }
    if (verb != "rename" && args.positional().size() != 2) {
        return ctx.usage("task " + verb + " needs CLIENT TASK");
    }
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    std::u16string task = inputText(args.positional()[1]);
    if (task.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    if (verb == "add") return add(ctx, client, task, args.value("project"));
    if (verb == "rename")
        return rename(ctx, client, task, args.positional()[2], args.value("project"));
    return remove(ctx, client, task, args.value("project"));
}

}  // namespace qb
