// The parsers of what a user types: the editor's number boxes (hours, rates),
// the command line's dates, times and numbers, settings given as text, and
// the date and time pictures a user's locale settings hold. A date or time
// the command line accepts must print back as it was typed.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "app/settings.h"
#include "cli/cli_text.h"
#include "entry/duration_rule.h"
#include "entry/number_text.h"
#include "entry/rate_rules.h"
#include "fuzz_support.h"
#include "platform/calendar.h"
#include "platform/date_format.h"
#include "platform/string_printf.h"

namespace {

void editorBoxes(std::u16string_view text) {
    double value = qb::parseNumber(text);
    if (std::isnan(value)) __builtin_trap();
    qb::holdsLetter(text);
    qb::twoDecimals(value);
    // Whatever is typed, a duration or rate that is taken shows again as
    // text that reads back to itself, and one out of range is never taken.
    const std::int64_t hundredths = qb::parseHundredths(text);
    const qb::Settings plain = qb::defaultSettings();
    const std::optional<std::uint16_t> duration = qb::durationFromText(text, plain);
    if (duration.has_value() != (hundredths >= 0 && hundredths <= qb::kMaxDuration) ||
        (duration && (*duration != hundredths ||
                      qb::parseHundredths(qb::durationText(*duration)) != *duration))) {
        __builtin_trap();
    }
    const std::optional<std::uint32_t> rate = qb::editorRate(text);
    if (rate && qb::parseHundredths(qb::rateText(*rate)) != *rate) __builtin_trap();
    std::vector<std::uint8_t> bytes;
    for (qb::RegType type : {qb::REG_SZ, qb::REG_BINARY, qb::REG_DWORD}) {
        qb::settingBytesFromText(type, text, &bytes);
    }
}

void commandLine(std::string_view text) {
    qb::SYSTEMTIME st{};
    qb::FILETIME ft = 0;
    if (qb::parseDateArg(text, &st)) {
        if (!qb::systemTimeToFileTime(st, &ft) || qb::isoDate(ft) != text) __builtin_trap();
    }
    if (qb::parseTimeArg(text, &st)) {
        std::string again = qb::stringPrintf("%02u:%02u", st.wHour, st.wMinute);
        if (again != text && "0" + std::string(text) != again) __builtin_trap();
    }
    std::uint32_t n = 0;
    if (qb::parseUnsignedArg(text, &n) &&
        text.find_first_not_of("0123456789") != std::string_view::npos) {
        __builtin_trap();
    }
    qb::parseNumber(qb::u16(text));
    qb::holdsControlCharacter(text);
    if (qb::dateArgProblem("--date", text).empty()) __builtin_trap();
}

void pictures(const std::u16string& picture) {
    qb::LocaleInfo locale;
    qb::SYSTEMTIME st{};
    st.wYear = 2026;
    st.wMonth = 11;
    st.wDay = 23;
    st.wDayOfWeek = 1;
    st.wHour = 18;
    st.wMinute = 5;
    st.wSecond = 9;
    qb::getDateFormat(locale, 0, st, &picture);
    qb::getDateFormat(locale, 0, st, &picture, 64);
    qb::getTimeFormat(locale, 0, st, &picture);
    qb::getTimeFormat(locale, qb::TIME_NOSECONDS, st, &picture, 32);
    locale.shortDate = locale.longDate = locale.timeFormat = locale.yearMonth = picture;
    qb::getDateFormat(locale, qb::DATE_LONGDATE, st, nullptr);
    qb::getTimeFormat(locale, qb::TIME_NOSECONDS, st, nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string wide = qb::fuzz::utf16(data, size);
    editorBoxes(wide);
    pictures(wide);
    commandLine(qb::fuzz::bytesOf(data, size));
    return 0;
}
