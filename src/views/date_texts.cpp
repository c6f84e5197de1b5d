#include "views/date_texts.h"

#include "platform/calendar.h"

namespace qb {
namespace {

constexpr std::size_t kLongBuffer = 64;
constexpr std::size_t kShortBuffer = 32;

// The long-date picture the labels use, or nothing when it holds a quoted
// literal (the labels then fall back to the short date).
bool labelPicture(const LocaleInfo& locale, std::u16string* picture) {
    if (locale.longDate.find(u'\'') != std::u16string::npos) return false;
    *picture = locale.longDate;
    if (auto at = picture->find(u"MMMM"); at != std::u16string::npos)
        picture->replace(at, 4, u"MMM");
    return true;
}

}  // namespace

std::u16string shortDateText(const LocaleInfo& locale, const SYSTEMTIME& date) {
    return getDateFormat(locale, DATE_SHORTDATE, date, nullptr, kShortBuffer);
}

std::u16string shortDateText(const LocaleInfo& locale, FILETIME date) {
    SYSTEMTIME st;
    return fileTimeToSystemTime(date, &st) ? shortDateText(locale, st) : std::u16string();
}

std::u16string shortTimeText(const LocaleInfo& locale, const SYSTEMTIME& time) {
    return getTimeFormat(locale, TIME_NOSECONDS, time, nullptr, kLongBuffer);
}

std::u16string commonDateText(const LocaleInfo& locale, const SYSTEMTIME& date) {
    std::u16string picture;
    if (!labelPicture(locale, &picture)) return shortDateText(locale, date);
    return getDateFormat(locale, 0, date, &picture, kLongBuffer);
}

std::u16string dateWithoutWeekdayText(const LocaleInfo& locale, const SYSTEMTIME& date) {
    std::u16string picture;
    if (!labelPicture(locale, &picture)) return shortDateText(locale, date);
    for (auto at = picture.find(u"dddd"); at != std::u16string::npos; at = picture.find(u"dddd")) {
        picture.erase(at, 4);
    }
    picture.erase(0, picture.find_first_not_of(u", "));
    return getDateFormat(locale, 0, date, &picture, kLongBuffer);
}

std::u16string yearMonthText(const LocaleInfo& locale, const SYSTEMTIME& date) {
    return getDateFormat(locale, DATE_YEARMONTH, date, nullptr, kLongBuffer);
}

}  // namespace qb
