#pragma once

// The date and time texts that lists, labels and reports show, all in the
// user's formats.

#include <string>

#include "platform/date_format.h"
#include "platform/win_types.h"

namespace qb {

// The short date ("11/21/2026").
std::u16string shortDateText(const LocaleInfo& locale, const SYSTEMTIME& date);
std::u16string shortDateText(const LocaleInfo& locale, FILETIME date);
// A time in the user's format without seconds ("9:30 AM").
std::u16string shortTimeText(const LocaleInfo& locale, const SYSTEMTIME& time);

// The long date with "MMMM" shortened to "MMM" ("Saturday, Nov 21, 2026"),
// or the short date when the long format holds a quoted literal.
std::u16string commonDateText(const LocaleInfo& locale, const SYSTEMTIME& date);
// The same without the weekday ("Nov 21, 2026").
std::u16string dateWithoutWeekdayText(const LocaleInfo& locale, const SYSTEMTIME& date);
// The user's year-month format ("November 2026").
std::u16string yearMonthText(const LocaleInfo& locale, const SYSTEMTIME& date);

}  // namespace qb
