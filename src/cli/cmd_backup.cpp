#include <ostream>

#include "backup/backup_texts.h"
#include "backup/backup_writer.h"
#include "cli/cli_text.h"
#include "cli/command.h"

namespace qb {

int runBackup(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, {})) return kExitRefused;
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
    int result = restoreBackupFile(ctx.entries(), ctx.masters(), words[1]);
    FeatureMessage message = restoreMessage(result);
    if (!message.text.empty()) ctx.err << u8(message.text) << "\n";
    return result == kRestoreDone ? kExitOk : kExitFailed;
}

}  // namespace qb
