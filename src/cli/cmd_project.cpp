#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "store/tables.h"

namespace qb {
namespace {

constexpr std::u16string_view kDeleteProjectQuestion =
    u"Are you sure to delete this project and all its tasks?";

bool hasProject(ProjectTable& table, ClientId client, const std::u16string& project) {
    for (const ProjectRecord& p : projectsOf(table, client)) {
        if (p.project == project) return true;
    }
    return false;
}

int add(CommandContext& ctx, const Args& args, const ClientRecord& client) {
    std::u16string project = inputText(args.positional()[1]);
    if (project.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    if (addProjectTask(ctx.masters().projects, client.clientId, project, u"") == 0) {
        return ctx.refused("The project \"" + u8(project) + "\" already exists.");
    }
    return kExitOk;
}

// Every pair of the project takes the new name at once.
int rename(CommandContext& ctx, const Args& args, const ClientRecord& client) {
    if (args.positional().size() != 3) return ctx.usage("project rename takes CLIENT OLD NEW");
    std::u16string from = u16(args.positional()[1]);
    std::u16string to = inputText(args.positional()[2]);
    if (to.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    ProjectTable& table = ctx.masters().projects;
    std::vector<ProjectRecord> pairs = projectsOf(table, client.clientId);
    bool found = false;
    for (const ProjectRecord& p : pairs) {
        if (p.project != from) continue;
        found = true;
        if (!table.seekOid(p.oid) || !renameProject(table, to)) {
            return ctx.failed("cannot rename the project");
        }
    }
    if (!found) return ctx.refused("There is no project \"" + u8(from) + "\".");
    return kExitOk;
}

int remove(CommandContext& ctx, const Args& args, const ClientRecord& client) {
    std::u16string project = u16(args.positional()[1]);
    ProjectTable& table = ctx.masters().projects;
    if (!hasProject(table, client.clientId, project)) {
        return ctx.refused("There is no project \"" + u8(project) + "\".");
    }
    if (!confirmed(ctx, args.has("yes"), kDeleteProjectQuestion)) return kExitRefused;
    if (!removeProject(table, client.clientId, project)) {
        return ctx.failed("cannot delete the project");
    }
    return kExitOk;
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
