#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/criteria_args.h"
#include "entry/done_texts.h"
#include "entry/mark_paid.h"
#include "platform/platform.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"

namespace qb {

// OK of the criteria dialog is the confirmation: no question.
int runMarkPaid(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, criteriaOptions())) return kExitRefused;
    if (!args.positional().empty()) return ctx.usage("mark-paid takes criteria options only");
    EntryFilter filter;
    if (!criteriaFromArgs(ctx, args, &filter)) return kExitRefused;
    MarkPaidResult r =
        markPaidEntries(ctx.platform().file(), ctx.entries(), filter.rangeStart(),
                        filter.rangeEnd(), [&](const TimeEntry& e) { return filter.matches(e); });
    if (!r.ok) return ctx.failed("cannot mark the entries in " + ctx.platform().file().path());
    ctx.out << u8(markPaidDoneText(r.marked)) << "\n";
    return kExitOk;
}

}  // namespace qb
