#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/criteria_args.h"
#include "cli/layout_args.h"
#include "export/export_settings.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "report/report_generator.h"
#include "report/saved_layouts.h"
#include "views/entry_filter.h"

namespace qb {

int runReport(CommandContext& ctx) {
    std::vector<Args::Option> options = criteriaOptions();
    options.push_back({"layout", true});
    Args args;
    if (!ctx.parse(args, 0, options)) return kExitRefused;
    if (args.positional().size() != 1) return ctx.usage("report takes one FILE");
    EntryFilter criteria;
    if (!criteriaFromArgs(ctx, args, &criteria)) return kExitRefused;

    WorkingLayout working = defaultLayout(ctx.platform(), ctx.settings());
    if (auto word = args.value("layout")) {
        if (!layoutFromArg(ctx, *word, &working)) return kExitRefused;
    }
    ReportGenerator generator(ctx.entries(), working.layout,
                              loadExportSettings(ctx.platform().registry(), ctx.settings()),
                              localNow());
    std::string error;
    if (!generator.generate(args.positional()[0], criteria, &error)) {
        return ctx.writeFailed(kReportFailed, error);
    }
    return kExitOk;
}

}  // namespace qb
