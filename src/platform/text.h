#pragma once

// Text conversions at the edges (UTF-8, the ANSI code page) and the string
// comparison of the platform.

#include <string>
#include <string_view>

namespace qb {

class Registry;

// Invalid sequences become U+FFFD, one per maximal invalid subsequence.
std::u16string utf8ToUtf16(std::string_view text);
// An unpaired surrogate becomes U+FFFD.
std::string utf16ToUtf8(std::u16string_view text);

// The text in the given code page, as glibc's iconv names it ("CP1252").
// A character the code page lacks becomes one '?' (a surrogate pair too).
// An unknown code page keeps ASCII only.
std::string toAnsi(std::u16string_view text, const std::string& codePage = "CP1252");
// Bytes the code page does not define become U+FFFD. An unknown code page
// keeps ASCII only.
std::u16string fromAnsi(std::string_view bytes, const std::string& codePage = "CP1252");

// The code page named by the user's "ACP" setting, as an iconv name; a bare
// number such as "1252" names Windows code page 1252. Missing, empty or
// unknown to iconv: "CP1252".
std::string ansiCodePage(Registry& registry);

// <0, 0 or >0. Case-sensitive is UTF-16 code unit order; with `ignoreCase`
// each unit is simply case-folded first (Latin, Greek and Cyrillic letters).
int compareStringW(std::u16string_view a, std::u16string_view b, bool ignoreCase);

}  // namespace qb
