#pragma once

// Dates and times as text through the user's locale pictures, with the
// platform's picture language: d dd ddd dddd M MM MMM MMMM y yy yyyy for
// dates, h hh H HH m mm s ss t tt for times, text in apostrophes ('' for one
// apostrophe) and every other character as it is. English names.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win_types.h"

namespace qb {

class Registry;

// The user's pictures. The defaults are those of English (United States).
struct LocaleInfo {
    std::u16string shortDate = u"M/d/yyyy";
    std::u16string longDate = u"dddd, MMMM d, yyyy";
    std::u16string timeFormat = u"h:mm:ss tt";
    std::u16string yearMonth = u"MMMM yyyy";
};

// Reads sShortDate, sLongDate, sTimeFormat and sYearMonth from
// HKEY_CURRENT_USER "Control Panel\International"; a value that is missing,
// empty or too long keeps its default.
LocaleInfo loadLocaleInfo(Registry& registry);

// Which of the locale's pictures a call without its own picture uses.
inline constexpr std::uint32_t DATE_SHORTDATE = 0x1;
inline constexpr std::uint32_t DATE_LONGDATE = 0x2;
inline constexpr std::uint32_t DATE_YEARMONTH = 0x8;
// Leaves out the seconds and the separator before them.
inline constexpr std::uint32_t TIME_NOSECONDS = 0x2;

// The date of `date` (its time is ignored) in `picture`, or when that is null
// in the locale picture the flags choose (flags 0: the short date). Answers
// an empty string where the platform fails: an invalid date, a picture
// together with a picture flag, unknown flags, or a result that does not fit
// a buffer of `bufferChars` characters counted with their terminating NUL
// (0: no limit).
std::u16string getDateFormat(const LocaleInfo& locale, std::uint32_t flags, const SYSTEMTIME& date,
                             const std::u16string* picture, std::size_t bufferChars = 0);

// The time of `time` (its date is ignored) in `picture`, or the locale's time
// picture when that is null. Fails, with an empty string, as getDateFormat.
std::u16string getTimeFormat(const LocaleInfo& locale, std::uint32_t flags, const SYSTEMTIME& time,
                             const std::u16string* picture, std::size_t bufferChars = 0);

// A picture read once, for writers of many dates or times (an export writes
// one per entry); getDateFormat and getTimeFormat write through these too.
class Picture {
  protected:
    Picture(std::u16string_view picture, std::u16string_view letters);

    // A run of one picture letter, or literal text (letter 0) kept in text_.
    struct Piece {
        char16_t letter;
        int count;
        std::size_t at;
        std::size_t size;
    };
    std::vector<Piece> pieces_;
    std::u16string text_;
};

class DatePicture : public Picture {
  public:
    explicit DatePicture(std::u16string_view picture);
    // Appends `day` in the picture. The fields must be a valid date with its
    // own day of week, as fileTimeToSystemTime gives them.
    void append(const SYSTEMTIME& day, std::u16string& out) const;
};

class TimePicture : public Picture {
  public:
    // With `noSeconds` (TIME_NOSECONDS) the seconds and the separator before
    // them are left out.
    TimePicture(std::u16string_view picture, bool noSeconds);
    // Appends `time` (hour < 24, minute and second < 60) in the picture.
    void append(const SYSTEMTIME& time, std::u16string& out) const;
};

}  // namespace qb
