#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/entry_listing.h"
#include "entry/file_bytes.h"
#include "import/import_pipeline.h"
#include "import/readers.h"
#include "platform/platform.h"
#include "store/tables.h"

namespace qb {
namespace {

const std::vector<Args::Option> kImportOptions = {
    {"dry-run", false},  {"client", true},        {"project", true}, {"task", true},
    {"billable", false}, {"non-billable", false}, {"rate", true},    {"currency", true},
};

constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 30;

std::string place(ImportFormat format, std::size_t line) {
    return std::string(countsRecords(format) ? "record " : "line ") + std::to_string(line);
}

}  // namespace

int runImport(CommandContext& ctx) {
    Args args;
    if (!ctx.parse(args, 0, kImportOptions)) return kExitRefused;
    if (args.positional().size() != 2) return ctx.usage("import takes FORMAT and FILE");
    const std::optional<ImportFormat> format = importFormatNamed(args.positional()[0]);
    if (!format) return ctx.usage("unknown import format '" + args.positional()[0] + "'");
    const std::string& path = args.positional()[1];
    ImportOptions options;
    options.client = u16(args.value("client").value_or(""));
    options.project = u16(args.value("project").value_or(""));
    options.task = u16(args.value("task").value_or(""));
    options.rate = u16(args.value("rate").value_or(""));
    options.currency = u16(args.value("currency").value_or(""));
    if (args.has("billable")) options.billable = true;
    if (args.has("non-billable")) options.billable = false;
    std::string bytes;
    if (!readWholeFile(path, kLargestFile, &bytes)) return ctx.failed("cannot read " + path);

    const bool dryRun = args.has("dry-run");
    ImportTarget target{ctx.platform().file(), ctx.entries(), ctx.masters(), ctx.settings()};
    if (dryRun) ctx.out << entryListingHeader();
    const ImportSummary summary =
        importFile(*format, bytes, options, target, dryRun, [&](const RowOutcome& row) {
            if (row.fate == RowFate::kRefused) {
                ctx.err << path << ": " << place(*format, row.line) << ": " << row.reason << "\n";
            } else if (dryRun && row.fate == RowFate::kAdded) {
                ctx.out << entryListingRow(row.entry, ctx.settings());
            }
        });
    if (summary.status == ImportStatus::kUnreadable) {
        ctx.err << path << ": ";
        if (summary.read.line > 0) ctx.err << place(*format, summary.read.line) << ": ";
        ctx.err << summary.read.reason << "\n";
    }
    ctx.out << summaryLine(summary) << "\n";
    switch (summary.status) {
        case ImportStatus::kDone:
            return kExitOk;
        case ImportStatus::kRefused:
        case ImportStatus::kUnreadable:
            ctx.err << "Nothing of " << path << " was imported.\n";
            return kExitRefused;
        case ImportStatus::kFailed:
            break;
    }
    return ctx.failed("cannot save the imported entries in " + ctx.platform().file().path());
}

}  // namespace qb
