#include "import/import_time.h"

#include <cctype>
#include <ctime>
#include <string>

#include "platform/calendar.h"

namespace qb {
namespace {

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);
    return s;
}

// Reads 1..maxDigits digits at `pos`, moving past them.
bool digits(std::string_view s, std::size_t& pos, std::size_t minDigits, std::size_t maxDigits,
            int* out) {
    std::size_t n = 0;
    int value = 0;
    while (pos + n < s.size() && n < maxDigits &&
           std::isdigit(static_cast<unsigned char>(s[pos + n]))) {
        value = value * 10 + (s[pos + n] - '0');
        ++n;
    }
    if (n < minDigits) return false;
    pos += n;
    *out = value;
    return true;
}

bool validDay(int y, int m, int d, SYSTEMTIME* day) {
    SYSTEMTIME st = makeDate(y, m, d);
    FILETIME ft = 0;
    if (!systemTimeToFileTime(st, &ft)) return false;
    *day = st;
    return true;
}

// Days from 1970-01-01 to the civil date (proleptic Gregorian).
std::int64_t daysFromCivil(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

std::int64_t unixOf(const SYSTEMTIME& t) {
    return daysFromCivil(t.wYear, t.wMonth, t.wDay) * 86400 + t.wHour * 3600 + t.wMinute * 60 +
           t.wSecond;
}

}  // namespace

bool parseDay(std::string_view text, SYSTEMTIME* day) {
    text = trimmed(text);
    std::size_t pos = 0;
    int a = 0, b = 0, c = 0;
    if (!digits(text, pos, 1, 4, &a) || pos >= text.size()) return false;
    const char sep = text[pos];
    const std::size_t firstLength = pos;
    if (sep != '-' && sep != '/' && sep != '.') return false;
    ++pos;
    if (!digits(text, pos, 1, 2, &b) || pos >= text.size() || text[pos] != sep) return false;
    ++pos;
    if (!digits(text, pos, 1, 4, &c) || pos != text.size()) return false;
    if (firstLength == 4) return validDay(a, b, c, day);  // year first
    if (c < 1000) return false;                           // two-digit years are too ambiguous
    if (sep == '.') return validDay(c, b, a, day);        // day.month.year
    // Slashes: month first, as the American exports write them, unless the
    // first number cannot be a month.
    if (a > 12) return validDay(c, b, a, day);
    return validDay(c, a, b, day);
}

bool parseTimeOfDay(std::string_view text, SYSTEMTIME* time) {
    text = trimmed(text);
    std::size_t pos = 0;
    int h = 0, m = 0, s = 0;
    if (!digits(text, pos, 1, 2, &h) || pos >= text.size() || text[pos] != ':') return false;
    ++pos;
    if (!digits(text, pos, 2, 2, &m)) return false;
    if (pos < text.size() && text[pos] == ':') {
        ++pos;
        if (!digits(text, pos, 2, 2, &s)) return false;
    }
    std::string_view rest = trimmed(text.substr(pos));
    if (!rest.empty()) {
        const bool pm = rest == "PM" || rest == "pm" || rest == "p.m.";
        const bool am = rest == "AM" || rest == "am" || rest == "a.m.";
        if ((!pm && !am) || h < 1 || h > 12) return false;
        h = (h % 12) + (pm ? 12 : 0);
    }
    if (h > 23 || m > 59 || s > 59) return false;
    time->wHour = static_cast<std::uint16_t>(h);
    time->wMinute = static_cast<std::uint16_t>(m);
    time->wSecond = static_cast<std::uint16_t>(s);
    return true;
}

bool combine(const SYSTEMTIME& day, const SYSTEMTIME& time, Moment* out) {
    SYSTEMTIME st =
        makeDate(day.wYear, day.wMonth, day.wDay, time.wHour, time.wMinute, time.wSecond);
    FILETIME ft = 0;
    if (!systemTimeToFileTime(st, &ft)) return false;
    out->local = st;
    out->utc.reset();
    return true;
}

bool momentFromUnix(std::int64_t seconds, Moment* out) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    if (!localtime_r(&t, &tm)) return false;
    SYSTEMTIME st = makeDate(tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min,
                             tm.tm_sec > 59 ? 59 : tm.tm_sec);
    FILETIME ft = 0;
    if (!systemTimeToFileTime(st, &ft)) return false;
    out->local = st;
    out->utc = seconds;
    return true;
}

bool parseMoment(std::string_view text, Moment* out) {
    text = trimmed(text);
    std::size_t pos = 0;
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0;
    const bool compact =
        text.size() >= 15 && text[8] == 'T' && text.find('-') == std::string_view::npos;
    if (compact) {
        if (!digits(text, pos, 4, 4, &y) || !digits(text, pos, 2, 2, &mo) ||
            !digits(text, pos, 2, 2, &d) || text[pos++] != 'T' || !digits(text, pos, 2, 2, &h) ||
            !digits(text, pos, 2, 2, &mi) || !digits(text, pos, 2, 2, &s)) {
            return false;
        }
    } else {
        const std::size_t gap = text.find_first_of(" T");
        if (gap == std::string_view::npos) return false;
        SYSTEMTIME day;
        if (!parseDay(text.substr(0, gap), &day)) return false;
        y = day.wYear;
        mo = day.wMonth;
        d = day.wDay;
        pos = gap + 1;
        if (!digits(text, pos, 1, 2, &h) || pos >= text.size() || text[pos++] != ':' ||
            !digits(text, pos, 2, 2, &mi)) {
            return false;
        }
        if (pos < text.size() && text[pos] == ':') {
            ++pos;
            if (!digits(text, pos, 2, 2, &s)) return false;
        }
        if (pos < text.size() && (text[pos] == '.' || text[pos] == ',')) {
            ++pos;
            int fraction = 0;
            if (!digits(text, pos, 1, 9, &fraction)) return false;
        }
    }
    SYSTEMTIME fields = makeDate(y, mo, d, h, mi, s);
    FILETIME ft = 0;
    if (h > 23 || mi > 59 || s > 59 || !systemTimeToFileTime(fields, &ft)) return false;
    std::string_view zone = trimmed(text.substr(pos));
    if (zone.empty()) {
        out->local = fields;
        out->utc.reset();
        return true;
    }
    std::int64_t offset = 0;
    if (zone != "Z" && zone != "z") {
        if (zone[0] != '+' && zone[0] != '-') return false;
        std::size_t zp = 1;
        int oh = 0, om = 0;
        if (!digits(zone, zp, 2, 2, &oh)) return false;
        if (zp < zone.size() && zone[zp] == ':') ++zp;
        if (zp < zone.size() && !digits(zone, zp, 2, 2, &om)) return false;
        if (zp != zone.size() || oh > 23 || om > 59) return false;
        offset = (oh * 3600 + om * 60) * (zone[0] == '-' ? -1 : 1);
    }
    return momentFromUnix(unixOf(fields) - offset, out);
}

std::int64_t secondsBetween(const Moment& start, const Moment& end) {
    if (start.utc && end.utc) return *end.utc - *start.utc;
    return unixOf(end.local) - unixOf(start.local);
}

bool parseClockDuration(std::string_view text, std::int64_t* seconds) {
    text = trimmed(text);
    bool negative = false;
    if (!text.empty() && text[0] == '-') {
        negative = true;
        text.remove_prefix(1);
    }
    std::size_t pos = 0;
    int h = 0, m = 0, s = 0;
    if (!digits(text, pos, 1, 7, &h) || pos >= text.size() || text[pos++] != ':' ||
        !digits(text, pos, 2, 2, &m) || m > 59) {
        return false;
    }
    if (pos < text.size()) {
        if (text[pos++] != ':' || !digits(text, pos, 2, 2, &s) || s > 59 || pos != text.size()) {
            return false;
        }
    }
    const std::int64_t total = std::int64_t{h} * 3600 + m * 60 + s;
    *seconds = negative ? -total : total;
    return true;
}

}  // namespace qb
