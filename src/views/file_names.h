#pragma once

// The names save dialogs suggest, from what a file will hold:
// "quillarbor-2026-11.csv" for a month's export, with the client when the
// criteria choose one, "quillarbor-backup-2026-11-21.qbb" for a backup.

#include <string>
#include <string_view>

#include "platform/win_types.h"

namespace qb {

struct EntryFilter;

// "2026-11" for a whole month, "2026-11-21" for one day, else both days
// joined by "_"; empty when the start has no month.
std::u16string rangeNamePart(const SYSTEMTIME& start, const SYSTEMTIME& end);

// "quillarbor[-kind][-client]-range.extension"; `kind` and the extension may
// be empty. The client is written lower case, every run of characters other
// than letters and digits as one "-".
std::u16string suggestedFileName(std::u16string_view kind, const EntryFilter& criteria,
                                 std::u16string_view extension);

}  // namespace qb
