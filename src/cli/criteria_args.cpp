#include "cli/criteria_args.h"

#include "cli/cli_text.h"
#include "cli/command.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

struct TextCriterion {
    const char* option;
    std::u16string EntryFilter::*field;
};
constexpr TextCriterion kFilterTexts[] = {
    {"client", &EntryFilter::client},  {"project", &EntryFilter::project},
    {"phase", &EntryFilter::phase},    {"task", &EntryFilter::task},
    {"bill-to", &EntryFilter::billTo}, {"currency", &EntryFilter::currency},
};
constexpr TextCriterion kCustomTexts[] = {
    {"custom1", &EntryFilter::custom1},
    {"custom2", &EntryFilter::custom2},
    {"custom3", &EntryFilter::custom3},
};

void fillTexts(const Args& args, EntryFilter* filter, const TextCriterion* begin,
               const TextCriterion* end) {
    for (const TextCriterion* t = begin; t != end; ++t) {
        if (auto v = args.value(t->option)) filter->*t->field = u16(*v);
    }
}

}  // namespace

std::vector<Args::Option> filterOptions() {
    return {
        {"client", true},   {"project", true},         {"phase", true},     {"task", true},
        {"bill-to", true},  {"currency", true},        {"rate-type", true}, {"no-unpaid", false},
        {"no-paid", false}, {"no-non-billable", false}};
}

std::vector<Args::Option> criteriaOptions() {
    std::vector<Args::Option> options = filterOptions();
    options.insert(
        options.end(),
        {{"from", true}, {"to", true}, {"custom1", true}, {"custom2", true}, {"custom3", true}});
    return options;
}

bool filterFromArgs(CommandContext& ctx, const Args& args, EntryFilter* filter) {
    filter->reset();
    fillTexts(args, filter, std::begin(kFilterTexts), std::end(kFilterTexts));
    if (auto t = args.value("rate-type")) {
        std::uint32_t type = 0;
        if (!parseUnsignedArg(*t, &type) || type > 4) {
            ctx.usage("--rate-type takes a rate type from 0 to 4");
            return false;
        }
        filter->rateType = static_cast<std::int32_t>(type);
    }
    filter->showUnpaid = !args.has("no-unpaid");
    filter->showPaid = !args.has("no-paid");
    filter->showNonBillable = !args.has("no-non-billable");
    return true;
}

bool criteriaFromArgs(CommandContext& ctx, const Args& args, EntryFilter* filter) {
    if (!filterFromArgs(ctx, args, filter)) return false;
    fillTexts(args, filter, std::begin(kCustomTexts), std::end(kCustomTexts));
    auto from = args.value("from");
    auto to = args.value("to");
    if (!from || !to) {
        ctx.usage("give the dates with --from YYYY-MM-DD and --to YYYY-MM-DD");
        return false;
    }
    if (!parseDateArg(*from, &filter->start)) {
        ctx.usage(dateArgProblem("--from", *from));
        return false;
    }
    if (!parseDateArg(*to, &filter->end)) {
        ctx.usage(dateArgProblem("--to", *to));
        return false;
    }
    return true;
}

}  // namespace qb
