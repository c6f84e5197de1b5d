#pragma once

// Dates, times and durations as other trackers write them. Times written in
// UTC (a trailing Z, an offset, Unix seconds) become local wall-clock time
// by the machine's time zone (TZ); local times are taken as written.

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/win_types.h"

namespace qb {

// A point in time read from a file.
struct Moment {
    SYSTEMTIME local{};
    // Seconds since 1970 in UTC when the file said the zone; durations
    // between two such moments count real seconds across a clock change.
    std::optional<std::int64_t> utc;
};

// A day: YYYY-MM-DD, YYYY/MM/DD, DD.MM.YYYY, or M/D/YYYY (D/M/YYYY when the
// first number cannot be a month). False for text that is no date or a
// date that does not exist (2024-02-30).
bool parseDay(std::string_view text, SYSTEMTIME* day);
// A time of day: H:MM, H:MM:SS, with an optional AM/PM. Fills hour, minute
// and second only.
bool parseTimeOfDay(std::string_view text, SYSTEMTIME* time);
// A date and a time in one: "YYYY-MM-DD HH:MM[:SS]", the same with 'T',
// each with an optional fraction, Z or +HH:MM; or the compact
// YYYYMMDDTHHMMSS[Z] of iCalendar and timew.
bool parseMoment(std::string_view text, Moment* out);
// Seconds since 1970 (UTC) as local time. False out of range.
bool momentFromUnix(std::int64_t seconds, Moment* out);
// The day and the time of day as one moment; false for an impossible one.
bool combine(const SYSTEMTIME& day, const SYSTEMTIME& time, Moment* out);
// end - start in seconds.
std::int64_t secondsBetween(const Moment& start, const Moment& end);
// A duration written as [-]H:MM or [-]H:MM:SS (hours may exceed 24).
bool parseClockDuration(std::string_view text, std::int64_t* seconds);

}  // namespace qb
