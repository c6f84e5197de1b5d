#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "entry/client_tree.h"
#include "store/tables.h"

namespace qb {
namespace {

int add(CommandContext& ctx, const Args& args, const ClientRecord& client) {
    std::u16string project = inputText(args.positional()[1]);
    if (project.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    if (addProjectTask(ctx.masters().projects, client.clientId, project, u"") == 0) {
        return ctx.refused(nameTakenMessage(NameKind::kProject, project));
    }
    return kExitOk;
}

// The project's node of the client setup tree, as the window would select it.
const ClientNode* projectNode(CommandContext& ctx, const std::vector<ClientNode>& tree,
                              const ClientRecord& client, const std::u16string& project) {
    const ClientNode* node = findNode(tree, client.name, NodeKind::kProject, project);
    if (!node) ctx.refused("There is no project \"" + u8(project) + "\".");
    return node;
}

// Every pair of the project takes the new name at once.
int rename(CommandContext& ctx, const Args& args, const ClientRecord& client) {
    if (args.positional().size() != 3) return ctx.usage("project rename takes CLIENT OLD NEW");
    std::u16string to = inputText(args.positional()[2]);
    if (to.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    std::vector<ClientNode> tree = clientTree(ctx.masters());
    const ClientNode* node = projectNode(ctx, tree, client, u16(args.positional()[1]));
    if (!node) return kExitRefused;
    return renameStatus(ctx, renameNode(ctx.masters(), *node, to, &to), NameKind::kProject, to);
}

int remove(CommandContext& ctx, const Args& args, const ClientRecord& client) {
    std::vector<ClientNode> tree = clientTree(ctx.masters());
    const ClientNode* node = projectNode(ctx, tree, client, u16(args.positional()[1]));
    if (!node) return kExitRefused;
    if (!confirmed(ctx, args.has("yes"), deleteQuestion(NodeKind::kProject))) return kExitRefused;
    return deleteNode(ctx.masters(), *node) ? kExitOk : ctx.failed("cannot delete the project");
}

}  // namespace

int runProject(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("project needs add, rename or delete");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1, {{"yes", false}})) return kExitRefused;
    if (verb != "add" && verb != "rename" && verb != "delete") {
        return ctx.usage("unknown project command '" + verb + "'");
    }
    if (args.positional().size() < 2) return ctx.usage("project " + verb + " needs CLIENT PROJECT");
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    if (verb == "add") return add(ctx, args, client);
    if (verb == "rename") return rename(ctx, args, client);
    return remove(ctx, args, client);
}

}  // namespace qb
