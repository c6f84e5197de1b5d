#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "entry/drop_lists.h"
#include "entry/list_file.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/tables.h"

namespace qb {
namespace {

// A file operation that failed: the system's own text, exit status 1.
int fileFailed(CommandContext& ctx, std::u16string_view text) {
    ctx.err << u8(text) << "\n";
    return kExitFailed;
}

bool kindOf(const std::string& name, ListKind* out) {
    static const struct {
        const char* name;
        ListKind kind;
    } kKinds[] = {{"phase", kListPhase},
                  {"currency", kListCurrency},
                  {"custom1", kListCustom1},
                  {"custom2", kListCustom2},
                  {"custom3", kListCustom3}};
    for (const auto& k : kKinds) {
        if (name == k.name) {
            *out = k.kind;
            return true;
        }
    }
    return false;
}

}  // namespace

int runDroplist(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, {{"yes", false}})) return kExitRefused;
    const auto& words = args.positional();
    ListKind kind;
    if (words.size() < 2 || !kindOf(words[1], &kind)) {
        return ctx.usage(
            "droplist needs a command and phase, currency, custom1, custom2 or custom3");
    }
    const std::string& verb = words[0];
    bool needsText = verb == "add" || verb == "delete" || verb == "import";
    std::size_t count = verb == "rename" ? 4u : needsText ? 3u : 2u;
    if (words.size() != count) return ctx.usage("wrong number of words for droplist " + verb);
    ListTable byKind(ctx.platform(), ListTable::Order::kByKind);
    if (!byKind.open()) return ctx.failed("cannot open the drop lists");
    if (verb == "list") {
        for (const std::u16string& item : byKind.items(kind)) ctx.out << u8(item) << "\n";
        return kExitOk;
    }
    if (verb == "clear") {
        if (!confirmed(ctx, args.has("yes"), kDeleteListQuestion)) return kExitRefused;
        return byKind.removeKind(kind) ? kExitOk : ctx.failed("cannot delete the list");
    }
    if (verb == "import") {
        std::vector<std::u16string> lines;
        std::size_t added = 0;
        if (!readListFile(words[2], ansiCodePage(ctx.platform().registry()), &lines) ||
            !importDropItems(ctx.platform().file(), byKind, kind, lines, &added)) {
            return fileFailed(ctx, kImportFailedMessage);
        }
        return kExitOk;
    }
    std::u16string text = u16(words[2]);
    if (verb == "rename") {
        std::u16string edited;
        const RenameOutcome outcome = renameDropItem(byKind, kind, text, u16(words[3]), &edited);
        if (outcome == RenameOutcome::kMissing) {
            return ctx.refused("\"" + words[2] + "\" is not in the list.");
        }
        return renameStatus(ctx, outcome, NameKind::kDropItem, edited);
    }
    if (verb == "add") {
        if (text.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
        if (byKind.addItem(kind, text) == 0) {
            return ctx.refused(nameTakenMessage(NameKind::kDropItem, text));
        }
        return kExitOk;
    }
    if (verb == "delete") {
        if (!byKind.removeItem(kind, text)) {
            return ctx.refused("\"" + words[2] + "\" is not in the list.");
        }
        return kExitOk;
    }
    return ctx.usage("unknown droplist command '" + verb + "'");
}

}  // namespace qb
