#pragma once

// What each list style shows for an entry, as texts. The windows only draw
// these.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/date_format.h"
#include "views/period_view.h"

namespace qb {

struct TimeEntry;
struct Settings;

enum ListStyle : std::uint32_t { kDefaultStyle = 0, kSimpleStyle = 1, kTreeStyle = 2 };

// 0 non-billable, 1 billable and unpaid, 2 billable and paid.
enum EntryStatus : int { kNonBillable = 0, kUnpaid = 1, kPaid = 2 };
EntryStatus entryStatus(const TimeEntry& entry);

// The display options kept in the 20-byte "ViewCust" setting.
struct ListDisplay {
    std::uint32_t entryTimeMode = 0;      // 0 duration+start, 1 duration+start-end, 2 start-end
    std::uint32_t displayFlags = 0;       // 0x01 client name, 0x02 status icon
    std::uint32_t colour[3] = {0, 0, 0};  // palette index per status; 0 system colour

    bool showClientName() const { return displayFlags & 0x01; }
    bool showStatusIcon() const { return displayFlags & 0x02; }
};
// The "Entry Time:" choices, by entryTimeMode.
inline constexpr std::u16string_view kEntryTimeModeNames[] = {
    u"Duration, Start", u"Duration, Start, End", u"Start, End"};
ListDisplay listDisplayOf(const Settings& settings);
void storeListDisplay(const ListDisplay& display, Settings& settings);

// The colour palette of "Customize...", as 0x00BBGGRR; entry 0 stands for
// the system's window-text colour.
inline constexpr std::size_t kPaletteSize = 28;
extern const std::uint32_t kPalette[kPaletteSize];

// The default style's three or four lines.
std::vector<std::u16string> defaultRowLines(const TimeEntry& entry, ViewKind view,
                                            const ListDisplay& display, const LocaleInfo& locale);

inline constexpr std::size_t kSimpleColumns = 11;
// Column titles of the simple style, in order.
extern const std::array<std::u16string_view, kSimpleColumns> kSimpleColumnTitles;
extern const std::array<int, kSimpleColumns> kSimpleColumnWidths;
std::array<std::u16string, kSimpleColumns> simpleRowCells(const TimeEntry& entry,
                                                          const LocaleInfo& locale);

// The end of an entry's work: its start plus the duration's whole minutes.
SYSTEMTIME entryEndTime(const TimeEntry& entry);

}  // namespace qb
