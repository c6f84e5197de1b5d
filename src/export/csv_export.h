#pragma once

// The CSV export: one line per entry, every field in double quotes, values
// written as they are (a quote inside a value is not doubled), CR LF line
// ends, the ANSI code page.

#include <string>

#include "export/entry_pictures.h"
#include "export/export_settings.h"

namespace qb {

class EntryTable;
struct EntryFilter;
struct TimeEntry;

// The header line, CR LF included, with the user's custom captions.
std::u16string csvHeader(const Settings& settings);
// One entry's line, CR LF included.
std::u16string csvLine(const TimeEntry& entry, const ExportSettings& env);

// Makes the lines of one export, the user's pictures read once for all.
class CsvLines {
  public:
    explicit CsvLines(const ExportSettings& env);
    // Appends one entry's line, CR LF included.
    void append(const TimeEntry& entry, std::u16string& line);

  private:
    const ExportSettings& env_;
    EntryPictures pictures_;
    std::u16string_view breakSubstitute_;
    std::u16string note_;
};
// What replaces a CR LF of a note for a BreakSub choice (0-3).
std::u16string_view lineBreakSubstitute(std::uint16_t breakSub);

// Writes the entries that pass `filter` within its dates. False when the file
// cannot be created or a write fails (`error` then names the file and the
// reason); the file is then left as it was.
bool ExportCsv(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
               const ExportSettings& env, std::string* error = nullptr);

}  // namespace qb
