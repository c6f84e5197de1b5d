#pragma once

// The timesheet: the shown period's entries as a grid of hours, one row
// per client / project / task, one column per day, with row and day
// totals. Hours are summed as stored hundredths.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/date_format.h"
#include "platform/win_types.h"

namespace qb {

struct TimeEntry;

struct TimesheetRow {
    std::u16string client;
    std::u16string project;
    std::u16string task;
    std::vector<std::uint32_t> hours;     // per day, hundredths
    std::vector<std::vector<CEOID>> ids;  // per day, the entries summed there
    std::uint64_t total = 0;
};

struct Timesheet {
    std::vector<SYSTEMTIME> days;
    // By client, project, task, ignoring case.
    std::vector<TimesheetRow> rows;
    std::vector<std::uint64_t> dayTotals;
    std::uint64_t total = 0;
};

// The grid of the rows a refresh shows, for the days first to last (both
// included). Entries outside those days are left out.
Timesheet buildTimesheet(const std::vector<TimeEntry>& rows, const SYSTEMTIME& first,
                         const SYSTEMTIME& last);

// A column's title: the weekday's short name and the day, "Mon 16".
std::u16string timesheetDayTitle(const SYSTEMTIME& day);
// A cell: "1.50", empty for no hours.
std::u16string timesheetCellText(std::uint64_t hundredths);

}  // namespace qb
