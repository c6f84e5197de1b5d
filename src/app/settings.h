#pragma once

// The user's preferences: one object for the whole run, kept as values of the
// application's registry key.

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"
#include "platform/win_types.h"

namespace qb {

// Fields in the order of the settings table, each named after its registry
// value. A constructed object holds zeros and empty strings: that is what
// stays in memory when the key cannot be opened on the first load.
struct Settings {
    std::uint32_t view = 0;                     // "View"
    std::uint32_t optionFlags = 0;              // "DefNewStyles"
    std::uint16_t fontSize = 0;                 // "FSize"
    std::uint16_t minTime = 0;                  // "MinTime"
    std::uint32_t listStyle = 0;                // "ListStyle"
    std::array<std::uint8_t, 20> viewCustom{};  // "ViewCust"
    std::u16string custom1Caption;              // "Custom1"
    std::u16string custom2Caption;              // "Custom2"
    std::u16string custom3Caption;              // "Custom3"
    std::u16string defaultCurrency;             // "DefCurr"
    std::uint16_t encoding = 0;                 // "Encoding"
    std::uint16_t breakSub = 0;                 // "BreakSub"
    std::uint16_t timeInterval = 0;             // "TimeInterval"
    std::uint16_t sort = 0;                     // "Sort"
    std::u16string defaultReport;               // "DefReport"
    SYSTEMTIME periodStart{};                   // "PeriodStart"
    SYSTEMTIME periodEnd{};                     // "PeriodEnd"
    std::uint32_t hourSymbol = 0;               // "HourSymbol"

    bool operator==(const Settings&) const = default;
};

// Bits of optionFlags.
inline constexpr std::uint32_t kBillableDefault = 0x1;
inline constexpr std::uint32_t kTapPreview = 0x2;
inline constexpr std::uint32_t kWeekStartsMonday = 0x8;
inline constexpr std::uint32_t kBoldList = 0x10;
inline constexpr std::uint32_t kPreciseCalculation = 0x2000;
inline constexpr std::uint32_t kDurationGranularity = 0x4000;
inline constexpr std::uint32_t kShowWeekNumber = 0x8000;

// What a fresh installation starts with; loading an empty key into a
// constructed object gives the same.
Settings defaultSettings();

// Reads every value of the table into `settings`. When the key cannot be
// opened nothing changes; a missing value, or a string too large for its
// buffer, takes its default; a binary that is missing or larger than its
// field keeps the field's previous content.
void loadSettings(Registry& registry, Settings& settings);

// Writes every value of the table; false when the key cannot be opened or a
// write fails (the other values are still written). A string longer than its
// buffer holds is cut so that it can be read back.
bool saveSettings(Registry& registry, const Settings& settings);

// One row of the settings table, for tools that list and change settings by
// their registry names.
struct SettingDescriptor {
    const char* name;          // registry value name
    RegType type;              // REG_DWORD, REG_SZ or REG_BINARY
    std::uint32_t bufferSize;  // bytes a load accepts: 4, the string buffer or the binary size
    // The field as text: numbers in decimal; strings as they are; binaries as
    // lowercase hex of all their bytes (an unset calendar time is all zeros).
    std::u16string (*text)(const Settings&);
    void (*load)(const RegKey&, const SettingDescriptor&, Settings&);
    long (*save)(RegKey&, const SettingDescriptor&, const Settings&);
};

// The table in declaration order.
std::span<const SettingDescriptor> settingsTable();
// The row of a registry value name (exact spelling), or null.
const SettingDescriptor* findSetting(std::string_view name);

// The bytes that a value of `type` written from `text` holds: a DWORD from
// unsigned decimal (little-endian), a string as UTF-16LE with its NUL, a
// binary from hex digits in pairs. False when the text does not fit the type.
bool settingBytesFromText(RegType type, std::u16string_view text, std::vector<std::uint8_t>* out);

// True when the device's ClearType setting is exactly 1.
bool clearTypeOn(Registry& registry);

// Fonts, all of one face, sized in tenths of a point.
inline constexpr char16_t kFontFace[] = u"Tahoma";
inline constexpr int kDefaultQuality = 0;
inline constexpr int kClearTypeQuality = 5;
inline constexpr int kClearTypeCompatQuality = 6;
inline constexpr int kWeightNormal = 400;
inline constexpr int kWeightBold = 700;

struct FontAttributes {
    int tenths = 0;
    int weight = kWeightNormal;
    int quality = kDefaultQuality;
    bool strikeOut = false;

    bool operator==(const FontAttributes&) const = default;
};

// The (negative) pixel height of a size, as the platform's fonts take it:
// ppi × tenths ÷ 720 in double precision, plus 0.5, truncated, negated.
int fontPixelHeight(int tenthsOfPoint, int pixelsPerInch);
int listFontTenths(const Settings& settings);
int listFontWeight(const Settings& settings);
FontAttributes listFontAttributes(const Settings& settings, bool clearType, bool strikeOut);
FontAttributes dialogFontAttributes(bool clearType);
// The main frame's bold font.
FontAttributes frameBoldFontAttributes(bool clearType);

}  // namespace qb
