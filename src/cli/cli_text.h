#pragma once

// The command line's text forms: UTF-8 at the terminal, YYYY-MM-DD dates,
// HH:MM times, decimals with a point.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/win_types.h"

namespace qb {

std::string u8(std::u16string_view text);
std::u16string u16(std::string_view text);

bool parseDateArg(std::string_view text, SYSTEMTIME* out);
// The message for a date option that parseDateArg refused: the form it
// takes, or, for a well-formed date the calendar lacks (2024-02-30), that
// the date does not exist and why.
std::string dateArgProblem(std::string_view option, std::string_view text);
// True when the UTF-8 text holds a tab, CR, LF or another control character
// (U+0000 to U+001F, U+007F, U+0080 to U+009F).
bool holdsControlCharacter(std::string_view utf8);
bool parseTimeArg(std::string_view text, SYSTEMTIME* out);
bool parseUnsignedArg(std::string_view text, std::uint32_t* out);

// "YYYY-MM-DD", and "YYYY-MM-DDTHH:MM:SS.mmm" of a stored date.
std::string isoDate(FILETIME date);
std::string isoDateTimeMillis(FILETIME date);
std::string isoDateTime(const SYSTEMTIME& st);

// The text with CR and LF written as \r and \n, so that it stays on one line.
std::string escapedLineBreaks(std::u16string_view text);

// Lowercase hex of bytes.
std::string hexBytes(const std::uint8_t* data, std::size_t size);

}  // namespace qb
