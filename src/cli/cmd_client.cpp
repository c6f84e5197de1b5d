#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "platform/string_printf.h"
#include "store/tables.h"

namespace qb {
namespace {

constexpr std::u16string_view kDeleteClientQuestion =
    u"This will also delete all associated projects, tasks, contacts, and rates. However, time "
    u"entries are preserved. Are you sure?";

int list(CommandContext& ctx) {
    ctx.out << "clientId\tname\n";
    for (const ClientRecord& c : allClients(ctx.masters().clients)) {
        ctx.out << c.clientId << "\t" << u8(c.name) << "\n";
    }
    return kExitOk;
}

int show(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("client show takes one NAME");
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    MasterTables& m = ctx.masters();
    ctx.out << "client\t" << client.clientId << "\t" << u8(client.name) << "\n";
    for (const ProjectRecord& p : projectsOf(m.projects, client.clientId)) {
        ctx.out << "project\t" << u8(p.project) << "\t" << u8(p.task) << "\n";
    }
    for (const NamedRecord& t : namesOf(m.tasks, client.clientId)) {
        ctx.out << "task\t" << u8(t.name) << "\n";
    }
    for (const NamedRecord& c : namesOf(m.contacts, client.clientId)) {
        ctx.out << "contact\t" << u8(c.name) << "\n";
    }
    for (const RateRecord& r : ratesOf(m.rates, client.clientId)) {
        ctx.out << "rate\t" << r.oid << "\t" << r.rateType << "\t"
                << stringPrintf("%.2f", r.rate * 0.01) << "\t" << u8(r.description) << "\t"
                << (r.flag ? 1 : 0) << "\n";
    }
    return kExitOk;
}

int add(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("client add takes one NAME");
    std::u16string name = inputText(args.positional()[0]);
    if (name.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    if (addClient(ctx.masters().clients, name) == 0) {
        if (clientIdOf(ctx.masters().clients, name) != kNoClient) {
            return ctx.refused("A client named \"" + u8(name) + "\" already exists.");
        }
        return ctx.failed("cannot add the client");
    }
    return kExitOk;
}

int rename(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 2) return ctx.usage("client rename takes OLD and NEW");
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    std::u16string name = inputText(args.positional()[1]);
    if (name.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    ClientTable& clients = ctx.masters().clients;
    if (name != client.name && clientIdOf(clients, name) != kNoClient) {
        return ctx.refused("A client named \"" + u8(name) + "\" already exists.");
    }
    if (!clients.seekOid(client.oid) || !renameClient(clients, name)) {
        return ctx.failed("cannot rename the client");
    }
    return kExitOk;
}

int remove(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("client delete takes one NAME");
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    if (!confirmed(ctx, args.has("yes"), kDeleteClientQuestion)) return kExitRefused;
    if (!removeClient(ctx.masters(), {client.oid})) return ctx.failed("cannot delete the client");
    return kExitOk;
}

}  // namespace

int runClient(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("client needs list, show, add, rename or delete");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1, {{"yes", false}})) return kExitRefused;
    if (verb == "list") return list(ctx);
    if (verb == "show") return show(ctx, args);
    if (verb == "add") return add(ctx, args);
    if (verb == "rename") return rename(ctx, args);
    if (verb == "delete") return remove(ctx, args);
    return ctx.usage("unknown client command '" + verb + "'");
}

}  // namespace qb
