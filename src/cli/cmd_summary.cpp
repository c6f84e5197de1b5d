#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/period_args.h"
#include "platform/platform.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"
#include "views/period_rows.h"
#include "views/period_view.h"
#include "views/quick_summary.h"

namespace qb {

int runSummary(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, periodOptions())) return kExitRefused;
    if (!args.positional().empty()) return ctx.usage("summary takes options only");
    std::unique_ptr<PeriodView> view;
    if (!periodFromArgs(ctx, args, &view)) return kExitRefused;
    EntryFilter filter;
    filter.load(ctx.platform().registry());
    std::vector<TimeEntry> rows = periodEntries(ctx.entries(), *view, filter);
    arrangeEntries(rows, ctx.settings().sort);
    std::vector<CEOID> ids;
    for (const TimeEntry& e : rows) ids.push_back(e.recordOid);
    SYSTEMTIME start, end;
    view->getPeriod(&start, &end);
    LocaleInfo locale = loadLocaleInfo(ctx.platform().registry());
    for (const SummaryRow& row :
         quickSummary(ctx.entries(), ids, view->kind(), start, end, ctx.settings(), locale)) {
        ctx.out << u8(row[0]) << "\t" << u8(row[1]) << "\t" << u8(row[2]) << "\n";
    }
    return kExitOk;
}

}  // namespace qb
