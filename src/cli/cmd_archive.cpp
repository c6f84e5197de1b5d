#include <ostream>

#include "backup/archive_writer.h"
#include "backup/backup_texts.h"
#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "platform/calendar.h"

namespace qb {
namespace {

// The day of a --from or --to option at the given time of day.
bool dayAt(CommandContext& ctx, const std::string& option, const std::string& text, int hour,
           int minute, int second, FILETIME* out) {
    SYSTEMTIME day;
    if (!parseDateArg(text, &day)) {
        ctx.usage(dateArgProblem("--" + option, text));
        return false;
    }
    day.wHour = static_cast<std::uint16_t>(hour);
    day.wMinute = static_cast<std::uint16_t>(minute);
    day.wSecond = static_cast<std::uint16_t>(second);
    day.wMilliseconds = 0;
    if (!systemTimeToFileTime(day, out)) {
        ctx.usage(dateArgProblem("--" + option, text));
        return false;
    }
    return true;
}

int create(CommandContext& ctx, const Args& args, const std::string& fileName) {
    bool range = args.has("from") || args.has("to");
    if (range == args.has("client")) {
        return ctx.usage("archive create needs --from D --to D, or --client NAME");
    }
    FILETIME start = 0;
    FILETIME end = 0;
    std::vector<CEOID> clients;
    if (range) {
        if (!args.has("from") || !args.has("to"))
            return ctx.usage("archive create needs both --from and --to");
        if (!dayAt(ctx, "from", *args.value("from"), 0, 0, 0, &start) ||
            !dayAt(ctx, "to", *args.value("to"), 23, 59, 59, &end)) {
            return kExitRefused;
        }
    } else {
        for (const std::string& name : args.all("client")) {
            ClientRecord client;
            if (!findClient(ctx, u16(name), &client)) return kExitRefused;
            clients.push_back(client.oid);
        }
    }
    ArchiveType type = range ? ArchiveType::kDateRange : ArchiveType::kClients;
    const bool deleting = args.has("delete");
    const long count = archiveCount(ctx.entries(), type, start, end, clients);
    if (deleting &&
        !confirmed(ctx, args.has("yes"), archiveDeleteQuestion(static_cast<int>(type), count))) {
        return kExitRefused;
    }
    Status why;
    if (createArchive(ctx.entries(), ctx.masters(), type, start, end, clients, deleting, fileName,
                      &why)) {
        ctx.out << u8(archiveDoneText(static_cast<int>(type), count, deleting)) << "\n";
        return kExitOk;
    }
    return ctx.writeFailed(kArchiveFailedText, why.message());
}

int load(CommandContext& ctx, const std::string& fileName) {
    int result = loadArchive(ctx.entries(), ctx.masters(), fileName);
    FeatureMessage message = loadArchiveMessage(result);
    if (!message.text.empty()) {
        std::ostream& to = message.icon == FeatureIcon::kInformation ? ctx.out : ctx.err;
        to << u8(message.text) << "\n";
    }
    return result == kRestoreDone ? kExitOk : kExitFailed;
}

}  // namespace

int runArchive(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(
            args, 0,
            {{"from", true}, {"to", true}, {"client", true}, {"delete", false}, {"yes", false}})) {
        return kExitRefused;
    }
    const std::vector<std::string>& words = args.positional();
    if (words.size() != 2 || (words[0] != "create" && words[0] != "load")) {
        return ctx.usage("archive needs create FILE or load FILE");
    }
    if (words[0] == "create") return create(ctx, args, words[1]);
    if (args.has("from") || args.has("to") || args.has("client") || args.has("delete")) {
        return ctx.usage("archive load takes only FILE");
    }
    return load(ctx, words[1]);
}

}  // namespace qb
