#include "cli/cli_text.h"

#include <charconv>

#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "platform/text.h"

namespace qb {
namespace {

bool number(std::string_view text, std::size_t pos, std::size_t len, int* out) {
    if (pos + len > text.size()) return false;
    for (std::size_t i = pos; i < pos + len; ++i) {
        if (text[i] < '0' || text[i] > '9') return false;
    }
    std::from_chars(text.data() + pos, text.data() + pos + len, *out);
    return true;
}

}  // namespace

std::string u8(std::u16string_view text) {
    return utf16ToUtf8(text);
}
std::u16string u16(std::string_view text) {
    return utf8ToUtf16(text);
}

bool parseDateArg(std::string_view text, SYSTEMTIME* out) {
    int y = 0, m = 0, d = 0;
    if (text.size() != 10 || text[4] != '-' || text[7] != '-' || !number(text, 0, 4, &y) ||
        !number(text, 5, 2, &m) || !number(text, 8, 2, &d)) {
        return false;
    }
    SYSTEMTIME st = makeDate(y, m, d);
    FILETIME ft;
    if (!systemTimeToFileTime(st, &ft)) return false;
    *out = st;
    return true;
}

std::string dateArgProblem(std::string_view option, std::string_view text) {
    int y = 0, m = 0, d = 0;
    const std::string name(option);
    if (text.size() != 10 || text[4] != '-' || text[7] != '-' || !number(text, 0, 4, &y) ||
        !number(text, 5, 2, &m) || !number(text, 8, 2, &d)) {
        return name + " takes a date as YYYY-MM-DD";
    }
    std::string why;
    if (m < 1 || m > 12) {
        why = "a month is 01 to 12";
    } else if (y < 1601 || y > 30827) {
        why = "dates run from 1601 to 30827";
    } else {
        int days = 31;
        FILETIME ft;
        while (days > 28 && !systemTimeToFileTime(makeDate(y, m, days), &ft)) --days;
        why = stringPrintf("%04d-%02d has %d days", y, m, days);
    }
    return name + ": the date " + std::string(text) + " does not exist (" + why + ")";
}

bool holdsControlCharacter(std::string_view utf8) {
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto c = static_cast<unsigned char>(utf8[i]);
        if (c < 0x20 || c == 0x7F) return true;
        // U+0080 to U+009F, the second set of control characters.
        if (c == 0xC2 && i + 1 < utf8.size()) {
            const auto next = static_cast<unsigned char>(utf8[i + 1]);
            if (next >= 0x80 && next <= 0x9F) return true;
        }
    }
    return false;
}

bool parseTimeArg(std::string_view text, SYSTEMTIME* out) {
    int h = 0, m = 0;
    std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || colon > 2 || text.size() != colon + 3 ||
        !number(text, 0, colon, &h) || !number(text, colon + 1, 2, &m) || h > 23 || m > 59) {
        return false;
    }
    *out = SYSTEMTIME{};
    out->wHour = static_cast<std::uint16_t>(h);
    out->wMinute = static_cast<std::uint16_t>(m);
    return true;
}

bool parseUnsignedArg(std::string_view text, std::uint32_t* out) {
    if (text.empty()) return false;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), *out);
    return ec == std::errc() && end == text.data() + text.size();
}

std::string isoDate(FILETIME date) {
    SYSTEMTIME st;
    if (!fileTimeToSystemTime(date, &st)) return std::string();
    return stringPrintf("%04u-%02u-%02u", st.wYear, st.wMonth, st.wDay);
}

std::string isoDateTimeMillis(FILETIME date) {
    SYSTEMTIME st;
    if (!fileTimeToSystemTime(date, &st)) return std::string();
    return stringPrintf("%04u-%02u-%02uT%02u:%02u:%02u.%03u", st.wYear, st.wMonth, st.wDay,
                        st.wHour, st.wMinute, st.wSecond, st.wMilliseconds);
}

std::string isoDateTime(const SYSTEMTIME& st) {
    return stringPrintf("%04u-%02u-%02uT%02u:%02u:%02u", st.wYear, st.wMonth, st.wDay, st.wHour,
                        st.wMinute, st.wSecond);
}

std::string hexBytes(const std::uint8_t* data, std::size_t size) {
    static const char kDigits[] = "0123456789abcdef";
    std::string out;
    out.reserve(size * 2);
    for (std::size_t i = 0; i < size; ++i) {
        out.push_back(kDigits[data[i] >> 4]);
        out.push_back(kDigits[data[i] & 15]);
    }
    return out;
}

std::string escapedLineBreaks(std::u16string_view text) {
    std::string out;
    for (char c : u8(text)) {
        if (c == '\r')
            out += "\\r";
        else if (c == '\n')
            out += "\\n";
        else
            out.push_back(c);
    }
    return out;
}

}  // namespace qb
