#include "cli/master_lookup.h"

#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "store/record_props.h"
#include "store/tables.h"

namespace qb {

std::u16string inputText(const std::string& typed) {
    std::u16string text = u16(typed);
    if (text.size() > 127) text.resize(127);
    return text;
}

bool findClient(CommandContext& ctx, const std::u16string& name, ClientRecord* out) {
    ClientTable& clients = ctx.masters().clients;
    if (!name.empty() && clients.seekEqual(CEPROPVAL::wstr(kPropClient, name)) &&
        readClient(clients, out)) {
        return true;
    }
    ctx.err << "There is no client named \"" << u8(name) << "\".\n";
    return false;
}

int renameStatus(CommandContext& ctx, RenameOutcome outcome, NameKind kind,
                 const std::u16string& newName) {
    switch (outcome) {
        case RenameOutcome::kRenamed:
        case RenameOutcome::kUnchanged:
            return kExitOk;
        case RenameOutcome::kBlank:
            return ctx.refused(std::u16string(kBlankNotAllowed));
        case RenameOutcome::kTaken:
            return ctx.refused(nameTakenMessage(kind, newName));
        case RenameOutcome::kMissing:
        case RenameOutcome::kFailed:
            break;
    }
    return ctx.failed("cannot rename \"" + u8(newName) + "\"");
}

bool confirmed(CommandContext& ctx, bool yes, std::u16string_view question) {
    if (yes) return true;
    ctx.err << u8(question) << "\n(answer with --yes)\n";
    return false;
}

}  // namespace qb
