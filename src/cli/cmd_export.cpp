#include <ostream>

#include "cli/command.h"
#include "cli/criteria_args.h"
#include "export/csv_export.h"
#include "export/export_settings.h"
#include "export/xml_export.h"
#include "import/ical_export.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

constexpr std::u16string_view kExportFailed =
    u"Export failed. Please make sure there is enough storage space and try agin.";

}  // namespace

int runExport(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("export needs csv, xml or ical");
    const std::string& format = ctx.words()[0];
    if (format != "csv" && format != "xml" && format != "ical") {
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
    bool ok = false;
    if (format == "csv") {
        ok = ExportCsv(ctx.entries(), file, criteria, env, &error);
    } else if (format == "xml") {
        ok = ExportXml(ctx.entries(), file, criteria, env, &error);
    } else {
        ok = ExportIcal(ctx.entries(), file, criteria, &error);
    }
    return ok ? kExitOk : ctx.writeFailed(kExportFailed, error);
}

}  // namespace qb
