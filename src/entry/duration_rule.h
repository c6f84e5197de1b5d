#pragma once

// The one conversion of a number of hours into a stored duration (hundredths
// of an hour), and the arithmetic around the editor's Duration box.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "entry/number_text.h"
#include "platform/win_types.h"

namespace qb {

// The longest duration the stored 16-bit field holds: 655.35 hours.
inline constexpr std::uint16_t kMaxDuration = 65535;
inline constexpr std::u16string_view kDurationRangeMessage =
    u"Duration must be between 0 and 655.35 hours.";

// The duration rule, the only way a typed or counted time becomes a stored
// duration (hundredths of an hour). Granularity (kDurationGranularity with a
// minTime step) is decided in whole seconds: a time that is not a whole
// number of steps goes up to the next step, never to the nearest; then the
// hours are cut after the second decimal. A time below 0 or beyond
// kMaxDuration (after the rounding) answers none: the caller refuses it with
// kDurationRangeMessage, nothing is wrapped.
//
// Typed hours, exact in hundredths (parseHundredths of the box). A typed
// value that shows a whole number of steps as the Duration drop-down shows
// it (two decimals, rounded: 0.67 for 40 minutes) counts as that many steps,
// so every item of the drop-down stays as it reads.
std::optional<std::uint16_t> durationFromHundredths(std::int64_t hundredths,
                                                    const Settings& settings);
// The text of a Duration box: its leading number (the rest ignored, "1,5"
// is 1, "" is 0), cut after the second decimal in decimal.
std::optional<std::uint16_t> durationFromText(std::u16string_view text, const Settings& settings);
// A counted span: a timer's elapsed seconds, the start/end dialog's minutes.
// 50 minutes with 10-minute steps is 0.83; 100 minutes with 20-minute steps
// is 1.66.
std::optional<std::uint16_t> durationFromSeconds(std::int64_t seconds, const Settings& settings);
std::optional<std::uint16_t> durationFromMinutes(std::int64_t minutes, const Settings& settings);

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
