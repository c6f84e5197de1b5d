#include <ostream>

#include "app/frame_texts.h"
#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/entry_fields.h"
#include "cli/master_lookup.h"
#include "entry/duration_rule.h"
#include "entry/entry_amount.h"
#include "entry/entry_copy.h"
#include "entry/entry_form.h"
#include "entry/note_text.h"
#include "entry/rate_setup.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "platform/string_printf.h"
#include "store/entry_save.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {
namespace {

// The FIELDS, and the options of delete and copy.
std::vector<Args::Option> entryOptions() {
    std::vector<Args::Option> options = entryFieldOptions();
    options.insert(options.end(), {{"yes", false}, {"until", true}, {"include-weekend", false}});
    return options;
}

// The editor's OK; prints the saved entry's id.
int save(CommandContext& ctx, const Args& args, TimeEntry entry) {
    int status = saveEntryFields(ctx, args, entry);
    if (status == kExitOk) ctx.out << entry.recordOid << "\n";
    return status;
}

bool readById(CommandContext& ctx, const Args& args, TimeEntry* entry) {
    std::uint32_t id = 0;
    if (args.positional().size() != 1 || !parseUnsignedArg(args.positional()[0], &id)) {
        ctx.usage("give one entry ID");
        return false;
    }
    if (id == 0 || !ctx.entries().seekOid(id) || readEntry(ctx.entries(), *entry) != 0) {
        ctx.refused("There is no entry " + args.positional()[0] + ".");
        return false;
    }
    return true;
}

int show(CommandContext& ctx, const TimeEntry& e) {
    std::ostream& o = ctx.out;
    o << "id\t" << e.recordOid << "\n";
    o << "date\t" << isoDateTimeMillis(e.date) << "\n";
    o << "client\t" << u8(e.client) << "\n";
    o << "project\t" << u8(e.project) << "\n";
    o << "phase\t" << u8(e.phase) << "\n";
    o << "task\t" << u8(e.task) << "\n";
    o << "duration\t" << e.duration << "\n";
    o << "billable\t" << (e.billable ? 1 : 0) << "\n";
    o << "paid\t" << (e.paid ? 1 : 0) << "\n";
    o << "currency\t" << u8(e.currency) << "\n";
    o << "rate\t" << e.rate << "\n";
    o << "rateType\t" << e.rateType << "\n";
    o << "billTo\t" << u8(e.billTo) << "\n";
    o << "custom1\t" << u8(e.custom1) << "\n";
    o << "custom2\t" << u8(e.custom2) << "\n";
    o << "custom3\t" << u8(e.custom3) << "\n";
    o << "note\t" << escapedLineBreaks(noteText(e)) << "\n";
    o << "amount\t" << stringPrintf("%.2f", EntryAmount(e, ctx.settings())) << "\n";
    return kExitOk;
}

// Mark As Paid: offered only for a billable entry.
int togglePaid(CommandContext& ctx, TimeEntry& e) {
    if (!e.billable) return ctx.refused(std::string("The entry is not billable."));
    e.paid = !e.paid;
    if (!ctx.entries().seekOid(e.recordOid) || !updateEntry(ctx.entries(), e)) {
        return ctx.failed("cannot change the entry");
    }
    return kExitOk;
}

// Copy...: the duration box starts with the entry's duration.
int copy(CommandContext& ctx, const Args& args, const TimeEntry& source) {
    CopyRequest request;
    request.duration = durationText(source.duration);
    if (auto d = args.value("duration")) request.duration = u16(*d);
    if (auto u = args.value("until")) {
        SYSTEMTIME until{};
        if (!parseDateArg(*u, &until)) return ctx.usage(dateArgProblem("--until", *u));
        request.until = until;
    }
    request.includeWeekend = args.has("include-weekend");
    CopyResult r = copyEntry(ctx.platform().file(), ctx.entries(), ctx.masters(), source, request,
                             ctx.settings());
    if (!r.check.ok) return ctx.refused(std::u16string(r.check.message));
    if (!r.ok) return ctx.failed("cannot save the copies in " + ctx.platform().file().path());
    for (CEOID id : r.created) ctx.out << id << "\n";
    return kExitOk;
}

}  // namespace

int runEntry(CommandContext& ctx) {
    if (ctx.words().empty()) {
        return ctx.usage("entry needs add, update, show, delete, toggle-paid or copy");
    }
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1, entryOptions())) return kExitRefused;
    if (verb == "add") {
        if (!args.positional().empty()) return ctx.usage("entry add takes options only");
        return save(ctx, args, prepareEntry(nullptr, ctx.settings(), localNow()));
    }
    TimeEntry stored;
    if (verb != "update" && verb != "show" && verb != "delete" && verb != "toggle-paid" &&
        verb != "copy") {
        return ctx.usage("unknown entry command '" + verb + "'");
    }
    if (!readById(ctx, args, &stored)) return kExitRefused;
    if (verb == "update") return save(ctx, args, prepareEntry(&stored, ctx.settings(), localNow()));
    if (verb == "show") return show(ctx, stored);
    if (verb == "toggle-paid") return togglePaid(ctx, stored);
    if (verb == "copy") return copy(ctx, args, stored);
    if (!confirmed(ctx, args.has("yes"), kDeleteEntryQuestion)) return kExitRefused;
    return ctx.entries().remove(stored.recordOid) ? kExitOk : ctx.failed("cannot delete the entry");
}

}  // namespace qb
