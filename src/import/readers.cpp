#include "import/readers.h"

#include <array>

#include "import/csv_reader.h"

namespace qb {
namespace {

struct FormatName {
    ImportFormat format;
    std::string_view name;
};
constexpr std::array<FormatName, 8> kNames = {{
    {ImportFormat::kTimewarrior, "timewarrior"},
    {ImportFormat::kWatson, "watson"},
    {ImportFormat::kToggl, "toggl"},
    {ImportFormat::kClockify, "clockify"},
    {ImportFormat::kKimai, "kimai"},
    {ImportFormat::kHarvest, "harvest"},
    {ImportFormat::kHamster, "hamster"},
    {ImportFormat::kIcal, "ical"},
}};

std::string_view skipBlanksAndMark(std::string_view bytes) {
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
    while (!bytes.empty() &&
           (bytes[0] == ' ' || bytes[0] == '\t' || bytes[0] == '\r' || bytes[0] == '\n')) {
        bytes.remove_prefix(1);
    }
    return bytes;
}

}  // namespace

std::string_view importFormatName(ImportFormat format) {
    for (const FormatName& f : kNames) {
        if (f.format == format) return f.name;
    }
    return {};
}

std::optional<ImportFormat> importFormatNamed(std::string_view name) {
    for (const FormatName& f : kNames) {
        if (f.name == name) return f.format;
    }
    return std::nullopt;
}

bool countsRecords(ImportFormat format) {
    return format == ImportFormat::kTimewarrior || format == ImportFormat::kWatson;
}

ReadStatus readRows(ImportFormat format, std::string_view bytes, const ImportOptions& options,
                    const RowSink& sink) {
    switch (format) {
        case ImportFormat::kTimewarrior:
            return readTimewarrior(bytes, options, sink);
        case ImportFormat::kWatson:
            return readWatson(bytes, options, sink);
        case ImportFormat::kToggl:
            return readToggl(bytes, options, sink);
        case ImportFormat::kClockify:
            return readClockify(bytes, options, sink);
        case ImportFormat::kKimai:
            return readKimai(bytes, options, sink);
        case ImportFormat::kHarvest:
            return readHarvest(bytes, options, sink);
        case ImportFormat::kHamster:
            return readHamster(bytes, options, sink);
        case ImportFormat::kIcal:
            return readIcal(bytes, options, sink);
    }
    return ReadStatus::failure(0, "unknown format");
}

std::optional<ImportFormat> guessImportFormat(std::string_view bytes) {
    const std::string_view start = skipBlanksAndMark(bytes);
    if (start.empty()) return std::nullopt;
    if (start[0] == '[') {
        // The first record decides: timew writes objects with "start" and
        // "end", Watson arrays (its frames file) or objects with "stop".
        const std::string_view first = skipBlanksAndMark(start.substr(1));
        if (first.empty() || first[0] == ']') return ImportFormat::kTimewarrior;
        if (first[0] == '[') return ImportFormat::kWatson;
        const std::string_view head = first.substr(0, first.find('}'));
        if (head.find("\"stop\"") != std::string_view::npos) return ImportFormat::kWatson;
        return ImportFormat::kTimewarrior;
    }
    if (start.substr(0, 15) == "BEGIN:VCALENDAR") return ImportFormat::kIcal;
    CsvReader reader(bytes);
    std::vector<std::string> header;
    std::size_t line = 0;
    if (!reader.next(&header, &line)) return std::nullopt;
    auto has = [&](std::string_view name) { return columnOf(header, {name}) >= 0; };
    if (has("activity") && has("start time") && has("end time")) return ImportFormat::kHamster;
    if (has("Duration (h)") || has("Duration (decimal)")) return ImportFormat::kClockify;
    if (has("Start date") && has("Start time") && has("Description")) return ImportFormat::kToggl;
    if (has("Customer") && has("Activity")) return ImportFormat::kKimai;
    if (has("Date") && has("Client") && has("Task") && has("Hours")) return ImportFormat::kHarvest;
    return std::nullopt;
}

}  // namespace qb
