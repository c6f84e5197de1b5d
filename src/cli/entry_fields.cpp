#include "cli/entry_fields.h"

#include "cli/cli_text.h"
#include "cli/command.h"
#include "entry/entry_form.h"
#include "entry/note_text.h"
#include "entry/rate_setup.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "store/entry_save.h"
#include "store/time_entry.h"

namespace qb {
namespace {

const std::vector<Args::Option> kFields = {
    {"date", true},      {"start", true},         {"no-start", false}, {"client", true},
    {"project", true},   {"phase", true},         {"task", true},      {"duration", true},
    {"billable", false}, {"non-billable", false}, {"paid", false},     {"unpaid", false},
    {"currency", true},  {"rate", true},          {"rate-type", true}, {"bill-to", true},
    {"custom1", true},   {"custom2", true},       {"custom3", true},   {"note", true}};

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

}  // namespace

const std::vector<Args::Option>& entryFieldOptions() {
    return kFields;
}

int saveEntryFields(CommandContext& ctx, const Args& args, TimeEntry& entry) {
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
    return kExitOk;
}

}  // namespace qb
