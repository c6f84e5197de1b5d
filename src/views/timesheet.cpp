#include "views/timesheet.h"

#include <algorithm>

#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/time_entry.h"
#include "views/calendar_helpers.h"
#include "views/period_totals.h"

namespace qb {
namespace {

constexpr const char* kWeekdays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

// Days since a fixed origin, for the column of an entry's date.
long dayNumber(const SYSTEMTIME& d) {
    SYSTEMTIME day = makeDate(d.wYear, d.wMonth, d.wDay);
    FILETIME ft = 0;
    systemTimeToFileTime(day, &ft);
    return static_cast<long>(ft / 864000000000ull);
}

int compareRows(const TimesheetRow& a, const TimesheetRow& b) {
    if (int c = compareStringW(a.client, b.client, true)) return c;
    if (int c = compareStringW(a.project, b.project, true)) return c;
    return compareStringW(a.task, b.task, true);
}

}  // namespace

Timesheet buildTimesheet(const std::vector<TimeEntry>& rows, const SYSTEMTIME& first,
                         const SYSTEMTIME& last) {
    Timesheet sheet;
    SYSTEMTIME day = makeDate(first.wYear, first.wMonth, first.wDay);
    long firstDay = dayNumber(first);
    long lastDay = dayNumber(last);
    // A period is at most a few hundred days; a custom period of years
    // still gets one column a day.
    for (long n = firstDay; n <= lastDay; ++n) {
        sheet.days.push_back(day);
        addDays(day, 1);
    }
    const std::size_t columns = sheet.days.size();
    sheet.dayTotals.assign(columns, 0);
    for (const TimeEntry& e : rows) {
        SYSTEMTIME when{};
        if (!fileTimeToSystemTime(e.date, &when)) continue;
        long column = dayNumber(when) - firstDay;
        if (column < 0 || column >= static_cast<long>(columns)) continue;
        TimesheetRow key;
        key.client = e.client;
        key.project = e.project;
        key.task = e.task;
        auto at = std::lower_bound(
            sheet.rows.begin(), sheet.rows.end(), key,
            [](const TimesheetRow& a, const TimesheetRow& b) { return compareRows(a, b) < 0; });
        if (at == sheet.rows.end() || compareRows(*at, key) != 0) {
            key.hours.assign(columns, 0);
            key.ids.assign(columns, {});
            at = sheet.rows.insert(at, std::move(key));
        }
        at->hours[column] += e.duration;
        at->ids[column].push_back(e.recordOid);
        at->total += e.duration;
        sheet.dayTotals[column] += e.duration;
        sheet.total += e.duration;
    }
    return sheet;
}

std::u16string timesheetDayTitle(const SYSTEMTIME& day) {
    int weekday = dayOfWeek(day);
    return utf8ToUtf16(
        stringPrintf("%s %u", kWeekdays[weekday >= 0 && weekday < 7 ? weekday : 0], day.wDay));
}

std::u16string timesheetCellText(std::uint64_t hundredths) {
    return hundredths == 0 ? std::u16string() : hoursText(hundredths);
}

}  // namespace qb
