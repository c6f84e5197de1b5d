#pragma once

// What a bulk change says when it is done: the counts of what it changed,
// in the message box of the desktop and on the command line's stdout.

#include <string>
#include <string_view>

namespace qb {

// "12": a count in decimal.
std::u16string numberText(long n);
// "1 entry", "12 entries": a count with its noun.
std::u16string countText(long count, std::u16string_view one, std::u16string_view many);

// "Marked 12 entries as paid."
std::u16string markPaidDoneText(long marked);

// "Replace changed 12 entries and 3 names (1 merged into the one already
// there)."; the part in brackets only when something merged.
std::u16string replaceDoneText(long entries, long renamed, long merged);

}  // namespace qb
