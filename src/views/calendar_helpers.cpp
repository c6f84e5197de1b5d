#include "views/calendar_helpers.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "platform/calendar.h"

namespace qb {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kTicksPerMinute = 60 * kTicksPerSecond;
constexpr std::int64_t kTicksPerDay = 1440 * kTicksPerMinute;

bool addTicks(SYSTEMTIME& date, int n, std::int64_t ticksPerUnit) {
    if (n == 0) return true;
    if (std::llabs(n) > INT64_MAX / ticksPerUnit) return false;
    FILETIME ft;
    if (!systemTimeToFileTime(date, &ft)) return false;
    // Unsigned wrap-around: a result before 1601 lands far past the last
    // convertible time and is refused below.
    ft += static_cast<std::uint64_t>(n * ticksPerUnit);
    SYSTEMTIME moved;
    if (!fileTimeToSystemTime(ft, &moved)) return false;
    date = moved;
    return true;
}

}  // namespace

bool addDays(SYSTEMTIME& date, int n) {
    return addTicks(date, n, kTicksPerDay);
}
bool addMinutes(SYSTEMTIME& date, int n) {
    return addTicks(date, n, kTicksPerMinute);
}
bool addSeconds(SYSTEMTIME& date, int n) {
    return addTicks(date, n, kTicksPerSecond);
}

void addMonths(SYSTEMTIME& date, int n) {
    int month = date.wMonth + n;
    int year = date.wYear;
    if (n >= 1) {
        if (month > 12) {
            month %= 12;
            ++year;
        }
    } else if (month < 1) {
        month += 12;
        --year;
    }
    date.wMonth = static_cast<std::uint16_t>(month);
    date.wYear = static_cast<std::uint16_t>(year);
    date.wDay = 1;
    date.wDayOfWeek = static_cast<std::uint16_t>(dayOfWeek(date));
}

void setDay(SYSTEMTIME& date, int d) {
    if (d < 1 || d > 31) return;
    date.wDay = static_cast<std::uint16_t>(d);
    date.wDayOfWeek = static_cast<std::uint16_t>(dayOfWeek(date));
}

void clearTime(SYSTEMTIME& date) {
    date.wHour = 0;
    date.wMinute = 0;
    date.wSecond = 0;
    date.wMilliseconds = 0;
}

int dayOfWeek(const SYSTEMTIME& date) {
    // A Zeller-style congruence; January and February belong to the year
    // before, as months 13 and 14.
    double m = date.wMonth;
    double y = date.wYear;
    if (m < 3) {
        m += 12;
        y -= 1;
    }
    double h = std::fmod(date.wDay + 2 * m + std::floor(0.6 * (m + 1)) + y + std::floor(y / 4) -
                             std::floor(y / 100) + std::floor(y / 400) + 2,
                         7);
    if (h < 0) h += 7;  // only for years before 1, which no valid date has
    static constexpr int kToSundayFirst[] = {6, 0, 1, 2, 3, 4, 5};
    return kToSundayFirst[static_cast<int>(h)];
}

int isoWeekNumber(const SYSTEMTIME& date) {
    const long a = (14 - date.wMonth) / 12;
    const long y = date.wYear + 4800 - a;
    const long jdn = date.wDay + (153 * (date.wMonth + 12 * a) - 457) / 5 + 365 * y + y / 4 -
                     y / 100 + y / 400 - 32045;
    const long d4 = (((jdn + 31741 - (jdn % 7)) % 146097) % 36524) % 1461;
    const long l = d4 / 1460;
    const long d1 = ((d4 - l) % 365) + l;
    return static_cast<int>(d1 / 7 + 1);
}

void weekStart(SYSTEMTIME& date, bool mondayFirst) {
    const int w = dayOfWeek(date);
    const int offset = mondayFirst ? (w == 0 ? 6 : w - 1) : w;
    addDays(date, -offset);
}

}  // namespace qb
