#pragma once

// The eighteen fields a report can show: column titles and cell texts.

#include <string>

#include "export/entry_pictures.h"
#include "export/export_settings.h"

namespace qb {

struct TimeEntry;

inline constexpr int kReportFieldCount = 18;
inline constexpr int kFieldDate = 0;
inline constexpr int kFieldDuration = 5;
inline constexpr int kFieldStartTime = 9;
inline constexpr int kFieldAmount = 15;
inline constexpr int kFieldRate = 17;

// "Entry Date" ... "Rate", the custom fields by the user's captions.
std::u16string reportFieldTitle(int field, const Settings& settings);
std::u16string reportCellText(int field, const TimeEntry& entry, const ExportSettings& env);
// The same text appended to `out`, with the pictures of `env`'s locale read
// once by the caller.
void appendReportCell(int field, const TimeEntry& entry, const ExportSettings& env,
                      const EntryPictures& pictures, std::u16string& out);
// Duration, Amount and Rate.
bool reportFieldRightAligned(int field);

// The report field of an entry property (1001 date ... 1018 rate type),
// whatever type bits the id carries; -1 for none.
int reportFieldOfProperty(std::uint32_t propId);

}  // namespace qb
