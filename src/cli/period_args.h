#pragma once

#include <memory>
#include <vector>

#include "cli/args.h"

namespace qb {

class CommandContext;
class PeriodView;

// --view day|week|month|custom, --date D, --end D, --select D,
// --move next,previous,today,...
std::vector<Args::Option> periodOptions();

// The view the main window would show: made as switching to its kind makes
// it, given its period, then the selection and the navigation steps. False
// after printing a usage error.
bool periodFromArgs(CommandContext& ctx, const Args& args, std::unique_ptr<PeriodView>* out);

}  // namespace qb
