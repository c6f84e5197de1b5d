#pragma once

// The one conversion of a number of hours into a stored duration (hundredths
// of an hour), and the arithmetic around the editor's Duration box.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "entry/number_text.h"
#include "platform/win_types.h"

namespace qb {

// The hours of a Duration box: its leading number, the rest ignored
// ("1,5" is 1, "" is 0). See parseNumber.
double parseHours(std::u16string_view text);

// The duration rule. With granularity on (kDurationGranularity), hours that
// are not a whole number of minTime steps go up to the next step; then
// hours × 100, truncated toward zero. A negative result is kept as its
// 16-bit pattern, as the stored field is unsigned.
std::uint16_t durationFromHours(double hours, const Settings& settings);
// The same rule for a span in whole minutes (the start/end dialog) and for
// a timer's elapsed seconds.
std::uint16_t durationFromMinutes(int minutes, const Settings& settings);
std::uint16_t durationFromSeconds(std::uint32_t seconds, const Settings& settings);

// The duration as its box shows it: "%.2f" of the hours.
std::u16string durationText(std::uint16_t duration);

// The step of the Duration drop-down in minutes for a timeInterval choice
// (0 = 10, 1 = 15, 2 = 20, 3 = 30, 4 = 6); an unknown choice steps by 30,
// the default.
int durationStepMinutes(std::uint16_t timeInterval);
// The label of a timeInterval choice on the options page, empty if unknown.
std::u16string_view timeIntervalLabel(std::uint16_t timeInterval);
// The drop-down's items: one step, two steps, ... up to 12 hours.
std::vector<std::u16string> durationItems(std::uint16_t timeInterval);

// Minutes from the start to the end that the start/end dialog proposes for a
// stored duration. Durations of 10, 20, 40 and 50 minutes past a whole hour
// are recognised only when their hours compare exactly equal to .17, .33,
// .67 or .83 as doubles (which in practice only 0.17, 0.33 and 0.67 do).
int endOffsetMinutes(std::uint16_t duration);

// Whole minutes from start to end as the start/end dialog counts them: only
// the times of day matter; an end whose hour is smaller than the start's
// hour is on the next day, otherwise on the same day, so an end a little
// before the start within the same hour gives a negative span.
int spanMinutes(const SYSTEMTIME& start, const SYSTEMTIME& end);

}  // namespace qb
