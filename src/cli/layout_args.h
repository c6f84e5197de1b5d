#pragma once

#include <string>

#include "report/saved_layouts.h"

namespace qb {

class CommandContext;

// The layout a word names: the built-in "client" or "date", else a saved
// layout by its name. False after printing why.
bool layoutFromArg(CommandContext& ctx, const std::string& word, WorkingLayout* out);
// Prints that no saved layout has that name; answers the exit status.
int noSuchLayout(CommandContext& ctx, const std::string& name);

}  // namespace qb
