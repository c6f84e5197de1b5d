#pragma once

#include <vector>

#include "cli/args.h"

namespace qb {

class CommandContext;
struct EntryFilter;

// The options of the filter dialog: --client --project --phase --task
// --bill-to --currency --rate-type --no-unpaid --no-paid --no-non-billable.
std::vector<Args::Option> filterOptions();
// The criteria sheet's: --from D --to D, the filter options and the three
// custom fields.
std::vector<Args::Option> criteriaOptions();

// Fills a reset filter from the filter options; false after printing a
// usage error.
bool filterFromArgs(CommandContext& ctx, const Args& args, EntryFilter* filter);
// Fills a reset criteria record; --from and --to are required.
bool criteriaFromArgs(CommandContext& ctx, const Args& args, EntryFilter* filter);

}  // namespace qb
