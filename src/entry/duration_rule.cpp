#include "entry/duration_rule.h"

#include <cmath>

namespace qb {

double parseHours(std::u16string_view text) {
    return parseNumber(text);
}

std::uint16_t durationFromHours(double hours, const Settings& settings) {
    double h = hours;
    // A granularity of 0 minutes would divide by zero; it means no rounding.
    if ((settings.optionFlags & kDurationGranularity) && settings.minTime > 0) {
        const double step = settings.minTime / 60.0;
        const double q = h / step;
        double whole = 0.0;
        // Always up to the next step, never to the nearest; a negative
        // quotient has no positive fraction and is left alone.
        if (std::modf(q, &whole) > 0.0) h = std::ceil(q) * step;
    }
    return static_cast<std::uint16_t>(truncateToInt32(h * 100));
}

std::uint16_t durationFromMinutes(int minutes, const Settings& settings) {
    return durationFromHours(minutes / 60.0, settings);
}

std::uint16_t durationFromSeconds(std::uint32_t seconds, const Settings& settings) {
    return durationFromHours(seconds / 3600.0, settings);
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
