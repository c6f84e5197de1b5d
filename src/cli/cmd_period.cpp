#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/period_args.h"
#include "platform/date_format.h"
#include "platform/platform.h"
#include "views/period_view.h"

namespace qb {

int runPeriod(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, periodOptions())) return kExitRefused;
    if (!args.positional().empty()) return ctx.usage("period takes options only");
    std::unique_ptr<PeriodView> view;
    if (!periodFromArgs(ctx, args, &view)) return kExitRefused;
    SYSTEMTIME start, end;
    view->getPeriod(&start, &end);
    LocaleInfo locale = loadLocaleInfo(ctx.platform().registry());
    ctx.out << u8(view->label(locale)) << "\t" << isoDateTime(start) << "\t" << isoDateTime(end)
            << "\n";
    return kExitOk;
}

}  // namespace qb
