#pragma once

// The quick summary: the totals of the rows the entry list shows.

#include <array>
#include <string>
#include <vector>

#include "platform/date_format.h"
#include "platform/win_types.h"
#include "views/period_view.h"

namespace qb {

class EntryTable;
struct Settings;

using SummaryRow = std::array<std::u16string, 3>;

// What a share shows when there are no hours to divide by.
inline constexpr std::u16string_view kUndefinedShare = u"n/a";

// The rows of the summary for the given list rows, period and view kind.
std::vector<SummaryRow> quickSummary(EntryTable& table, const std::vector<CEOID>& ids,
                                     ViewKind kind, const SYSTEMTIME& start, const SYSTEMTIME& end,
                                     const Settings& settings, const LocaleInfo& locale);

}  // namespace qb
