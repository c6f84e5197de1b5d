#include "views/quick_summary.h"

#include <cmath>
#include <map>

#include "entry/entry_amount.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "views/date_texts.h"

namespace qb {
namespace {

struct IgnoreCase {
    bool operator()(const std::u16string& a, const std::u16string& b) const {
        return compareStringW(a, b, true) < 0;
    }
};

std::u16string fmt(const char* format, double value) {
    return utf8ToUtf16(stringPrintf(format, value));
}

// A share of the total; with nothing to divide by it says so instead of
// printing what the division makes.
std::u16string share(const char* format, double value) {
    if (!std::isfinite(value)) return std::u16string(kUndefinedShare);
    return fmt(format, value);
}

std::u16string periodText(ViewKind kind, const SYSTEMTIME& start, const SYSTEMTIME& end,
                          const LocaleInfo& locale) {
    switch (kind) {
        case kMonthView:
            return yearMonthText(locale, start);
        case kCustomView:
            return shortDateText(locale, start) + u" - " + shortDateText(locale, end);
        default:
            return shortDateText(locale, start);
    }
}

}  // namespace

std::vector<SummaryRow> quickSummary(EntryTable& table, const std::vector<CEOID>& ids,
                                     ViewKind kind, const SYSTEMTIME& start, const SYSTEMTIME& end,
                                     const Settings& settings, const LocaleInfo& locale) {
    double billableHours = 0;
    double nonBillableHours = 0;
    double unpaidAmount = 0;
    double paidAmount = 0;
    std::map<std::u16string, double, IgnoreCase> projectHours;
    TimeEntry entry;
    for (CEOID id : ids) {
        if (!table.seekOid(id) || readEntry(table, entry) != 0) continue;
        double hours = entry.duration * 0.01;
        projectHours[entry.project] += hours;
        if (entry.billable) {
            billableHours += hours;
            (entry.paid ? paidAmount : unpaidAmount) += EntryAmount(entry, settings);
        } else {
            nonBillableHours += hours;
        }
    }
    double totalHours = billableHours + nonBillableHours;
    std::vector<SummaryRow> rows = {
        {u"Period Type:", std::u16string(viewKindName(kind)), u""},
        {u"Period:", periodText(kind, start, end, locale), u""},
        {u"Number of Items:", utf8ToUtf16(stringPrintf("%d", static_cast<int>(ids.size()))), u""},
        {u"", u"", u""},
        {u"Total:", u"", u""},
        {u"Billable Hours:", fmt("%.02fh", billableHours),
         share("%.01f%%", billableHours * 100 / totalHours)},
        {u"Non Billable Hours:", fmt("%.02fh", nonBillableHours),
         share("%.01f%%", nonBillableHours * 100 / totalHours)},
        {u"Hours:", fmt("%.02f", totalHours), u""},
        {u"", u"", u""},
        {u"Total:", u"", u""},
        {u"Unpaid Amount:", fmt("%.02f", unpaidAmount), u""},
        {u"Paid Amount:", fmt("%.02f", paidAmount), u""},
        {u"Amount:", fmt("%.02f", paidAmount + unpaidAmount), u""},
        {u"", u"", u""},
        {u"Total:", u"", u""},
    };
    for (const auto& [project, hours] : projectHours) {
        rows.push_back(
            {project, fmt("%.02fh", hours), share("%.1f%%", (100 / totalHours) * hours)});
    }
    return rows;
}

}  // namespace qb
