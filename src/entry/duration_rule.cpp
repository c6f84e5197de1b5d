#include "entry/duration_rule.h"

#include <cmath>

namespace qb {

namespace {

constexpr std::int64_t kSecondsPerHundredth = 36;

// The step of granularity in seconds; 0 when granularity is off. A minTime
// of 0 would divide by zero: it means no rounding.
std::int64_t granularitySeconds(const Settings& settings) {
    if (!(settings.optionFlags & kDurationGranularity)) return 0;
    return std::int64_t{settings.minTime} * 60;
}

// Up to the next whole step.
std::int64_t roundedUp(std::int64_t seconds, std::int64_t step) {
    return step == 0 ? seconds : (seconds + step - 1) / step * step;
}

std::optional<std::uint16_t> inRange(std::int64_t hundredths) {
    if (hundredths < 0 || hundredths > kMaxDuration) return std::nullopt;
    return static_cast<std::uint16_t>(hundredths);
}

}  // namespace

std::optional<std::uint16_t> durationFromSeconds(std::int64_t seconds, const Settings& settings) {
    // Rounding only adds, so a span already too long is refused before any
    // product can overflow.
    if (seconds < 0 || seconds > (kMaxDuration + 1) * kSecondsPerHundredth) return std::nullopt;
    return inRange(roundedUp(seconds, granularitySeconds(settings)) / kSecondsPerHundredth);
}

std::optional<std::uint16_t> durationFromMinutes(std::int64_t minutes, const Settings& settings) {
    if (minutes < 0 || minutes > kMaxDuration) return std::nullopt;
    return durationFromSeconds(minutes * 60, settings);
}

std::optional<std::uint16_t> durationFromHundredths(std::int64_t hundredths,
                                                    const Settings& settings) {
    if (hundredths < 0 || hundredths > kMaxDuration) return std::nullopt;
    const std::int64_t step = granularitySeconds(settings);
    const std::int64_t seconds = hundredths * kSecondsPerHundredth;
    if (step > 0 && seconds % step != 0) {
        // The whole steps just below, as two rounded decimals show them.
        const std::int64_t below = seconds / step * step;
        if (below > 0 && (below + kSecondsPerHundredth / 2) / kSecondsPerHundredth == hundredths) {
            return static_cast<std::uint16_t>(hundredths);
        }
    }
    return durationFromSeconds(seconds, settings);
}

std::optional<std::uint16_t> durationFromText(std::u16string_view text, const Settings& settings) {
    return durationFromHundredths(parseHundredths(text), settings);
}

std::u16string durationText(std::uint16_t duration) {
    return twoDecimals(duration * 0.01);
}

namespace {

struct Interval {
    int minutes;
    std::u16string_view label;
};
// Index order is the stored choice; 6 minutes came last on purpose.
constexpr Interval kIntervals[] = {
    {10, u"10 Minute"}, {15, u"15 Minute"}, {20, u"20 Minute"},
    {30, u"30 Minute"}, {6, u"6 Minutes"},
};
constexpr std::uint16_t kDefaultInterval = 3;

}  // namespace

int durationStepMinutes(std::uint16_t timeInterval) {
    return kIntervals[timeInterval < std::size(kIntervals) ? timeInterval : kDefaultInterval]
        .minutes;
}

std::u16string_view timeIntervalLabel(std::uint16_t timeInterval) {
    return timeInterval < std::size(kIntervals) ? kIntervals[timeInterval].label
                                                : std::u16string_view();
}

std::vector<std::u16string> durationItems(std::uint16_t timeInterval) {
    const int step = durationStepMinutes(timeInterval);
    std::vector<std::u16string> items;
    for (int minutes = step; minutes <= 720; minutes += step) {
        items.push_back(twoDecimals(minutes / 60.0));
    }
    return items;
}

int endOffsetMinutes(std::uint16_t duration) {
    const double h = duration * 0.01;
    const double whole = std::floor(h);
    const double f = h - whole;
    const int base = static_cast<int>(whole) * 60;
    if (f == 0.17) return base + 10;
    if (f == 0.33) return base + 20;
    if (f == 0.67) return base + 40;
    if (f == 0.83) return base + 50;
    return static_cast<int>(h * 60);
}

namespace {

long long millisecondsOfDay(const SYSTEMTIME& t) {
    return ((t.wHour * 60LL + t.wMinute) * 60 + t.wSecond) * 1000 + t.wMilliseconds;
}

}  // namespace

int spanMinutes(const SYSTEMTIME& start, const SYSTEMTIME& end) {
    long long span = millisecondsOfDay(end) - millisecondsOfDay(start);
    if (end.wHour < start.wHour) span += 24LL * 60 * 60 * 1000;
    return static_cast<int>(span / 60000);
}

}  // namespace qb
