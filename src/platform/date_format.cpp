#include "platform/date_format.h"

#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/calendar.h"
#include "platform/registry.h"

namespace qb {
namespace {

constexpr std::u16string_view kDayNames[] = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                             u"Thursday", u"Friday", u"Saturday"};
constexpr std::u16string_view kMonthNames[] = {u"January",   u"February", u"March",    u"April",
                                               u"May",       u"June",     u"July",     u"August",
                                               u"September", u"October",  u"November", u"December"};

void appendNumber(int value, bool twoDigits, std::u16string& out) {
    // Days, months, hours and minutes: one or two digits, written at once.
    if (value >= 0 && value < 100) {
        if (value >= 10 || twoDigits) out.push_back(static_cast<char16_t>(u'0' + value / 10));
        out.push_back(static_cast<char16_t>(u'0' + value % 10));
        return;
    }
    char16_t digits[12];
    char16_t* at = digits + std::size(digits);
    auto rest = static_cast<unsigned>(value);
    do {
        *--at = static_cast<char16_t>(u'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (twoDigits && digits + std::size(digits) - at < 2) *--at = u'0';
    out.append(at, digits + std::size(digits));
}

void appendName(std::u16string_view name, bool full, std::u16string& out) {
    out.append(full ? name : name.substr(0, 3));
}

}  // namespace

Picture::Picture(std::u16string_view picture, std::u16string_view letters) {
    auto literal = [this](char16_t c) {
        if (pieces_.empty() || pieces_.back().letter != 0) {
            pieces_.push_back({0, 0, text_.size(), 0});
        }
        text_.push_back(c);
        ++pieces_.back().size;
    };
    std::size_t i = 0;
    while (i < picture.size()) {
        const char16_t c = picture[i];
        if (c == u'\'') {
            ++i;
            if (i < picture.size() && picture[i] == u'\'') {
                literal(u'\'');
                ++i;
                continue;
            }
            // Quoted text runs to the next lone apostrophe, or to the end.
            while (i < picture.size()) {
                if (picture[i] != u'\'') {
                    literal(picture[i++]);
                } else if (i + 1 < picture.size() && picture[i + 1] == u'\'') {
                    literal(u'\'');
                    i += 2;
                } else {
                    ++i;
                    break;
                }
            }
        } else if (letters.find(c) != std::u16string_view::npos) {
            std::size_t end = i;
            while (end < picture.size() && picture[end] == c) ++end;
            pieces_.push_back({c, static_cast<int>(end - i), 0, 0});
            i = end;
        } else {
            literal(c);
            ++i;
        }
    }
}

DatePicture::DatePicture(std::u16string_view picture) : Picture(picture, u"dMy") {}

void DatePicture::append(const SYSTEMTIME& d, std::u16string& out) const {
    for (const Piece& p : pieces_) {
        switch (p.letter) {
            case 0:
                out.append(text_, p.at, p.size);
                break;
            case u'd':
                if (p.count <= 2) {
                    appendNumber(d.wDay, p.count == 2, out);
                } else {
                    appendName(kDayNames[d.wDayOfWeek], p.count >= 4, out);
                }
                break;
            case u'M':
                if (p.count <= 2) {
                    appendNumber(d.wMonth, p.count == 2, out);
                } else {
                    appendName(kMonthNames[d.wMonth - 1], p.count >= 4, out);
                }
                break;
            default:  // 'y'; a run of three reads as two.
                if (p.count >= 4) {
                    appendNumber(d.wYear, false, out);
                } else {
                    appendNumber(d.wYear % 100, p.count >= 2, out);
                }
                break;
        }
    }
}

// Without seconds, every seconds field goes with the literal text that
// separates it from the field before it (or, for a leading seconds field,
// from the one after).
TimePicture::TimePicture(std::u16string_view picture, bool noSeconds) : Picture(picture, u"hHmst") {
    if (!noSeconds) return;
    for (std::size_t i = 0; i < pieces_.size();) {
        if (pieces_[i].letter != u's') {
            ++i;
            continue;
        }
        std::size_t first = i;
        while (first > 0 && pieces_[first - 1].letter == 0) --first;
        std::size_t last = i + 1;
        if (first == 0) {
            while (last < pieces_.size() && pieces_[last].letter == 0) ++last;
        }
        pieces_.erase(pieces_.begin() + static_cast<std::ptrdiff_t>(first),
                      pieces_.begin() + static_cast<std::ptrdiff_t>(last));
        i = first;
    }
}

void TimePicture::append(const SYSTEMTIME& time, std::u16string& out) const {
    for (const Piece& p : pieces_) {
        const bool twoDigits = p.count >= 2;
        switch (p.letter) {
            case 0:
                out.append(text_, p.at, p.size);
                break;
            case u'h':
                appendNumber(time.wHour % 12 == 0 ? 12 : time.wHour % 12, twoDigits, out);
                break;
            case u'H':
                appendNumber(time.wHour, twoDigits, out);
                break;
            case u'm':
                appendNumber(time.wMinute, twoDigits, out);
                break;
            case u's':
                appendNumber(time.wSecond, twoDigits, out);
                break;
            default: {  // 't'
                const std::u16string_view marker = time.wHour < 12 ? u"AM" : u"PM";
                out.append(twoDigits ? marker : marker.substr(0, 1));
                break;
            }
        }
    }
}

namespace {

std::u16string fitted(std::u16string text, std::size_t bufferChars) {
    if (bufferChars != 0 && text.size() + 1 > bufferChars) return {};
    return text;
}

// The date part alone, validated, with its own day of week.
std::optional<SYSTEMTIME> normalisedDate(const SYSTEMTIME& date) {
    SYSTEMTIME day = makeDate(date.wYear, date.wMonth, date.wDay);
    FILETIME ft;
    if (!systemTimeToFileTime(day, &ft)) return std::nullopt;
    return day;
}

const std::u16string* datePictureOf(const LocaleInfo& locale, std::uint32_t flags) {
    switch (flags) {
        case 0:
        case DATE_SHORTDATE:
            return &locale.shortDate;
        case DATE_LONGDATE:
            return &locale.longDate;
        case DATE_YEARMONTH:
            return &locale.yearMonth;
        default:
            return nullptr;
    }
}

void readPicture(const RegKey& key, const char* name, std::u16string* picture) {
    // The buffer size the settings have always used for locale values.
    constexpr std::uint32_t kBufferBytes = 160;
    std::u16string value;
    if (key.queryString(name, kBufferBytes, &value) == ERROR_SUCCESS && !value.empty()) {
        *picture = std::move(value);
    }
}

}  // namespace

LocaleInfo loadLocaleInfo(Registry& registry) {
    LocaleInfo locale;
    const auto key = registry.openKey(RegRoot::HKEY_CURRENT_USER, "Control Panel\\International");
    if (!key) return locale;
    readPicture(*key, "sShortDate", &locale.shortDate);
    readPicture(*key, "sLongDate", &locale.longDate);
    readPicture(*key, "sTimeFormat", &locale.timeFormat);
    readPicture(*key, "sYearMonth", &locale.yearMonth);
    return locale;
}

std::u16string getDateFormat(const LocaleInfo& locale, std::uint32_t flags, const SYSTEMTIME& date,
                             const std::u16string* picture, std::size_t bufferChars) {
    if (picture && flags != 0) return {};
    const std::u16string* chosen = picture ? picture : datePictureOf(locale, flags);
    const auto day = normalisedDate(date);
    if (!chosen || !day) return {};
    std::u16string out;
    DatePicture(*chosen).append(*day, out);
    return fitted(std::move(out), bufferChars);
}

std::u16string getTimeFormat(const LocaleInfo& locale, std::uint32_t flags, const SYSTEMTIME& time,
                             const std::u16string* picture, std::size_t bufferChars) {
    if ((flags & ~TIME_NOSECONDS) != 0) return {};
    if (time.wHour > 23 || time.wMinute > 59 || time.wSecond > 59 || time.wMilliseconds > 999) {
        return {};
    }
    std::u16string out;
    TimePicture(picture ? *picture : locale.timeFormat, (flags & TIME_NOSECONDS) != 0)
        .append(time, out);
    return fitted(std::move(out), bufferChars);
}

}  // namespace qb
