#include "platform/calendar.h"

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace qb {
namespace {

constexpr std::uint64_t kTicksPerMillisecond = 10'000;
constexpr std::uint64_t kTicksPerSecond = 1000 * kTicksPerMillisecond;
constexpr std::uint64_t kTicksPerDay = 86'400 * kTicksPerSecond;
constexpr int kFirstYear = 1601;
constexpr int kLastYear = 30827;

// Days since 1970-01-01 of a Gregorian date; valid for any year.
constexpr std::int64_t daysFromCivil(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2 ? 1 : 0;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

struct Civil {
    std::int64_t year;
    unsigned month;
    unsigned day;
};

constexpr Civil civilFromDays(std::int64_t z) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const auto doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const unsigned d = doy - (153 * mp + 2) / 5 + 1;
    const unsigned m = mp < 10 ? mp + 3 : mp - 9;
    return {static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2 ? 1 : 0), m, d};
}

constexpr std::int64_t kEpochDays = daysFromCivil(kFirstYear, 1, 1);
constexpr std::uint64_t kEndTicks =
    static_cast<std::uint64_t>(daysFromCivil(kLastYear + 1, 1, 1) - kEpochDays) * kTicksPerDay;

bool isLeapYear(int y) {
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int daysInMonth(int y, int m) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && isLeapYear(y) ? 29 : kDays[m - 1];
}

// 1601-01-01 was a Monday.
std::uint16_t weekdayOfDayNumber(std::int64_t daysSince1601) {
    return static_cast<std::uint16_t>((daysSince1601 + 1) % 7);
}

// Reads exactly `n` digits; false on anything else.
bool readDigits(std::string_view s, std::size_t pos, std::size_t n, int* out) {
    int v = 0;
    for (std::size_t i = pos; i < pos + n; ++i) {
        if (s[i] < '0' || s[i] > '9') return false;
        v = v * 10 + (s[i] - '0');
    }
    *out = v;
    return true;
}

bool parseOverride(std::string_view s, SYSTEMTIME* out) {
    if (s.size() != 19 || s[4] != '-' || s[7] != '-' || s[10] != 'T' || s[13] != ':' ||
        s[16] != ':') {
        return false;
    }
    int y, mo, d, h, mi, sec;
    if (!readDigits(s, 0, 4, &y) || !readDigits(s, 5, 2, &mo) || !readDigits(s, 8, 2, &d) ||
        !readDigits(s, 11, 2, &h) || !readDigits(s, 14, 2, &mi) || !readDigits(s, 17, 2, &sec)) {
        return false;
    }
    const SYSTEMTIME st = makeDate(y, mo, d, h, mi, sec);
    FILETIME ft;
    if (!systemTimeToFileTime(st, &ft)) return false;
    *out = st;
    return true;
}

}  // namespace

bool systemTimeToFileTime(const SYSTEMTIME& st, FILETIME* out) {
    const int y = st.wYear;
    const int m = st.wMonth;
    if (y < kFirstYear || y > kLastYear || m < 1 || m > 12 || st.wDay < 1 ||
        st.wDay > daysInMonth(y, m) || st.wHour > 23 || st.wMinute > 59 || st.wSecond > 59 ||
        st.wMilliseconds > 999) {
        return false;
    }
    const auto days = static_cast<std::uint64_t>(daysFromCivil(y, m, st.wDay) - kEpochDays);
    const std::uint64_t seconds = st.wHour * 3600u + st.wMinute * 60u + st.wSecond;
    *out =
        days * kTicksPerDay + seconds * kTicksPerSecond + st.wMilliseconds * kTicksPerMillisecond;
    return true;
}

FILETIME startOfDay(FILETIME ft) {
    return ft - ft % kTicksPerDay;
}

bool fileTimeToSystemTime(FILETIME ft, SYSTEMTIME* out) {
    if (ft >= kEndTicks) return false;
    const auto days = static_cast<std::int64_t>(ft / kTicksPerDay);
    const std::uint64_t ticksOfDay = ft % kTicksPerDay;
    const Civil c = civilFromDays(days + kEpochDays);
    const std::uint64_t seconds = ticksOfDay / kTicksPerSecond;
    out->wYear = static_cast<std::uint16_t>(c.year);
    out->wMonth = static_cast<std::uint16_t>(c.month);
    out->wDay = static_cast<std::uint16_t>(c.day);
    out->wDayOfWeek = weekdayOfDayNumber(days);
    out->wHour = static_cast<std::uint16_t>(seconds / 3600);
    out->wMinute = static_cast<std::uint16_t>(seconds / 60 % 60);
    out->wSecond = static_cast<std::uint16_t>(seconds % 60);
    out->wMilliseconds =
        static_cast<std::uint16_t>(ticksOfDay % kTicksPerSecond / kTicksPerMillisecond);
    return true;
}

SYSTEMTIME localNow() {
    SYSTEMTIME st;
    if (const char* forced = std::getenv("QUILLARBOR_NOW"); forced && parseOverride(forced, &st)) {
        return st;
    }
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    return makeDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                    local.tm_min, local.tm_sec > 59 ? 59 : local.tm_sec,
                    static_cast<int>(now.tv_nsec / 1'000'000));
}

SYSTEMTIME makeDate(int year, int month, int day, int hour, int minute, int second,
                    int millisecond) {
    SYSTEMTIME st;
    st.wYear = static_cast<std::uint16_t>(year);
    st.wMonth = static_cast<std::uint16_t>(month);
    st.wDay = static_cast<std::uint16_t>(day);
    st.wHour = static_cast<std::uint16_t>(hour);
    st.wMinute = static_cast<std::uint16_t>(minute);
    st.wSecond = static_cast<std::uint16_t>(second);
    st.wMilliseconds = static_cast<std::uint16_t>(millisecond);
    FILETIME ft;
    if (systemTimeToFileTime(st, &ft)) {
        st.wDayOfWeek = weekdayOfDayNumber(static_cast<std::int64_t>(ft / kTicksPerDay));
    }
    return st;
}

}  // namespace qb
