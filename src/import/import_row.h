#pragma once

// What every reader of another tracker's file produces: one neutral row per
// time record, with the fields the format carries mapped to ours and
// nothing of our rules applied yet.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/win_types.h"

namespace qb {

enum class ImportFormat {
    kTimewarrior,
    kWatson,
    kToggl,
    kClockify,
    kKimai,
    kHarvest,
    kHamster,
    kIcal,
};

// The name on the command line ("timewarrior", ...) and back.
std::string_view importFormatName(ImportFormat format);
std::optional<ImportFormat> importFormatNamed(std::string_view name);
// The formats in the order the command line and the desktop list them.
inline constexpr ImportFormat kImportFormats[] = {
    ImportFormat::kTimewarrior, ImportFormat::kWatson, ImportFormat::kToggl,
    ImportFormat::kClockify,    ImportFormat::kKimai,  ImportFormat::kHarvest,
    ImportFormat::kHamster,     ImportFormat::kIcal,
};
// JSON formats count records, the others lines.
bool countsRecords(ImportFormat format);

// What the user gives for the whole file; each fills what a row leaves empty.
struct ImportOptions {
    std::u16string client;
    std::u16string project;
    std::u16string task;
    std::optional<bool> billable;  // none: the default of a new entry
    std::u16string rate;           // as typed into the rate box
    std::u16string currency;
};

struct ImportRow {
    // The line (or record) where the row starts, from 1.
    std::size_t line = 0;
    std::u16string client;
    std::u16string project;
    std::u16string task;
    std::u16string note;
    // The local day of the work, and its start time when the file has one.
    SYSTEMTIME day{};
    std::optional<SYSTEMTIME> start;
    // The duration: exact seconds (end - start, or an H:MM:SS column) or,
    // when the file writes decimal hours, their text as typed into a box.
    std::optional<std::int64_t> seconds;
    std::u16string hours;
    // Billing as far as the file says it.
    std::optional<bool> billable;
    std::u16string rate;  // currency units, "95.00"
    std::u16string currency;
    bool fixedRate = false;
    // The row's identity across files: the tool's own id, else its content.
    std::string identity;
    // Non-empty when the reader could not read the row's times; the row is
    // refused with this reason.
    std::string problem;
};

// Called once per row in file order; answering false stops the reading.
using RowSink = std::function<bool(ImportRow&)>;

// A file that is not of the format at all (another format, cut short):
// nothing of it can be trusted, so the whole file is refused.
struct ReadStatus {
    bool ok = true;
    std::size_t line = 0;  // line or record number, 0 for the whole file
    std::string reason;

    static ReadStatus failure(std::size_t line, std::string reason) {
        return {false, line, std::move(reason)};
    }
};

}  // namespace qb
