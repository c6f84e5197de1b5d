#pragma once

// The amount of an entry. Amounts are never stored: everything that shows
// one computes it here.

#include "app/settings.h"
#include "store/time_entry.h"

namespace qb {

// A fixed rate is the whole amount; otherwise rate × hours, where precise
// calculation (kPreciseCalculation) counts durations whose hours fall
// exactly on .17, .33, .67 or .83 as 10, 20, 40 or 50 minutes. Not rounded.
double EntryAmount(const TimeEntry& entry, const Settings& settings);

}  // namespace qb
