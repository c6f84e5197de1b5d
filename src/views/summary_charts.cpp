#include "views/summary_charts.h"

#include <algorithm>
#include <map>

#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "views/timesheet.h"

namespace qb {
namespace {

// A week's bars have room for the weekday; a month's only for the day.
constexpr std::size_t kNamedDays = 7;

struct IgnoreCase {
    bool operator()(const std::u16string& a, const std::u16string& b) const {
        return compareStringW(a, b, true) < 0;
    }
};
using HoursByName = std::map<std::u16string, std::uint64_t, IgnoreCase>;

// Most hours first; the map's order (by name) among equals.
std::vector<ChartBar> byHours(const HoursByName& hours) {
    std::vector<ChartBar> bars;
    bars.reserve(hours.size());
    for (const auto& [name, h] : hours) bars.push_back({name, h});
    std::stable_sort(bars.begin(), bars.end(),
                     [](const ChartBar& a, const ChartBar& b) { return a.hours > b.hours; });
    return bars;
}

std::u16string dayLabel(const SYSTEMTIME& day, std::size_t days) {
    if (days <= kNamedDays) return timesheetDayTitle(day);
    return utf8ToUtf16(stringPrintf("%u", static_cast<unsigned>(day.wDay)));
}

}  // namespace

SummaryCharts summaryCharts(EntryTable& table, const std::vector<CEOID>& ids,
                            const SYSTEMTIME& first, const SYSTEMTIME& last,
                            const Settings& settings) {
    std::vector<TimeEntry> rows;
    rows.reserve(ids.size());
    HoursByName projects;
    HoursByName clients;
    TimeEntry entry;
    for (CEOID id : ids) {
        if (!table.seekOid(id) || readEntry(table, entry) != 0) continue;
        projects[entry.project] += entry.duration;
        clients[entry.client] += entry.duration;
        rows.push_back(entry);
    }

    SummaryCharts charts;
    charts.projects = byHours(projects);
    charts.clients = byHours(clients);
    // The timesheet already puts each entry on its day of the period.
    const Timesheet sheet = buildTimesheet(rows, first, last);
    for (std::size_t d = 0; d < sheet.days.size(); ++d) {
        charts.days.push_back({dayLabel(sheet.days[d], sheet.days.size()), sheet.dayTotals[d]});
    }
    PeriodTotals totals = periodTotals(rows, settings);
    charts.billableHours = totals.billableHours;
    charts.nonBillableHours = totals.hours - totals.billableHours;
    charts.amounts = std::move(totals.amounts);
    return charts;
}

std::vector<ChartBar> topBars(const std::vector<ChartBar>& bars, std::size_t limit) {
    if (bars.size() <= limit || limit < 2) return bars;
    std::vector<ChartBar> top(bars.begin(), bars.begin() + static_cast<long>(limit - 1));
    ChartBar other;
    for (std::size_t i = limit - 1; i < bars.size(); ++i) other.hours += bars[i].hours;
    other.label = utf8ToUtf16(stringPrintf("Other (%zu)", bars.size() - (limit - 1)));
    top.push_back(std::move(other));
    return top;
}

std::u16string currencyLabel(const std::u16string& currency) {
    return currency.empty() ? u"No currency" : currency;
}

}  // namespace qb
