#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/entry_listing.h"
#include "cli/period_args.h"
#include "entry/entry_amount.h"
#include "platform/date_format.h"
#include "platform/platform.h"
#include "platform/string_printf.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"
#include "views/entry_rows.h"
#include "views/entry_tree.h"
#include "views/period_rows.h"
#include "views/period_view.h"

namespace qb {
namespace {

void printRecords(CommandContext& ctx, const std::vector<TimeEntry>& rows) {
    ctx.out << entryListingHeader();
    for (const TimeEntry& e : rows) ctx.out << entryListingRow(e, ctx.settings());
}

void printTree(std::ostream& o, const std::vector<std::unique_ptr<TreeNode>>& nodes, int depth) {
    for (const auto& node : nodes) {
        o << std::string(2 * depth, ' ') << u8(node->text) << "\n";
        printTree(o, node->children, depth + 1);
    }
}

template <typename Cells>
void printJoined(std::ostream& o, const Cells& cells) {
    bool first = true;
    for (const auto& cell : cells) {
        if (!first) o << "\t";
        o << u8(cell);
        first = false;
    }
    o << "\n";
}

}  // namespace

int runList(CommandContext& ctx) {
    std::vector<Args::Option> options = periodOptions();
    options.push_back({"rows", true});
    Args args;
    if (!ctx.parse(args, 0, options)) return kExitRefused;
    if (!args.positional().empty()) return ctx.usage("list takes options only");
    std::string rows = args.value("rows").value_or("");
    if (!rows.empty() && rows != "default" && rows != "simple" && rows != "tree") {
        return ctx.usage("--rows is default, simple or tree");
    }
    std::unique_ptr<PeriodView> view;
    if (!periodFromArgs(ctx, args, &view)) return kExitRefused;
    Settings& settings = ctx.settings();
    EntryFilter filter;
    filter.load(ctx.platform().registry());
    std::vector<TimeEntry> entries = periodEntries(ctx.entries(), *view, filter);
    LocaleInfo locale = loadLocaleInfo(ctx.platform().registry());
    if (rows == "tree") {
        EntryTree tree(locale, settings);
        for (const TimeEntry& e : entries) tree.add(e);
        printTree(ctx.out, tree.roots(), 0);
        return kExitOk;
    }
    arrangeEntries(entries, settings.sort);
    if (rows.empty()) {
        printRecords(ctx, entries);
    } else if (rows == "default") {
        ListDisplay display = listDisplayOf(settings);
        for (const TimeEntry& e : entries) {
            printJoined(ctx.out, defaultRowLines(e, view->kind(), display, locale));
        }
    } else {
        for (const TimeEntry& e : entries) printJoined(ctx.out, simpleRowCells(e, locale));
    }
    return kExitOk;
}

}  // namespace qb
