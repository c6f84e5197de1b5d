#pragma once

// HTML reports of the entries a criteria record chooses, laid out by a
// report layout: grouped (one table per group) or flat (one table). The
// page is written as the entries are walked; groups whose key is not the
// date are kept aside (on disk beyond a bound) and written in key order.

#include <string>
#include <vector>

#include "export/export_settings.h"
#include "platform/win_types.h"
#include "report/report_layout.h"

namespace qb {

class EntryTable;
struct EntryFilter;
struct TimeEntry;

inline constexpr std::u16string_view kReportFailed = u"Report generation has failed.";

// What a page is built from.
struct ReportRequest {
    ReportLayout layout;
    EntryFilter const* criteria = nullptr;
    ExportSettings env;
    SYSTEMTIME today{};  // the report date of the footer
};

// The report command's generator: selects the entries the criteria choose,
// builds the page for the layout's type (grouped or flat) and writes it.
class ReportGenerator {
  public:
    ReportGenerator(EntryTable& table, const ReportLayout& layout, ExportSettings env,
                    const SYSTEMTIME& today);
    // Writes `fileName`, replacing any file there; false when a write fails
    // (`error` then names the file and the reason, and the file is left as
    // it was).
    bool generate(const std::string& fileName, const EntryFilter& criteria,
                  std::string* error = nullptr);

  private:
    EntryTable& table_;
    ReportLayout layout_;
    ExportSettings env_;
    SYSTEMTIME today_;
};

}  // namespace qb
