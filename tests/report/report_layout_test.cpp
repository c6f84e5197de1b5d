#include "report/report_layout.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "app/settings.h"
#include "platform/platform.h"
#include "report/saved_layouts.h"
#include "store/tables.h"

namespace qb {
namespace {

std::uint16_t u16At(const ReportLayout& l, std::size_t at) {
    return static_cast<std::uint16_t>(l.bytes()[at] | l.bytes()[at + 1] << 8);
}

TEST(ReportLayout, BuiltInRecordsByteByByte) {
    const struct {
        ReportLayout layout;
        std::uint16_t type;
        std::uint16_t dates;
        std::uint32_t groupBy;
    } cases[] = {{clientLayout(), 0, 1, 0x03EA001F}, {dateLayout(), 1, 2, 0}};
    const std::u16string title = u"Quillarbor Summary Report";
    const std::u16string order = u"01234a95bcde678fghijklmnopqrst";
    for (const auto& c : cases) {
        std::array<std::uint8_t, kReportLayoutSize> expected{};
        for (std::size_t i = 0; i < title.size(); ++i) expected[2 * i] = title[i] & 0xFF;
        expected[128] = static_cast<std::uint8_t>(c.type);
        expected[130] = static_cast<std::uint8_t>(c.dates);
        expected[132] = c.groupBy & 0xFF;
        expected[133] = c.groupBy >> 8 & 0xFF;
        expected[134] = c.groupBy >> 16 & 0xFF;
        expected[135] = c.groupBy >> 24 & 0xFF;
        for (std::size_t i = 0; i < order.size(); ++i) expected[152 + 2 * i] = order[i] & 0xFF;
        expected[216] = 1599 & 0xFF;
        expected[217] = 1599 >> 8;
        EXPECT_EQ(c.layout.bytes(), expected) << c.type;
        EXPECT_EQ(shownFields(c.layout), (std::vector<int>{0, 1, 2, 3, 4, 10, 9, 5}));
    }
}

TEST(ReportLayout, FieldsAreCutToTheirRoom) {
    ReportLayout l;
    l.setTitle(std::u16string(80, u'x'));
    EXPECT_EQ(l.title(), std::u16string(63, u'x'));
    EXPECT_EQ(u16At(l, 126), 0);
    l.setFieldOrder(std::u16string(40, u'1'));
    EXPECT_EQ(l.fieldOrder(), std::u16string(31, u'1'));
    l.setFieldMask(0xFFFFFFFF);
    EXPECT_EQ(l.fieldOrder().size(), 31u);  // the mask lies beyond the order's NUL
}

TEST(ReportLayout, ShortOrdersGainTheLaterFieldsWhenLoaded) {
    const struct {
        std::u16string order;
        std::u16string extended;
    } cases[] = {
        {u"0123", u"0123hijklmnopqrst"},
        {u"", u"hijklmnopqrst"},
        {u"0123456789abcdefg", u"0123456789abcdefghijklmnopqrst"},
        {u"0123456789abcdefgh", u"0123456789abcdefgh"},
    };
    for (const auto& c : cases) {
        ReportLayout l;
        l.setFieldOrder(c.order);
        extendFieldOrder(l);
        EXPECT_EQ(l.fieldOrder(), c.extended);
    }
}

TEST(ReportLayout, ColumnsFollowOrderAndMask) {
    ReportLayout l;
    l.setFieldOrder(u"h5z0");  // z is no field; position 4 onwards is NUL
    l.setFieldMask(1u << 17 | 1u << 5 | 1u << 0 | 1u << 3);
    EXPECT_EQ(shownFields(l), (std::vector<int>{17, 5, 0}));
}

class SavedLayoutsTest : public ::testing::Test {
  protected:
    std::unique_ptr<Platform> platform = Platform::inMemory();
};

TEST_F(SavedLayoutsTest, SaveLoadOverwriteRenameDelete) {
    // Drop-list items share the table and stay out of it.
    ListTable items(*platform, ListTable::Order::kByText);
    ASSERT_TRUE(items.open());
    items.addItem(kListPhase, u"Weekly");

    WorkingLayout working{clientLayout(), u"", 0};
    working.layout.setFieldOrder(u"015");
    ASSERT_EQ(saveWorkingLayout(*platform, working, u"Weekly", false), SaveOutcome::kSaved);
    const CEOID weekly = working.oid;
    ASSERT_NE(weekly, 0u);

    ReportLayout loaded;
    ASSERT_TRUE(loadSavedLayout(*platform, weekly, &loaded));
    EXPECT_EQ(loaded.fieldOrder(), u"015hijklmnopqrst");
    EXPECT_EQ(loaded.groupBy(), kGroupByClient);

    // The same name again asks first; confirmed, the record is rewritten in place.
    working.layout.setTitle(u"Second");
    EXPECT_EQ(saveWorkingLayout(*platform, working, u"Weekly", false), SaveOutcome::kExists);
    ASSERT_EQ(saveWorkingLayout(*platform, working, u"Weekly", true), SaveOutcome::kSaved);
    EXPECT_EQ(working.oid, weekly);
    ASSERT_TRUE(loadSavedLayout(*platform, weekly, &loaded));
    EXPECT_EQ(loaded.title(), u"Second");

    // A change of case is a new name and a new record.
    ASSERT_EQ(saveWorkingLayout(*platform, working, u"weekly", false), SaveOutcome::kSaved);
    EXPECT_NE(working.oid, weekly);
    const CEOID lower = working.oid;

    // Another layout overwriting by name replaces that record, not a second copy.
    WorkingLayout other{dateLayout(), u"", 0};
    ASSERT_EQ(saveWorkingLayout(*platform, other, u"Weekly", true), SaveOutcome::kSaved);
    EXPECT_EQ(other.oid, weekly);

    auto names = [&] {
        std::vector<std::u16string> n;
        for (const SavedLayout& s : savedLayouts(*platform)) n.push_back(s.name);
        return n;
    };
    EXPECT_EQ(names(), (std::vector<std::u16string>{u"Weekly", u"weekly"}));
    EXPECT_EQ(findSavedLayout(*platform, u"WEEKLY"), 0u);

    ASSERT_TRUE(renameSavedLayout(*platform, lower, u"Monthly"));
    EXPECT_EQ(findSavedLayout(*platform, u"Monthly"), lower);
    ASSERT_TRUE(deleteSavedLayout(*platform, weekly));
    EXPECT_EQ(names(), (std::vector<std::u16string>{u"Monthly"}));
    EXPECT_FALSE(deleteSavedLayout(*platform, weekly));
    EXPECT_EQ(items.items(kListPhase), (std::vector<std::u16string>{u"Weekly"}));
    const CEOID phase = items.findItem(kListPhase, u"Weekly");
    EXPECT_FALSE(loadSavedLayout(*platform, phase, &loaded));
    EXPECT_FALSE(renameSavedLayout(*platform, phase, u"x"));
}

TEST_F(SavedLayoutsTest, DefaultLayout) {
    Settings settings = defaultSettings();
    Registry& registry = platform->registry();
    EXPECT_EQ(defaultLayout(*platform, settings).layout, clientLayout());

    WorkingLayout flat{dateLayout(), u"", 0};
    ASSERT_EQ(saveWorkingLayout(*platform, flat, u"Flat", false), SaveOutcome::kSaved);
    ASSERT_TRUE(setDefaultLayout(registry, settings, u"Flat"));
    Settings reloaded = defaultSettings();
    loadSettings(registry, reloaded);
    EXPECT_EQ(reloaded.defaultReport, u"Flat");
    WorkingLayout chosen = defaultLayout(*platform, reloaded);
    EXPECT_EQ(chosen.name, u"Flat");
    EXPECT_EQ(chosen.oid, flat.oid);
    EXPECT_EQ(chosen.layout.type(), kFlatReport);

    // A default that names no saved layout falls back to the built-in Client.
    ASSERT_TRUE(deleteSavedLayout(*platform, flat.oid));
    EXPECT_EQ(defaultLayout(*platform, reloaded).layout, clientLayout());

    // A layout without a name clears the default.
    ASSERT_TRUE(setDefaultLayout(registry, settings, u""));
    loadSettings(registry, reloaded);
    EXPECT_EQ(reloaded.defaultReport, u"");
}

}  // namespace
}  // namespace qb
