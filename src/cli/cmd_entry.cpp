#include <ostream>

#include "app/frame_texts.h"
#include "cli/cli_text.h"
#include "cli/command.h"
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

const std::vector<Args::Option> kFieldOptions = {{"date", true},
                                                 {"start", true},
                                                 {"no-start", false},
                                                 {"client", true},
                                                 {"project", true},
                                                 {"phase", true},
                                                 {"task", true},
                                                 {"duration", true},
                                                 {"billable", false},
                                                 {"non-billable", false},
                                                 {"paid", false},
                                                 {"unpaid", false},
                                                 {"currency", true},
                                                 {"rate", true},
                                                 {"rate-type", true},
                                                 {"bill-to", true},
                                                 {"custom1", true},
                                                 {"custom2", true},
                                                 {"custom3", true},
                                                 {"note", true},
                                                 {"yes", false},
                                                 {"until", true},
                                                 {"include-weekend", false}};

// Types the given options into the editor's boxes, as a user would.
bool fillForm(CommandContext& ctx, const Args& args, EntryForm& form) {
    if (auto d = args.value("date")) {
        if (!parseDateArg(*d, &form.day)) {
            ctx.usage(dateArgProblem("--date", *d));
            return false;
        }
    }
    if (args.has("no-start")) form.start.reset();
    if (auto s = args.value("start")) {
        SYSTEMTIME t;
        if (!parseTimeArg(*s, &t)) {
            ctx.usage("--start takes a time as HH:MM");
            return false;
        }
        form.start = t;
    }
    struct TextBox {
        const char* option;
        std::u16string* box;
    };
    for (TextBox box : {TextBox{"client", &form.client},
                        {"project", &form.project},
                        {"phase", &form.phase},
                        {"task", &form.task},
                        {"duration", &form.duration},
                        {"currency", &form.currency},
                        {"rate", &form.rate},
                        {"bill-to", &form.billTo},
                        {"custom1", &form.custom1},
                        {"custom2", &form.custom2},
                        {"custom3", &form.custom3}}) {
        if (auto v = args.value(box.option)) *box.box = u16(*v);
    }
    if (args.has("billable")) form.billable = true;
    if (args.has("non-billable")) form.billable = false;
    if (args.has("paid")) form.paid = true;
    if (args.has("unpaid")) form.paid = false;
    if (auto t = args.value("rate-type")) {
        std::uint32_t type = 0;
        if (!parseUnsignedArg(*t, &type) || type > 4) {
            ctx.usage("--rate-type takes a rate type from 0 to 4");
            return false;
        }
        form.rateNode = static_cast<std::uint16_t>(type);
    }
    if (auto n = args.value("note")) form.notes = noteBytes(u16(*n));
    return true;
}

// The Billing page's boxes are disabled while the entry is not billable:
// options that would fill them are refused rather than dropped.
bool billingOptionsFit(CommandContext& ctx, const Args& args, const EntryForm& form) {
    if (form.billable) return true;
    for (const char* option : {"rate", "paid", "currency", "bill-to", "rate-type"}) {
        if (args.has(option)) {
            ctx.usage(std::string("--") + option +
                      " is for a billable entry, and this one is not: add --billable");
            return false;
        }
    }
    return true;
}

// OK of the editor: the checks, the save and what the master data learns,
// committed together.
int save(CommandContext& ctx, const Args& args, TimeEntry entry) {
    EntryForm form = formFromEntry(entry);
    if (!fillForm(ctx, args, form) || !billingOptionsFit(ctx, args, form)) return kExitRefused;
    // The Billing page selects the rate of the client now in the General
    // page that matches the entry's rate and type, unless one is chosen.
    if (!args.has("rate-type")) {
        form.rateNode = matchingRateNode(ctx.masters(), form.client, entry.rate, entry.rateType);
    }
    FormResult result = applyForm(form, ctx.settings(), entry);
    if (!result.ok) return ctx.refused(std::u16string(result.message));
    DataFile& file = ctx.platform().file();
    switch (saveEditedEntry(file, ctx.entries(), ctx.masters(), entry)) {
        case EntrySave::kSaved:
            break;
        case EntrySave::kNotStarted:
            return ctx.failed("cannot write to " + file.path());
        case EntrySave::kNotSaved:
            return ctx.failed("cannot save the entry in " + file.path());
    }
    ctx.out << entry.recordOid << "\n";
    return kExitOk;
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

std::string escapedNote(const std::u16string& text) {
    std::string out;
    for (char c : u8(text)) {
        if (c == '\r')
            out += "\\r";
        else if (c == '\n')
            out += "\\n";
        else
            out.push_back(c);
    }
    return out;
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
    o << "note\t" << escapedNote(noteText(e)) << "\n";
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
    if (!ctx.parse(args, 1, kFieldOptions)) return kExitRefused;
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
