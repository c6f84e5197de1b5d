#include "cli/layout_args.h"

#include "cli/cli_text.h"
#include "cli/command.h"
#include "platform/platform.h"

namespace qb {

bool layoutFromArg(CommandContext& ctx, const std::string& word, WorkingLayout* out) {
    WorkingLayout w;
    if (word == "client") {
        w.layout = clientLayout();
    } else if (word == "date") {
        w.layout = dateLayout();
    } else {
        w.name = u16(word);
        w.oid = findSavedLayout(ctx.platform(), w.name);
        if (w.oid == 0 || !loadSavedLayout(ctx.platform(), w.oid, &w.layout)) {
            noSuchLayout(ctx, word);
            return false;
        }
    }
    *out = std::move(w);
    return true;
}

int noSuchLayout(CommandContext& ctx, const std::string& name) {
    return ctx.refused("There is no saved report named " + name + ".");
}

}  // namespace qb
