#include <ostream>

#include "cli/command.h"
#include "cli/criteria_args.h"
#include "export/csv_export.h"
#include "export/export_settings.h"
#include "export/xml_export.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

constexpr std::u16string_view kExportFailed =
    u"Export failed. Please make sure there is enough storage space and try agin.";

}  // namespace

int runExport(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("export needs csv or xml");
    const std::string& format = ctx.words()[0];
    if (format != "csv" && format != "xml") {
        return ctx.usage("unknown export format '" + format + "'");
    }
    Args args;
    if (!ctx.parse(args, 1, criteriaOptions())) return kExitRefused;
    if (args.positional().size() != 1) return ctx.usage("export " + format + " takes one FILE");
    EntryFilter criteria;
    if (!criteriaFromArgs(ctx, args, &criteria)) return kExitRefused;

    const ExportSettings env = loadExportSettings(ctx.platform().registry(), ctx.settings());
    const std::string& file = args.positional()[0];
    std::string error;
    const bool ok = format == "csv" ? ExportCsv(ctx.entries(), file, criteria, env, &error)
                                    : ExportXml(ctx.entries(), file, criteria, env, &error);
    return ok ? kExitOk : ctx.writeFailed(kExportFailed, error);
}

}  // namespace qb
