#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/criteria_args.h"
#include "platform/platform.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

int show(CommandContext& ctx, const EntryFilter& f) {
    std::ostream& o = ctx.out;
    o << "client\t" << u8(f.client) << "\n";
    o << "project\t" << u8(f.project) << "\n";
    o << "phase\t" << u8(f.phase) << "\n";
    o << "task\t" << u8(f.task) << "\n";
    o << "billTo\t" << u8(f.billTo) << "\n";
    o << "currency\t" << u8(f.currency) << "\n";
    o << "custom1\t" << u8(f.custom1) << "\n";
    o << "custom2\t" << u8(f.custom2) << "\n";
    o << "custom3\t" << u8(f.custom3) << "\n";
    o << "showUnpaid\t" << (f.showUnpaid ? 1 : 0) << "\n";
    o << "showPaid\t" << (f.showPaid ? 1 : 0) << "\n";
    o << "showNonBillable\t" << (f.showNonBillable ? 1 : 0) << "\n";
    o << "rateType\t" << f.rateType << "\n";
    return kExitOk;
}

int store(CommandContext& ctx, const EntryFilter& f) {
    return f.save(ctx.platform().registry()) ? kExitOk : ctx.failed("cannot save the filter");
}

}  // namespace

int runFilter(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("filter needs show, reset, unpaid or set");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1, verb == "set" ? filterOptions() : std::vector<Args::Option>{})) {
        return kExitRefused;
    }
    EntryFilter filter;
    if (verb == "show") {
        filter.load(ctx.platform().registry());
        return show(ctx, filter);
    }
    if (verb == "reset") return store(ctx, filter);
    if (verb == "unpaid") return store(ctx, unpaidOnlyFilter());
    if (verb == "set") {
        // The dialog's OK starts from a reset filter and takes what is chosen.
        if (!filterFromArgs(ctx, args, &filter)) return kExitRefused;
        return store(ctx, filter);
    }
    return ctx.usage("unknown filter command '" + verb + "'");
}

}  // namespace qb
