#include "app/settings.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "platform/data_file.h"
#include "platform/registry.h"

namespace qb {
namespace {

class SettingsTest : public ::testing::Test {
  protected:
    RegKey appKey() { return *registry.createKey(RegRoot::HKEY_CURRENT_USER, kAppKey); }
    Settings loaded() {
        Settings s;
        loadSettings(registry, s);
        return s;
    }
    void setBinary(const std::string& name, std::size_t size, std::uint8_t fill) {
        ASSERT_EQ(appKey().setValue(name, REG_BINARY, std::vector<std::uint8_t>(size, fill)),
                  ERROR_SUCCESS);
    }

    std::unique_ptr<DataFile> file = DataFile::openInMemory();
    Registry registry{*file};
};

TEST_F(SettingsTest, FreshRegistryGivesTheDefaults) {
    const Settings s = loaded();
    EXPECT_EQ(s, defaultSettings());
    // Week view, default list style, 8-point bold list font.
    EXPECT_EQ((std::tuple(s.view, s.listStyle, listFontTenths(s), listFontWeight(s))),
              (std::tuple(2u, 0u, 80, kWeightBold)));
    EXPECT_EQ(s.defaultCurrency, u"USD");
    EXPECT_EQ(s.minTime, 15);
    EXPECT_EQ(s.custom3Caption, u"Custom 3");
}

TEST_F(SettingsTest, StringMustFitItsBufferWithItsNul) {
    struct Case {
        std::size_t length;
        bool fits;
    };
    // 64 bytes hold 31 characters and the NUL; 32 and 40 do not fit.
    for (Case c : {Case{31, true}, Case{32, false}, Case{40, false}}) {
        const std::u16string caption(c.length, u'x');
        ASSERT_EQ(appKey().setString("Custom1", caption), ERROR_SUCCESS);
        EXPECT_EQ(loaded().custom1Caption, c.fits ? caption : u"Custom 1") << c.length;
    }
    ASSERT_EQ(appKey().setString("DefCurr", std::u16string(16, u'E')), ERROR_SUCCESS);
    EXPECT_EQ(loaded().defaultCurrency, u"USD");
}

TEST_F(SettingsTest, BinaryTooLargeOrMissingKeepsPreviousContent) {
    Settings s;
    s.viewCustom.fill(7);
    s.periodStart = {2024, 3, 5, 14, 0, 0, 0, 0};
    const Settings before = s;

    loadSettings(registry, s);  // both missing
    EXPECT_EQ(s.viewCustom, before.viewCustom);
    EXPECT_EQ(s.periodStart, before.periodStart);

    setBinary("ViewCust", 21, 0xAA);
    setBinary("PeriodStart", 17, 0xAA);
    loadSettings(registry, s);
    EXPECT_EQ(s.viewCustom, before.viewCustom);
    EXPECT_EQ(s.periodStart, before.periodStart);

    setBinary("ViewCust", 20, 0x55);
    loadSettings(registry, s);
    EXPECT_EQ(s.viewCustom[0], 0x55);
    EXPECT_EQ(s.viewCustom[19], 0x55);
}

TEST_F(SettingsTest, ShortBinaryOverwritesOnlyItsOwnBytes) {
    Settings s;
    s.periodStart = {2024, 3, 5, 14, 9, 30, 1, 0};
    ASSERT_EQ(appKey().setValue("PeriodStart", REG_BINARY, {0xE9, 0x07}), ERROR_SUCCESS);
    loadSettings(registry, s);
    EXPECT_EQ(s.periodStart, (SYSTEMTIME{2025, 3, 5, 14, 9, 30, 1, 0}));
}

TEST_F(SettingsTest, DwordsLandTruncatedInSixteenBitFields) {
    RegKey key = appKey();
    ASSERT_EQ(key.setDword("MinTime", 0x1001E), ERROR_SUCCESS);
    ASSERT_EQ(key.setDword("FSize", 0xFFFF0003), ERROR_SUCCESS);
    ASSERT_EQ(key.setDword("View", 0x10003), ERROR_SUCCESS);
    const Settings s = loaded();
    EXPECT_EQ(s.minTime, 30);
    EXPECT_EQ(s.fontSize, 3);
    EXPECT_EQ(s.view, 0x10003u);  // a 32-bit field keeps all of it
}

TEST_F(SettingsTest, SaveThenLoadGivesTheSameSettings) {
    Settings s = defaultSettings();
    s.view = 4;
    s.optionFlags = kBillableDefault | kPreciseCalculation | kShowWeekNumber;
    s.fontSize = 2;
    s.minTime = 6;
    s.listStyle = 2;
    for (std::size_t i = 0; i < s.viewCustom.size(); ++i) s.viewCustom[i] = std::uint8_t(i * 13);
    s.custom1Caption = u"Ticket";
    s.custom2Caption = u"";
    s.custom3Caption = u"Région";
    s.defaultCurrency = u"EUR";
    s.encoding = 2;
    s.breakSub = 3;
    s.timeInterval = 4;
    s.sort = 8;
    s.defaultReport = u"Monthly by client";
    s.periodStart = {2023, 12, 5, 1, 0, 0, 0, 0};
    s.periodEnd = {2024, 1, 3, 31, 23, 59, 59, 999};
    s.hourSymbol = 0;
    ASSERT_TRUE(saveSettings(registry, s));
    EXPECT_EQ(loaded(), s);
}

TEST_F(SettingsTest, SaveCutsAStringThatWouldNotReadBack) {
    Settings s = defaultSettings();
    s.custom2Caption = std::u16string(40, u'y');
    ASSERT_TRUE(saveSettings(registry, s));
    EXPECT_EQ(loaded().custom2Caption, std::u16string(31, u'y'));
}

TEST_F(SettingsTest, TableListsEveryValueInOrder) {
    const std::vector<std::string> expected = {
        "View",         "DefNewStyles", "FSize",     "MinTime",     "ListStyle", "ViewCust",
        "Custom1",      "Custom2",      "Custom3",   "DefCurr",     "Encoding",  "BreakSub",
        "TimeInterval", "Sort",         "DefReport", "PeriodStart", "PeriodEnd", "HourSymbol"};
    std::vector<std::string> names;
    for (const SettingDescriptor& d : settingsTable()) names.push_back(d.name);
    EXPECT_EQ(names, expected);
    EXPECT_EQ(findSetting("DefReport")->bufferSize, 128u);
    EXPECT_EQ(findSetting("ViewCust")->bufferSize, 20u);
    EXPECT_EQ(findSetting("PeriodEnd")->bufferSize, 16u);
    EXPECT_EQ(findSetting("MinTime")->type, REG_DWORD);
    EXPECT_EQ(findSetting("minTime"), nullptr);
}

TEST_F(SettingsTest, TableTextsOfLoadedValues) {
    Settings s = defaultSettings();
    s.periodStart = {2024, 2, 4, 29, 0, 0, 0, 0};
    s.viewCustom[0] = 0xAB;
    struct Case {
        const char* name;
        std::u16string text;
    };
    const Case cases[] = {
        {"DefNewStyles", u"16"},
        {"DefCurr", u"USD"},
        {"DefReport", u""},
        {"PeriodStart", u"e807020004001d000000000000000000"},
        {"PeriodEnd", std::u16string(32, u'0')},
        {"ViewCust", u"ab" + std::u16string(38, u'0')},
    };
    for (const Case& c : cases) EXPECT_EQ(findSetting(c.name)->text(s), c.text) << c.name;
}

TEST(SettingBytesFromText, EncodesEachType) {
    struct Case {
        RegType type;
        std::u16string text;
        bool ok;
        std::vector<std::uint8_t> bytes;
    };
    const Case cases[] = {
        {REG_DWORD, u"16", true, {16, 0, 0, 0}},
        {REG_DWORD, u"4294967295", true, {255, 255, 255, 255}},
        {REG_DWORD, u"4294967296", false, {}},
        {REG_DWORD, u"-1", false, {}},
        {REG_DWORD, u"", false, {}},
        {REG_SZ, u"Aé", true, {0x41, 0, 0xE9, 0, 0, 0}},
        {REG_SZ, u"", true, {0, 0}},
        {REG_BINARY, u"00Ff10", true, {0x00, 0xFF, 0x10}},
        {REG_BINARY, u"", true, {}},
        {REG_BINARY, u"abc", false, {}},
        {REG_BINARY, u"zz", false, {}},
    };
    for (const Case& c : cases) {
        const std::vector<std::uint8_t> untouched = {0xEE};
        std::vector<std::uint8_t> bytes = untouched;
        EXPECT_EQ(settingBytesFromText(c.type, c.text, &bytes), c.ok);
        EXPECT_EQ(bytes, c.ok ? c.bytes : untouched);  // a refusal leaves the output alone
    }
}

TEST_F(SettingsTest, ClearTypeOnlyWhenExactlyOne) {
    EXPECT_FALSE(clearTypeOn(registry));  // no key at all
    RegKey shell = *registry.createKey(RegRoot::HKEY_CURRENT_USER, "Software\\Microsoft\\Shell");
    EXPECT_FALSE(clearTypeOn(registry));  // key without the value
    for (std::uint32_t v : {0u, 2u, 0x10001u}) {
        shell.setDword("ClearType", v);
        EXPECT_FALSE(clearTypeOn(registry)) << v;
    }
    shell.setDword("ClearType", 1);
    EXPECT_TRUE(clearTypeOn(registry));
}

TEST(Fonts, ClearTypeQualities) {
    EXPECT_EQ(listFontAttributes(defaultSettings(), true, false).quality, kClearTypeCompatQuality);
    EXPECT_EQ(dialogFontAttributes(true).quality, kClearTypeCompatQuality);
    EXPECT_EQ(frameBoldFontAttributes(true).quality, kClearTypeQuality);
    EXPECT_EQ(listFontAttributes(defaultSettings(), false, false).quality, kDefaultQuality);
}

TEST(Fonts, PixelHeightRoundsHalfUpThenNegates) {
    struct Case {
        int tenths;
        int ppi;
        int pixels;
    };
    const Case cases[] = {
        {80, 96, -11},   // 10.67
        {90, 96, -12},   // 12.0
        {80, 192, -21},  // 21.33
        {75, 96, -10},   // 10.0
        {60, 96, -8},    // 8.0
        {0, 96, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(fontPixelHeight(c.tenths, c.ppi), c.pixels) << c.tenths << "@" << c.ppi;
    }
}

}  // namespace
}  // namespace qb
