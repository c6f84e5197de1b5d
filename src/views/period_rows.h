#pragma once

// The refresh of a period view: the entries of the period that pass the
// filter, in the order "Arrange By" asks for.

#include <cstdint>
#include <vector>

#include "platform/win_types.h"

namespace qb {

class EntryTable;
class PeriodView;
struct EntryFilter;
struct TimeEntry;

// The "Arrange By" keys: 0 date order, 1 client, 2 project, 3 phase,
// 4 task, 5 bill-to, 6 to 8 the custom fields.
inline constexpr std::uint16_t kArrangeKeys = 9;

// The "Arrange By" key of a simple-style column (by its index among the
// eleven), or -1 for the columns that have none (duration, start time).
int simpleColumnArrangeKey(int column);
// The simple-style column of an "Arrange By" key, or -1 (date order).
int arrangedSimpleColumn(std::uint16_t key);

// The comparison of two rows: the key's field, then date and start, then
// task; negative when `a` comes first.
int compareForArrange(const TimeEntry& a, const TimeEntry& b, std::uint16_t key);

// Sorts the rows' entries in place.
void arrangeEntries(std::vector<TimeEntry>& entries, std::uint16_t key);

// The period's entries that pass the filter, in date order.
std::vector<TimeEntry> periodEntries(EntryTable& table, const PeriodView& view,
                                     const EntryFilter& filter);

}  // namespace qb
