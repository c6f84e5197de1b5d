#include <ostream>

#include "backup/backup_layout.h"
#include "backup/backup_texts.h"
#include "backup/backup_writer.h"
#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"

namespace qb {

namespace {

int restoreFailed(CommandContext& ctx, int result) {
    const FeatureMessage message = restoreMessage(result);
    if (!message.text.empty()) ctx.err << u8(message.text) << "\n";
    return kExitFailed;
}

// What the file holds is known before anything is added: a date-range
// archive is sent to `archive load`, and adding to entries already here
// needs --yes.
int restore(CommandContext& ctx, const std::string& file, bool yes) {
    const long present = storedEntryCount(ctx.entries());
    const long clients = storedClientCount(ctx.masters());
    // The file's counts matter only to the question asked before adding to
    // entries already here.
    BackupContents contents;
    int result = inspectBackupFile(file, &contents, nullptr, present > 0);
    if (result != kRestoreDone) return restoreFailed(ctx, result);
    if (contents.kind == kKindEntryArchive) {
        ctx.err << u8(kArchiveGivenToRestoreText) << "\n";
        return kExitFailed;
    }
    if (present > 0 && !confirmed(ctx, yes, restoreQuestion(contents.entries, present))) {
        return kExitRefused;
    }
    result = restoreBackupFile(ctx.entries(), ctx.masters(), file);
    if (result != kRestoreDone) return restoreFailed(ctx, result);
    ctx.out << u8(restoreDoneText(storedEntryCount(ctx.entries()) - present,
                                  storedClientCount(ctx.masters()) - clients))
            << "\n";
    return kExitOk;
}

}  // namespace

int runBackup(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, {{"yes", false}})) return kExitRefused;
    const std::vector<std::string>& words = args.positional();
    if (words.size() != 2 || (words[0] != "create" && words[0] != "restore")) {
        return ctx.usage("backup needs create FILE or restore FILE");
    }
    if (words[0] == "create") {
        Status why;
        if (createBackupFile(ctx.entries(), ctx.masters(), words[1], nullptr, &why)) {
            return kExitOk;
        }
        return ctx.writeFailed(kBackupFailedText, why.message());
    }
    return restore(ctx, words[1], args.has("yes"));
}

}  // namespace qb
