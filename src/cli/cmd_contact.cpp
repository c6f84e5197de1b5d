#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "entry/client_tree.h"
#include "store/tables.h"

namespace qb {

int runContact(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("contact needs add or delete");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1, {})) return kExitRefused;
    if (verb != "add" && verb != "delete" && verb != "rename") {
        return ctx.usage("unknown contact command '" + verb + "'");
    }
    const std::size_t words = verb == "rename" ? 3 : 2;
    if (args.positional().size() != words) {
        return ctx.usage(verb == "rename" ? "contact rename needs CLIENT OLD NEW"
                                          : "contact " + verb + " needs CLIENT NAME");
    }
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    std::u16string name = inputText(args.positional()[1]);
    if (name.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    ContactTable& contacts = ctx.masters().contacts;
    if (verb == "add") {
        if (addContact(contacts, client.clientId, name) == 0) {
            return ctx.refused(nameTakenMessage(NameKind::kContact, name));
        }
        return kExitOk;
    }
    if (verb == "rename") {
        const std::vector<ClientNode> tree = clientTree(ctx.masters());
        const ClientNode* node = findNode(tree, client.name, NodeKind::kContact, name);
        if (!node) return ctx.refused("There is no contact \"" + u8(name) + "\".");
        std::u16string to;
        const RenameOutcome outcome =
            renameNode(ctx.masters(), *node, inputText(args.positional()[2]), &to);
        return renameStatus(ctx, outcome, NameKind::kContact, to);
    }
    if (!removeNamed(contacts, client.clientId, name)) {
        return ctx.refused("There is no contact \"" + u8(name) + "\".");
    }
    return kExitOk;
}

}  // namespace qb
