#include "app/settings.h"

#include <algorithm>
#include <charconv>
#include <type_traits>

namespace qb {

Settings defaultSettings() {
    Settings s;
    s.view = 2;  // week
    s.optionFlags = kBoldList;
    s.fontSize = 1;  // 8 points
    s.minTime = 15;
    s.listStyle = 0;
    s.custom1Caption = u"Custom 1";
    s.custom2Caption = u"Custom 2";
    s.custom3Caption = u"Custom 3";
    s.defaultCurrency = u"USD";
    s.timeInterval = 3;  // 30 minutes
    s.hourSymbol = 1;
    return s;
}

namespace {

const char* const kShellKey = "Software\\Microsoft\\Shell";

const Settings& defaults() {
    static const Settings d = defaultSettings();
    return d;
}

std::u16string widen(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

std::u16string decimal(std::uint32_t v) {
    char buf[16];
    auto end = std::to_chars(buf, buf + sizeof buf, v).ptr;
    return widen({buf, static_cast<std::size_t>(end - buf)});
}

std::u16string hex(const std::vector<std::uint8_t>& bytes) {
    static const char kDigits[] = "0123456789abcdef";
    std::u16string out;
    for (std::uint8_t b : bytes) {
        out.push_back(static_cast<char16_t>(kDigits[b >> 4]));
        out.push_back(static_cast<char16_t>(kDigits[b & 0xF]));
    }
    return out;
}

// Binary fields as the registry holds them: raw bytes, calendar times as
// eight little-endian 16-bit fields.
template <std::size_t N>
constexpr std::uint32_t byteSize(const std::array<std::uint8_t, N>*) {
    return N;
}
constexpr std::uint32_t byteSize(const SYSTEMTIME*) {
    return 16;
}

template <std::size_t N>
std::vector<std::uint8_t> bytesOf(const std::array<std::uint8_t, N>& a) {
    return {a.begin(), a.end()};
}

std::vector<std::uint8_t> bytesOf(const SYSTEMTIME& t) {
    const std::uint16_t fields[] = {t.wYear, t.wMonth,  t.wDayOfWeek, t.wDay,
                                    t.wHour, t.wMinute, t.wSecond,    t.wMilliseconds};
    std::vector<std::uint8_t> out;
    for (std::uint16_t f : fields) {
        out.push_back(static_cast<std::uint8_t>(f));
        out.push_back(static_cast<std::uint8_t>(f >> 8));
    }
    return out;
}

// A value shorter than its field overwrites only its own bytes, as a read
// into the field's memory would.
template <std::size_t N>
void overlay(const std::vector<std::uint8_t>& data, std::array<std::uint8_t, N>& a) {
    std::copy_n(data.begin(), std::min(data.size(), N), a.begin());
}

void overlay(const std::vector<std::uint8_t>& data, SYSTEMTIME& t) {
    std::vector<std::uint8_t> bytes = bytesOf(t);
    std::copy_n(data.begin(), std::min(data.size(), bytes.size()), bytes.begin());
    auto word = [&bytes](std::size_t i) {
        return static_cast<std::uint16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    };
    t = {word(0), word(1), word(2), word(3), word(4), word(5), word(6), word(7)};
}

template <auto M>
using FieldOf = std::remove_cvref_t<decltype(std::declval<Settings&>().*M)>;

// DWORD values: a 16-bit field keeps the low half of what was stored.
template <auto M>
std::u16string numberText(const Settings& s) {
    return decimal(s.*M);
}
template <auto M>
void loadNumber(const RegKey& key, const SettingDescriptor& d, Settings& s) {
    std::uint32_t v = 0;
    if (key.queryDword(d.name, &v) == ERROR_SUCCESS) {
        s.*M = static_cast<FieldOf<M>>(v);
    } else {
        s.*M = defaults().*M;
    }
}
template <auto M>
long saveNumber(RegKey& key, const SettingDescriptor& d, const Settings& s) {
    return key.setDword(d.name, s.*M);
}

template <auto M>
std::u16string stringText(const Settings& s) {
    return s.*M;
}
template <auto M>
void loadString(const RegKey& key, const SettingDescriptor& d, Settings& s) {
    std::u16string text;
    s.*M = key.queryString(d.name, d.bufferSize, &text) == ERROR_SUCCESS ? text : defaults().*M;
}
template <auto M>
long saveString(RegKey& key, const SettingDescriptor& d, const Settings& s) {
    // Leave room for the terminating NUL inside the buffer.
    const std::size_t units = d.bufferSize / 2 - 1;
    return key.setString(d.name, (s.*M).substr(0, units));
}

template <auto M>
std::u16string binaryText(const Settings& s) {
    return hex(bytesOf(s.*M));
}
template <auto M>
void loadBinary(const RegKey& key, const SettingDescriptor& d, Settings& s) {
    RegValue v;
    if (key.queryValue(d.name, d.bufferSize, &v) == ERROR_SUCCESS) overlay(v.data, s.*M);
}
template <auto M>
long saveBinary(RegKey& key, const SettingDescriptor& d, const Settings& s) {
    return key.setValue(d.name, REG_BINARY, bytesOf(s.*M));
}

template <auto M>
constexpr SettingDescriptor dword(const char* name) {
    return {name, REG_DWORD, 4, &numberText<M>, &loadNumber<M>, &saveNumber<M>};
}
template <auto M>
constexpr SettingDescriptor string(const char* name, std::uint32_t bufferSize) {
    return {name, REG_SZ, bufferSize, &stringText<M>, &loadString<M>, &saveString<M>};
}
template <auto M>
constexpr SettingDescriptor binary(const char* name) {
    return {name,           REG_BINARY,     byteSize(static_cast<FieldOf<M>*>(nullptr)),
            &binaryText<M>, &loadBinary<M>, &saveBinary<M>};
}

constexpr SettingDescriptor kTable[] = {
    dword<&Settings::view>("View"),
    dword<&Settings::optionFlags>("DefNewStyles"),
    dword<&Settings::fontSize>("FSize"),
    dword<&Settings::minTime>("MinTime"),
    dword<&Settings::listStyle>("ListStyle"),
    binary<&Settings::viewCustom>("ViewCust"),
    string<&Settings::custom1Caption>("Custom1", 64),
    string<&Settings::custom2Caption>("Custom2", 64),
    string<&Settings::custom3Caption>("Custom3", 64),
    string<&Settings::defaultCurrency>("DefCurr", 32),
    dword<&Settings::encoding>("Encoding"),
    dword<&Settings::breakSub>("BreakSub"),
    dword<&Settings::timeInterval>("TimeInterval"),
    dword<&Settings::sort>("Sort"),
    string<&Settings::defaultReport>("DefReport", 128),
    binary<&Settings::periodStart>("PeriodStart"),
    binary<&Settings::periodEnd>("PeriodEnd"),
    dword<&Settings::hourSymbol>("HourSymbol"),
};

int hexDigit(char16_t c) {
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    return -1;
}

}  // namespace

std::span<const SettingDescriptor> settingsTable() {
    return kTable;
}

const SettingDescriptor* findSetting(std::string_view name) {
    for (const SettingDescriptor& d : kTable) {
        if (name == d.name) return &d;
    }
    return nullptr;
}

void loadSettings(Registry& registry, Settings& settings) {
    std::optional<RegKey> key = registry.createKey(RegRoot::HKEY_CURRENT_USER, kAppKey);
    if (!key) return;
    for (const SettingDescriptor& d : kTable) d.load(*key, d, settings);
}

bool saveSettings(Registry& registry, const Settings& settings) {
    std::optional<RegKey> key = registry.createKey(RegRoot::HKEY_CURRENT_USER, kAppKey);
    if (!key) return false;
    bool ok = true;
    for (const SettingDescriptor& d : kTable) {
        if (d.save(*key, d, settings) != ERROR_SUCCESS) ok = false;
    }
    return ok;
}

bool settingBytesFromText(RegType type, std::u16string_view text, std::vector<std::uint8_t>* out) {
    std::vector<std::uint8_t> bytes;
    switch (type) {
        case REG_DWORD: {
            if (text.empty() || text.size() > 10) return false;
            std::uint64_t v = 0;
            for (char16_t c : text) {
                if (c < u'0' || c > u'9') return false;
                v = v * 10 + static_cast<std::uint64_t>(c - u'0');
            }
            if (v > 0xFFFFFFFFu) return false;
            for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
            break;
        }
        case REG_SZ:
            for (char16_t c : text) {
                bytes.push_back(static_cast<std::uint8_t>(c));
                bytes.push_back(static_cast<std::uint8_t>(c >> 8));
            }
            bytes.insert(bytes.end(), {0, 0});
            break;
        case REG_BINARY:
            if (text.size() % 2 != 0) return false;
            for (std::size_t i = 0; i < text.size(); i += 2) {
                int hi = hexDigit(text[i]);
                int lo = hexDigit(text[i + 1]);
                if (hi < 0 || lo < 0) return false;
                bytes.push_back(static_cast<std::uint8_t>(hi << 4 | lo));
            }
            break;
        default:
            return false;
    }
    *out = std::move(bytes);
    return true;
}

bool clearTypeOn(Registry& registry) {
    std::optional<RegKey> key = registry.openKey(RegRoot::HKEY_CURRENT_USER, kShellKey);
    if (!key) return false;
    std::uint32_t value = 0;
    if (key->queryDword("ClearType", &value) != ERROR_SUCCESS) value = 0;
    return value == 1;
}

int fontPixelHeight(int tenthsOfPoint, int pixelsPerInch) {
    return -static_cast<int>(pixelsPerInch * tenthsOfPoint / 720.0 + 0.5);
}

int listFontTenths(const Settings& settings) {
    return (settings.fontSize + 7) * 10;
}

int listFontWeight(const Settings& settings) {
    return (settings.optionFlags & kBoldList) ? kWeightBold : kWeightNormal;
}

FontAttributes listFontAttributes(const Settings& settings, bool clearType, bool strikeOut) {
    return {listFontTenths(settings), listFontWeight(settings),
            clearType ? kClearTypeCompatQuality : kDefaultQuality, strikeOut};
}

FontAttributes dialogFontAttributes(bool clearType) {
    return {80, kWeightNormal, clearType ? kClearTypeCompatQuality : kDefaultQuality, false};
}

FontAttributes frameBoldFontAttributes(bool clearType) {
    return {80, kWeightBold, clearType ? kClearTypeQuality : kDefaultQuality, false};
}

}  // namespace qb
