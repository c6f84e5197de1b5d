#pragma once

// The chosen entries as an iCalendar file that calendar programs read: one
// VEVENT per entry. An entry with a start time starts then and lasts its
// duration; one without is an all-day event of its day that keeps its hours
// in X-QUILLARBOR-DURATION. SUMMARY is the task, DESCRIPTION the note,
// CATEGORIES the client then the project. `import ical` reads all of it
// back.

#include <string>

namespace qb {

class EntryTable;
struct EntryFilter;
struct TimeEntry;

// The VEVENT of one entry, CR LF line ends, folded as the format wants.
std::string icalEvent(const TimeEntry& entry, const std::string& stamp);
// The lines before the first event and after the last.
std::string icalHeader();
std::string icalFooter();

// Writes the entries that pass `filter` within its dates, all or nothing.
// False when the file cannot be written; `error` then names why.
bool ExportIcal(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
                std::string* error = nullptr);

}  // namespace qb
