#pragma once

// Saved report layouts: records of kind 10 in ListTable holding a name and
// the 220 bytes of the layout. Names compare case-sensitively.

#include <string>
#include <string_view>
#include <vector>

#include "platform/win_types.h"
#include "report/report_layout.h"

namespace qb {

class Platform;
class Registry;
struct Settings;

struct SavedLayout {
    CEOID oid = 0;
    std::u16string name;
};

// Every saved layout, in table order.
std::vector<SavedLayout> savedLayouts(Platform& platform);
// The record of that name, or 0.
CEOID findSavedLayout(Platform& platform, std::u16string_view name);
// Reads the layout of a record, with its field order extended as a load
// does. False when the record is no saved layout or its blob is not 220 bytes.
bool loadSavedLayout(Platform& platform, CEOID oid, ReportLayout* layout);
// Writes name and layout into the record `oid`, or into a new record when it
// is 0. Answers the record's id, 0 on failure.
CEOID writeSavedLayout(Platform& platform, CEOID oid, std::u16string_view name,
                       const ReportLayout& layout);
bool deleteSavedLayout(Platform& platform, CEOID oid);
// False, changing nothing, for a reserved name.
bool renameSavedLayout(Platform& platform, CEOID oid, std::u16string_view name);

// The designer's working layout: the layout, the name of the saved layout it
// came from and that record (0 for a built-in or renamed layout).
struct WorkingLayout {
    ReportLayout layout;
    std::u16string name;
    CEOID oid = 0;
};

enum class SaveOutcome {
    kSaved,
    kExists,    // a layout of that name exists: ask "The report already exists..."
    kReserved,  // the name of a built-in layout: refused
    kFailed,
};

// "client" and "date", in any case, name the built-in layouts on the
// command line, so no saved layout may take them (on saving or renaming).
bool isReservedLayoutName(std::u16string_view name);
inline constexpr std::u16string_view kReservedLayoutNameText =
    u"\"client\" and \"date\" are the names of the built-in reports. Please choose another name.";

// "Save..." with the name entered. A new name (a change of case counts)
// starts a new record. When a layout of the name exists the save waits for
// `overwrite`; confirmed, it replaces that layout's record. A reserved name
// changes nothing.
SaveOutcome saveWorkingLayout(Platform& platform, WorkingLayout& working,
                              std::u16string_view enteredName, bool overwrite);

inline constexpr std::u16string_view kReportExistsQuestion =
    u"The report already exists. Do you want to overwrite it?";
inline constexpr std::u16string_view kNoSavedReport = u"There is no saved report.";

// The layout a report starts from: the saved layout named by DefReport,
// else the built-in "Client".
WorkingLayout defaultLayout(Platform& platform, const Settings& settings);
// "Set As Default": DefReport becomes the working name (an unnamed, built-in
// layout clears it) and the settings are saved.
bool setDefaultLayout(Registry& registry, Settings& settings, std::u16string_view workingName);

}  // namespace qb
