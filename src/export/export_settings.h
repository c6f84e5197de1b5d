#pragma once

#include <string>

#include "app/settings.h"
#include "platform/date_format.h"

namespace qb {

class Registry;

// What the exports and reports read from the user's preferences: the
// settings, the date and time pictures and the ANSI code page.
struct ExportSettings {
    Settings settings;
    LocaleInfo locale;
    std::string codePage = "CP1252";
};

ExportSettings loadExportSettings(Registry& registry, const Settings& settings);

}  // namespace qb
