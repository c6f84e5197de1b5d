#include "platform/date_format.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/calendar.h"
#include "platform/data_file.h"
#include "platform/registry.h"
#include "platform/text.h"

namespace qb {
namespace {

struct PictureCase {
    std::u16string picture;
    std::u16string expected;
};

std::string show(const std::u16string& s) {
    return utf16ToUtf8(s);
}

void expectDates(const SYSTEMTIME& date, std::initializer_list<PictureCase> cases) {
    const LocaleInfo locale;
    for (const auto& c : cases) {
        EXPECT_EQ(show(getDateFormat(locale, 0, date, &c.picture)), show(c.expected))
            << "picture " << show(c.picture);
    }
}

void expectTimes(const SYSTEMTIME& time, std::uint32_t flags,
                 std::initializer_list<PictureCase> cases) {
    const LocaleInfo locale;
    for (const auto& c : cases) {
        EXPECT_EQ(show(getTimeFormat(locale, flags, time, &c.picture)), show(c.expected))
            << "picture " << show(c.picture);
    }
}

TEST(DateFormatTest, DatePictures) {
    expectDates(makeDate(2026, 3, 5), {
                                          {u"d", u"5"},
                                          {u"dd", u"05"},
                                          {u"ddd", u"Thu"},
                                          {u"dddd", u"Thursday"},
                                          {u"ddddd", u"Thursday"},
                                          {u"M", u"3"},
                                          {u"MM", u"03"},
                                          {u"MMM", u"Mar"},
                                          {u"MMMM", u"March"},
                                          {u"y", u"26"},
                                          {u"yy", u"26"},
                                          {u"yyyy", u"2026"},
                                          {u"yyyy-MM-dd", u"2026-03-05"},
                                          {u"dddd, MMMM d, yyyy", u"Thursday, March 5, 2026"},
                                          {u"", u""},
                                      });
    expectDates(makeDate(2009, 11, 21),
                {{u"y", u"9"}, {u"yy", u"09"}, {u"ddd d MMM", u"Sat 21 Nov"}});
}

TEST(DateFormatTest, LiteralsInDatePictures) {
    expectDates(makeDate(2026, 9, 30), {
                                           {u"'Week of' d", u"Week of 30"},
                                           {u"'dd MM yy'", u"dd MM yy"},
                                           {u"d''M", u"30'9"},
                                           {u"'it''s' d", u"it's 30"},
                                           {u"d 'MMMM", u"30 MMMM"},
                                           {u"d. M. yyyy", u"30. 9. 2026"},
                                           // Time pictures mean nothing in a date.
                                           {u"d h:mm:ss tt H", u"30 h:mm:ss tt H"},
                                           {u"D Y m", u"D Y m"},
                                       });
}

TEST(DateFormatTest, WeekdayComesFromTheDateNotTheField) {
    SYSTEMTIME date = makeDate(2026, 9, 30, 13, 14, 15);
    date.wDayOfWeek = 0;
    const std::u16string picture = u"dddd";
    EXPECT_EQ(getDateFormat(LocaleInfo{}, 0, date, &picture), u"Wednesday");
}

TEST(DateFormatTest, LocalePictureChosenByFlags) {
    LocaleInfo custom;
    custom.shortDate = u"dd.MM.yyyy";
    custom.longDate = u"d. MMMM yyyy";
    custom.yearMonth = u"MM/yyyy";
    const SYSTEMTIME date = makeDate(2027, 1, 2);
    const struct {
        std::uint32_t flags;
        std::u16string usEnglish, custom;
    } cases[] = {
        {0, u"1/2/2027", u"02.01.2027"},
        {DATE_SHORTDATE, u"1/2/2027", u"02.01.2027"},
        {DATE_LONGDATE, u"Saturday, January 2, 2027", u"2. January 2027"},
        {DATE_YEARMONTH, u"January 2027", u"01/2027"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(getDateFormat(LocaleInfo{}, c.flags, date, nullptr), c.usEnglish) << c.flags;
        EXPECT_EQ(getDateFormat(custom, c.flags, date, nullptr), c.custom) << c.flags;
    }
}

TEST(DateFormatTest, FailuresAnswerEmpty) {
    const LocaleInfo locale;
    const std::u16string picture = u"d";
    const SYSTEMTIME valid = makeDate(2026, 1, 1);
    EXPECT_EQ(getDateFormat(locale, DATE_SHORTDATE, valid, &picture), u"");
    EXPECT_EQ(getDateFormat(locale, DATE_SHORTDATE | DATE_LONGDATE, valid, nullptr), u"");
    for (const SYSTEMTIME& bad : {makeDate(2026, 2, 29), makeDate(2026, 13, 1), SYSTEMTIME{}}) {
        EXPECT_EQ(getDateFormat(locale, 0, bad, nullptr), u"");
    }
    EXPECT_EQ(getTimeFormat(locale, 0, makeDate(2026, 1, 1, 24, 0), nullptr), u"");
    EXPECT_EQ(getTimeFormat(locale, 0, makeDate(2026, 1, 1, 12, 60), nullptr), u"");
    EXPECT_EQ(getTimeFormat(locale, 0x40, valid, nullptr), u"");
}

TEST(DateFormatTest, ResultMustFitTheBufferWithItsTerminator) {
    const LocaleInfo locale;
    const SYSTEMTIME date = makeDate(2026, 9, 30);
    const std::u16string longest = u"Wednesday, September 30, 2026";
    ASSERT_EQ(longest.size(), 29u);
    EXPECT_EQ(getDateFormat(locale, DATE_LONGDATE, date, nullptr, 30), longest);
    EXPECT_EQ(getDateFormat(locale, DATE_LONGDATE, date, nullptr, 29), u"");
    EXPECT_EQ(getDateFormat(locale, DATE_LONGDATE, date, nullptr, 0), longest);
    EXPECT_EQ(getTimeFormat(locale, 0, date, nullptr, 12), u"12:00:00 AM");
    EXPECT_EQ(getTimeFormat(locale, 0, date, nullptr, 11), u"");
}

TEST(DateFormatTest, TimePictures) {
    expectTimes(makeDate(2026, 1, 1, 13, 5, 9), 0,
                {
                    {u"h", u"1"},
                    {u"hh", u"01"},
                    {u"H", u"13"},
                    {u"HH", u"13"},
                    {u"m", u"5"},
                    {u"mm", u"05"},
                    {u"s", u"9"},
                    {u"ss", u"09"},
                    {u"t", u"P"},
                    {u"tt", u"PM"},
                    {u"hh:mm:ss", u"01:05:09"},
                    {u"H'h'mm", u"13h05"},
                    {u"'tt' tt", u"tt PM"},
                    {u"d/M/y h", u"d/M/y 1"},
                });
}

TEST(DateFormatTest, TwelveHourClockAroundMidnightAndNoon) {
    const std::u16string picture = u"h:mm tt";
    const struct {
        int hour, minute;
        std::u16string expected;
    } cases[] = {
        {0, 0, u"12:00 AM"},  {0, 30, u"12:30 AM"}, {1, 0, u"1:00 AM"},  {11, 59, u"11:59 AM"},
        {12, 0, u"12:00 PM"}, {12, 1, u"12:01 PM"}, {13, 0, u"1:00 PM"}, {23, 59, u"11:59 PM"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(
            show(getTimeFormat(LocaleInfo{}, 0, makeDate(2026, 1, 1, c.hour, c.minute), &picture)),
            show(c.expected));
    }
}

TEST(DateFormatTest, NoSecondsDropsTheSecondsAndTheirSeparator) {
    const SYSTEMTIME time = makeDate(2026, 1, 1, 13, 5, 9);
    EXPECT_EQ(getTimeFormat(LocaleInfo{}, TIME_NOSECONDS, time, nullptr), u"1:05 PM");
    expectTimes(time, TIME_NOSECONDS,
                {
                    {u"HH:mm:ss", u"13:05"},
                    {u"tt hh:mm:ss", u"PM 01:05"},
                    {u"H.mm.ss' Uhr'", u"13.05 Uhr"},
                    {u"ss:mm", u"05"},
                    {u"H:mm", u"13:05"},
                    {u"ss", u""},
                });
}

class LocaleRegistryTest : public ::testing::Test {
  protected:
    std::unique_ptr<DataFile> file_ = DataFile::openInMemory();
    Registry registry_{*file_};
};

TEST_F(LocaleRegistryTest, MissingKeyGivesUsEnglish) {
    const LocaleInfo read = loadLocaleInfo(registry_);
    const LocaleInfo defaults;
    EXPECT_EQ(read.shortDate, defaults.shortDate);
    EXPECT_EQ(read.longDate, defaults.longDate);
    EXPECT_EQ(read.timeFormat, defaults.timeFormat);
    EXPECT_EQ(read.yearMonth, defaults.yearMonth);
}

TEST_F(LocaleRegistryTest, ReadsEachPictureThatFitsItsBuffer) {
    auto key = registry_.createKey(RegRoot::HKEY_CURRENT_USER, "Control Panel\\International");
    ASSERT_TRUE(key);
    // 79 characters and their NUL fill the 160-byte buffer; one more does not fit.
    ASSERT_EQ(key->setString("sShortDate", std::u16string(79, u'd')), ERROR_SUCCESS);
    ASSERT_EQ(key->setString("sLongDate", std::u16string(80, u'd')), ERROR_SUCCESS);
    ASSERT_EQ(key->setString("sTimeFormat", u"HH:mm:ss"), ERROR_SUCCESS);
    ASSERT_EQ(key->setString("sYearMonth", u""), ERROR_SUCCESS);
    const LocaleInfo read = loadLocaleInfo(registry_);
    EXPECT_EQ(read.shortDate, std::u16string(79, u'd'));
    EXPECT_EQ(read.longDate, LocaleInfo{}.longDate);
    EXPECT_EQ(read.timeFormat, u"HH:mm:ss");
    EXPECT_EQ(read.yearMonth, LocaleInfo{}.yearMonth);
}

}  // namespace
}  // namespace qb
