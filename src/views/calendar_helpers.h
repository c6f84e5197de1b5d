#pragma once

// Date arithmetic shared by the period views. Every helper works on the date
// in place; the ones that go through file ticks leave an invalid date, or a
// result outside the calendar, unchanged and answer false.

#include "platform/win_types.h"

namespace qb {

bool addDays(SYSTEMTIME& date, int n);
bool addMinutes(SYSTEMTIME& date, int n);
bool addSeconds(SYSTEMTIME& date, int n);

// One step of months: a single wrap into the next or previous year, then the
// 1st of that month.
void addMonths(SYSTEMTIME& date, int n);

// Sets the day when 1 <= d <= 31, without checking the month's length.
void setDay(SYSTEMTIME& date, int d);

void clearTime(SYSTEMTIME& date);

// 0 = Sunday ... 6 = Saturday.
int dayOfWeek(const SYSTEMTIME& date);

// The ISO 8601 week of the date.
int isoWeekNumber(const SYSTEMTIME& date);

// Moves the date back to the first day of its week.
void weekStart(SYSTEMTIME& date, bool mondayFirst);

}  // namespace qb
