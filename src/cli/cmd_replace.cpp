#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "entry/done_texts.h"
#include "entry/replace_text.h"
#include "platform/platform.h"

namespace qb {
namespace {

bool fieldOf(const std::string& word, ReplaceField* out) {
    static const char* const kWords[kReplaceFieldCount] = {
        "client",  "project", "phase",   "task",    "currency",
        "bill-to", "custom1", "custom2", "custom3", "project-task"};
    for (int i = 0; i < kReplaceFieldCount; ++i) {
        if (word == kWords[i]) {
            *out = static_cast<ReplaceField>(i);
            return true;
        }
    }
    return false;
}

}  // namespace

// FIND is typed into the "Find:" box (no item selected), so only an empty
// replacement meets the dialog's blank refusal.
int runReplace(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, {{"yes", false}})) return kExitRefused;
    const auto& words = args.positional();
    ReplaceField field;
    if (words.size() != 3 || !fieldOf(words[0], &field)) {
        return ctx.usage("replace takes a FIELD, FIND and REPLACEMENT");
    }
    std::u16string replacement = u16(words[2]);
    if (checkReplace(-1, replacement) != ReplaceCheck::kOk) {
        return ctx.refused(std::u16string(kReplaceRefusalText));
    }
    if (!confirmed(ctx, args.has("yes"), kReplaceQuestion)) return kExitRefused;
    ReplaceResult r = replaceFieldText(ctx.platform().file(), ctx.entries(), ctx.masters(), field,
                                       u16(words[1]), replacement, nullptr);
    if (!r.ok) return ctx.failed("cannot replace the text in " + ctx.platform().file().path());
    ctx.out << u8(replaceDoneText(r.entriesChanged, r.masterRenamed, r.masterMerged)) << "\n";
    return kExitOk;
}

}  // namespace qb
