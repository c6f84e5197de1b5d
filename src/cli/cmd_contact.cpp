#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "store/tables.h"

namespace qb {

int runContact(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("contact needs add or delete");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1, {})) return kExitRefused;
    if (verb != "add" && verb != "delete") {
        return ctx.usage("unknown contact command '" + verb + "'");
    }
    if (args.positional().size() != 2) return ctx.usage("contact " + verb + " needs CLIENT NAME");
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    std::u16string name = inputText(args.positional()[1]);
    if (name.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    ContactTable& contacts = ctx.masters().contacts;
    if (verb == "add") {
        if (addContact(contacts, client.clientId, name) == 0) {
            return ctx.refused("The contact \"" + u8(name) + "\" already exists.");
        }
        return kExitOk;
    }
    if (!removeNamed(contacts, client.clientId, name)) {
        return ctx.refused("There is no contact \"" + u8(name) + "\".");
    }
    return kExitOk;
}

}  // namespace qb
