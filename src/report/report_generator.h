#pragma once

// HTML reports of the entries a criteria record chooses, laid out by a
// report layout: grouped (one table per group) or flat (one table). The
// page is built as a markup document with no I/O; generateReport writes it.

#include <string>
#include <vector>

#include "export/export_settings.h"
#include "platform/win_types.h"
#include "report/report_layout.h"

namespace qb {

class EntryTable;
class MarkupDocument;
struct EntryFilter;
struct TimeEntry;

inline constexpr std::u16string_view kReportFailed = u"Report generation has failed.";

struct ReportRequest {
    ReportLayout layout;
    EntryFilter const* criteria = nullptr;
    ExportSettings env;
    SYSTEMTIME today{};  // the report date of the footer
};

// The page of `entries`, which come in date order and have passed the
// criteria already.
MarkupDocument buildReport(const ReportRequest& request, std::vector<TimeEntry> entries);
// The bytes' text: the document type line, then the document with every
// empty-element "/>" written " />".
std::u16string reportFileText(const MarkupDocument& page);

// Selects the entries, builds the page and writes it to `fileName`,
// replacing any file there. False when a write fails.
bool generateReport(EntryTable& table, const std::string& fileName, const ReportRequest& request);

}  // namespace qb
