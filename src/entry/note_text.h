#pragma once

// A note is kept as UTF-16LE text in the entry's note bytes; these are the
// only two places that know it.

#include <cstdint>
#include <string>
#include <vector>

namespace qb {

struct TimeEntry;

// The note as text; a trailing odd byte and a terminating NUL are dropped.
std::u16string noteText(const TimeEntry& entry);
std::u16string noteText(const std::vector<std::uint8_t>& bytes);
// The same text appended to `out`, for writers of many notes.
void appendNoteText(const std::vector<std::uint8_t>& bytes, std::u16string& out);
std::vector<std::uint8_t> noteBytes(const std::u16string& text);

}  // namespace qb
