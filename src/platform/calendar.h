#pragma once

// Conversions between calendar fields and file times. Both are local wall
// time on the proleptic Gregorian calendar; there are no time zones.

#include "platform/win_types.h"

namespace qb {

// Fails on a field out of range (month 1-12, day within its month, hour < 24,
// minute and second < 60, millisecond < 1000, year 1601-30827). The day of
// week is not read.
bool systemTimeToFileTime(const SYSTEMTIME& st, FILETIME* out);

// Fills every field, the day of week too (0 = Sunday). Fails past the end of
// year 30827.
bool fileTimeToSystemTime(FILETIME ft, SYSTEMTIME* out);

// Midnight of the day a file time falls on.
FILETIME startOfDay(FILETIME ft);

// The local clock, or the time in QUILLARBOR_NOW ("YYYY-MM-DDTHH:MM:SS") when
// that is set and valid.
SYSTEMTIME localNow();

// Calendar fields with the day of week filled in (left 0 for an invalid date).
SYSTEMTIME makeDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                    int millisecond = 0);

}  // namespace qb
