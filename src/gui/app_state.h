#pragma once

// What the windows of the desktop application share for the whole run: the
// open store, the settings, the view filter and the user's formats.

#include <QString>
#include <memory>
#include <string>

#include "app/settings.h"
#include "platform/date_format.h"
#include "platform/platform.h"
#include "store/tables.h"
#include "views/entry_filter.h"

namespace qb {

class AppState {
  public:
    explicit AppState(std::unique_ptr<Platform> platform);
    // Opens the entry table (false: the application cannot run), the master
    // tables, then loads the settings, the filter and the formats.
    bool open();
    bool saveSettings();

    Platform& platform() { return *platform_; }
    Registry& registry() { return platform_->registry(); }
    EntryTable& entries() { return entries_; }
    MasterTables& masters() { return masters_; }
    Settings& settings() { return settings_; }
    EntryFilter& filter() { return filter_; }
    const LocaleInfo& locale() const { return locale_; }

  private:
    std::unique_ptr<Platform> platform_;
    EntryTable entries_;
    MasterTables masters_;
    Settings settings_;
    EntryFilter filter_;
    LocaleInfo locale_;
};

// Conversions at the edge between the core's UTF-16 and Qt.
inline QString toQt(const std::u16string& text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::u16string fromQt(const QString& text) {
    return text.toStdU16String();
}

}  // namespace qb
