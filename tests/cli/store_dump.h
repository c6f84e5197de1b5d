#pragma once

// A data directory filled with many entries, and the check of a store left
// behind by a failed or killed command: the tests of crashes, failed writes
// and full disks share them.

#include <string>

namespace qb::testing {

// More than any batch size a bulk operation ever committed in: 2,100
// entries for Acme and Globex over May 2024, every other one billable, the
// first with a note.
inline constexpr int kManyEntries = 2100;
void fillStore(const std::string& dataDir, int entries = kManyEntries);

// Checks the data file with SQLite's integrity check (a test failure when
// it does not pass) and answers every record of the object store (entries
// and master data) as text, for comparing states. Empty without a file.
std::string checkedRecords(const std::string& dataDir);

// The names in a directory, sorted, joined by spaces.
std::string namesIn(const std::string& dir);

}  // namespace qb::testing
