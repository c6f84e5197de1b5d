#pragma once

// The tab-separated entry rows of `list`, which `import --dry-run` prints
// too (with the id column empty for entries not yet stored).

#include <string>

#include "app/settings.h"

namespace qb {

struct TimeEntry;

// The header line, LF included.
const char* entryListingHeader();
// One entry's line, LF included.
std::string entryListingRow(const TimeEntry& entry, const Settings& settings);

}  // namespace qb
