#pragma once

// What the quick summary's charts draw: the hours and amounts of the same
// rows its table totals, by project, client, day, billable state and
// currency. Hours are summed as stored hundredths; amounts come from
// EntryAmount, one currency apart from another.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/win_types.h"
#include "views/period_totals.h"

namespace qb {

class EntryTable;
struct Settings;

struct ChartBar {
    std::u16string label;
    std::uint64_t hours = 0;  // hundredths
};

struct SummaryCharts {
    // Most hours first, then by name. Names that differ only in letter case
    // share a bar under the first spelling met, as in the summary's rows;
    // an entry without a project counts under the empty name.
    std::vector<ChartBar> projects;
    std::vector<ChartBar> clients;
    // One bar a day of the period, in date order, empty days included.
    std::vector<ChartBar> days;
    std::uint64_t billableHours = 0;
    std::uint64_t nonBillableHours = 0;
    // Paid and unpaid amounts of each currency, as the totals bar has them.
    std::vector<CurrencyAmount> amounts;
};

// The charts of the entries `ids` (the list's rows) over the days first to
// last, both included; an entry outside them counts everywhere but in the
// days.
SummaryCharts summaryCharts(EntryTable& table, const std::vector<CEOID>& ids,
                            const SYSTEMTIME& first, const SYSTEMTIME& last,
                            const Settings& settings);

// At most `limit` (two or more) bars: the first limit - 1 and one more, "Other (n)", that
// holds the hours of the n bars left out. Fewer bars are kept as they are.
std::vector<ChartBar> topBars(const std::vector<ChartBar>& bars, std::size_t limit);

// A bar of the amounts chart: the currency, or "No currency".
std::u16string currencyLabel(const std::u16string& currency);

}  // namespace qb
