#pragma once

// List files: plain text with one item per line, the way drop-down lists
// and client lists come in from other programs and go out again.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qb {

inline constexpr std::u16string_view kImportFailedMessage =
    u"Unable to import data. Please close some applications and try again.";

// A list file larger than this is not a list: 8 MiB holds some 60,000 names
// of full length, far beyond any drop-down anyone scrolls.
inline constexpr std::uintmax_t kListFileLimit = 8u << 20;

// An item longer than this is cut to its first kListItemKeep characters;
// one of exactly this length stays whole.
inline constexpr std::size_t kListItemLimit = 128;
inline constexpr std::size_t kListItemKeep = 127;

// Whether the bytes are well-formed UTF-8 (no overlong forms, surrogates or
// values past U+10FFFF).
bool isUtf8(std::string_view bytes);

// The text of a text file in UTF-8 or an 8-bit code page: UTF-8 after an
// EF BB BF mark (the mark dropped), or when the bytes are well-formed UTF-8
// and not all ASCII; else the code page.
std::u16string textFileText(std::string_view bytes, const std::string& codePage);

// The items of a list file's bytes: UTF-16LE after an FF FE mark, else
// textFileText (UTF-8 or the ANSI code page); split at CR and LF, empty
// pieces skipped, long pieces cut. Fails for a UTF-16 text whose first
// character is NUL and for 8-bit bytes holding a NUL (a binary file).
// UTF-16 text ends at its first NUL.
bool listItemsFromBytes(std::string_view bytes, const std::string& codePage,
                        std::vector<std::u16string>* out);

// Opens the file for reading and writing without sharing, as the import
// always has: a read-only file (no write permission bit, even for root) or
// one another program holds locked fails, and so does a missing, unreadable,
// non-regular or oversized file. Nothing is written to it.
bool readListFile(const std::string& path, const std::string& codePage,
                  std::vector<std::u16string>* out);

// Export List: the items joined by CR LF with none after the last; ANSI in
// the code page, or UTF-16LE behind an FF FE mark so that the import reads
// it back as UTF-16.
std::string listFileBytes(const std::vector<std::u16string>& items, bool unicode,
                          const std::string& codePage);

}  // namespace qb
