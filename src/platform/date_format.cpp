#include "platform/date_format.h"

#include <cstdio>
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

// One element of a picture: a run of one picture letter, or literal text
// (quotes already resolved).
struct Token {
    char16_t letter = 0;
    int count = 0;
    std::u16string text;

    bool isField() const { return letter != 0; }
};

std::vector<Token> parsePicture(std::u16string_view picture, std::u16string_view letters) {
    std::vector<Token> tokens;
    auto literal = [&tokens](char16_t c) {
        if (tokens.empty() || tokens.back().isField()) tokens.emplace_back();
        tokens.back().text.push_back(c);
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
            tokens.push_back({c, static_cast<int>(end - i), {}});
            i = end;
        } else {
            literal(c);
            ++i;
        }
    }
    return tokens;
}

// Drops every seconds field with the literal text that separates it from
// the field before it (or, for a leading seconds field, from the one after).
void dropSeconds(std::vector<Token>* tokens) {
    for (std::size_t i = 0; i < tokens->size();) {
        if ((*tokens)[i].letter != u's') {
            ++i;
            continue;
        }
        std::size_t first = i;
        while (first > 0 && !(*tokens)[first - 1].isField()) --first;
        std::size_t last = i + 1;
        if (first == 0) {
            while (last < tokens->size() && !(*tokens)[last].isField()) ++last;
        }
        tokens->erase(tokens->begin() + static_cast<std::ptrdiff_t>(first),
                      tokens->begin() + static_cast<std::ptrdiff_t>(last));
        i = first;
    }
}

void appendNumber(int value, bool twoDigits, std::u16string* out) {
    char digits[16];
    const int n = std::snprintf(digits, sizeof digits, twoDigits ? "%02d" : "%d", value);
    for (int k = 0; k < n; ++k) out->push_back(static_cast<char16_t>(digits[k]));
}

void appendName(std::u16string_view name, bool full, std::u16string* out) {
    out->append(full ? name : name.substr(0, 3));
}

void appendDateField(const Token& t, const SYSTEMTIME& d, std::u16string* out) {
    switch (t.letter) {
        case u'd':
            if (t.count <= 2) {
                appendNumber(d.wDay, t.count == 2, out);
            } else {
                appendName(kDayNames[d.wDayOfWeek], t.count >= 4, out);
            }
            break;
        case u'M':
            if (t.count <= 2) {
                appendNumber(d.wMonth, t.count == 2, out);
            } else {
                appendName(kMonthNames[d.wMonth - 1], t.count >= 4, out);
            }
            break;
        default:  // 'y'; a run of three reads as two.
            if (t.count >= 4) {
                appendNumber(d.wYear, false, out);
            } else {
                appendNumber(d.wYear % 100, t.count >= 2, out);
            }
            break;
    }
}

void appendTimeField(const Token& t, const SYSTEMTIME& time, std::u16string* out) {
    const bool twoDigits = t.count >= 2;
    switch (t.letter) {
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
            out->append(twoDigits ? marker : marker.substr(0, 1));
            break;
        }
    }
}

template <typename AppendField>
std::u16string render(const std::vector<Token>& tokens, AppendField appendField) {
    std::u16string out;
    for (const Token& t : tokens) {
        if (t.isField()) {
            appendField(t, &out);
        } else {
            out += t.text;
        }
    }
    return out;
}

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
    const auto tokens = parsePicture(*chosen, u"dMy");
    return fitted(
        render(tokens, [&](const Token& t, std::u16string* out) { appendDateField(t, *day, out); }),
        bufferChars);
}

std::u16string getTimeFormat(const LocaleInfo& locale, std::uint32_t flags, const SYSTEMTIME& time,
                             const std::u16string* picture, std::size_t bufferChars) {
    if ((flags & ~TIME_NOSECONDS) != 0) return {};
    if (time.wHour > 23 || time.wMinute > 59 || time.wSecond > 59 || time.wMilliseconds > 999) {
        return {};
    }
    auto tokens = parsePicture(picture ? *picture : locale.timeFormat, u"hHmst");
    if (flags & TIME_NOSECONDS) dropSeconds(&tokens);
    return fitted(
        render(tokens, [&](const Token& t, std::u16string* out) { appendTimeField(t, time, out); }),
        bufferChars);
}

}  // namespace qb
