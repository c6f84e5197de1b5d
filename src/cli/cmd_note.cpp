#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "entry/note_export.h"
#include "entry/note_text.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

int runNote(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, {{"format", true}})) return kExitRefused;
    const auto& words = args.positional();
    if (words.size() != 3 || words[0] != "export") return ctx.usage("note export takes ID FILE");
    NoteFormat format = NoteFormat::kText;
    std::string name = args.value("format").value_or("txt");
    if (name == "unicode") {
        format = NoteFormat::kUnicode;
    } else if (name == "rtf") {
        format = NoteFormat::kRtf;
    } else if (name != "txt") {
        return ctx.usage("--format takes txt, unicode or rtf");
    }
    std::uint32_t id = 0;
    TimeEntry entry;
    if (!parseUnsignedArg(words[1], &id)) return ctx.usage("give one entry ID");
    if (id == 0 || !ctx.entries().seekOid(id) || readEntry(ctx.entries(), entry) != 0) {
        return ctx.refused("There is no entry " + words[1] + ".");
    }
    std::string error;
    if (!exportNote(words[2], noteText(entry), format, ansiCodePage(ctx.platform().registry()),
                    &error)) {
        return ctx.writeFailed(kExportNoteFailedMessage, error);
    }
    return kExitOk;
}

}  // namespace qb
