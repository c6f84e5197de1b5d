#pragma once

// Whole files in and out, for the small text files the user exchanges with
// other programs (lists and notes). Every write is checked.

#include <cstdint>
#include <string>

namespace qb {

// Writes the bytes to the file through FileWriter (all or nothing); false
// when any step fails, the close included; `error` then names the file.
bool writeWholeFile(const std::string& path, const std::string& bytes,
                    std::string* error = nullptr);

// Reads a regular file of at most `limit` bytes; false for a missing,
// unreadable, oversized or non-regular file.
bool readWholeFile(const std::string& path, std::uintmax_t limit, std::string* out);

}  // namespace qb
