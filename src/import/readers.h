#pragma once

// One reader per format. Each reads the bytes of a whole file (no file I/O
// here, so they can be driven from memory and fuzzed) and hands its rows to
// `sink` one by one in file order, mapped to our fields as the command
// line's table says. A file that is not of the format, or is cut short,
// answers a failed ReadStatus naming the line or record.

#include <optional>
#include <string_view>

#include "import/import_row.h"

namespace qb {

ReadStatus readTimewarrior(std::string_view bytes, const ImportOptions& options,
                           const RowSink& sink);
ReadStatus readWatson(std::string_view bytes, const ImportOptions& options, const RowSink& sink);
ReadStatus readToggl(std::string_view bytes, const ImportOptions& options, const RowSink& sink);
ReadStatus readClockify(std::string_view bytes, const ImportOptions& options, const RowSink& sink);
ReadStatus readKimai(std::string_view bytes, const ImportOptions& options, const RowSink& sink);
ReadStatus readHarvest(std::string_view bytes, const ImportOptions& options, const RowSink& sink);
ReadStatus readHamster(std::string_view bytes, const ImportOptions& options, const RowSink& sink);
ReadStatus readIcal(std::string_view bytes, const ImportOptions& options, const RowSink& sink);

ReadStatus readRows(ImportFormat format, std::string_view bytes, const ImportOptions& options,
                    const RowSink& sink);

// The format whose marks the bytes carry (JSON shape, header columns,
// BEGIN:VCALENDAR); none when nothing matches.
std::optional<ImportFormat> guessImportFormat(std::string_view bytes);

}  // namespace qb
