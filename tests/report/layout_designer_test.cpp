#include "report/layout_designer.h"

#include <gtest/gtest.h>

#include <utility>

#include "app/settings.h"

namespace qb {
namespace {

TEST(LayoutDesigner, UnchangedRowsWriteBackTheSameBytes) {
    ReportLayout odd = clientLayout();
    odd.setGroupRule(1);
    odd.setFooterHidden(FooterLine::kPaidAmount, 1);
    for (const ReportLayout& original : {clientLayout(), dateLayout(), odd}) {
        ReportLayout written = original;
        applyDesign(designFromLayout(original), written);
        EXPECT_EQ(written, original);
    }
}

TEST(LayoutDesigner, RowsOfTheBuiltInClientLayout) {
    const LayoutDesign d = designFromLayout(clientLayout());
    EXPECT_EQ(d.title, u"Quillarbor Summary Report");
    EXPECT_EQ(d.groupByIndex, 1);
    ASSERT_EQ(d.fields.size(), 18u);
    // 1599 shows fields 0-5, 9 and 10.
    int shown = 0;
    for (const auto& row : d.fields) {
        const bool expected = row.field() <= 5 || row.field() == 9 || row.field() == 10;
        EXPECT_EQ(row.shown, expected) << row.field();
        shown += row.shown;
    }
    EXPECT_EQ(shown, 8);
    EXPECT_EQ(d.fields[5].field(), 10);
}

TEST(LayoutDesigner, UncheckedFieldKeepsItsPositionAndMovedRowsReorder) {
    ReportLayout layout = clientLayout();
    LayoutDesign d = designFromLayout(layout);
    d.fields[1].shown = false;            // client
    std::swap(d.fields[4], d.fields[5]);  // "Move Up" on Bill To
    applyDesign(d, layout);
    // The tail past the eighteen rows is the built-in text's own.
    EXPECT_EQ(layout.fieldOrder(), u"0123a495bcde678fghijklmnopqrst");
    EXPECT_EQ(layout.fieldMask(), 1599u - 2u);
    EXPECT_EQ(shownFields(layout), (std::vector<int>{0, 2, 3, 10, 4, 9, 5}));
}

TEST(LayoutDesigner, FlatReportKeepsTheGroupingFields) {
    ReportLayout layout = clientLayout();
    layout.setGroupRule(1);
    LayoutDesign d = designFromLayout(layout);
    d.type = kFlatReport;
    d.groupByIndex = 2;
    d.groupTitleShown = true;
    d.groupTotalShown = false;
    applyDesign(d, layout);
    EXPECT_EQ(layout.type(), kFlatReport);
    EXPECT_EQ(layout.groupBy(), kGroupByClient);
    EXPECT_EQ(layout.groupRule(), 1);
    EXPECT_EQ(layout.groupTotalHidden(), 0);

    d.type = kGroupedReport;
    applyDesign(d, layout);
    EXPECT_EQ(layout.groupBy(), 0x03EB001Fu);  // project
    EXPECT_EQ(layout.groupRule(), 0);
    EXPECT_EQ(layout.groupTotalHidden(), 1);
}

TEST(LayoutDesigner, GroupByChoicesMatchWholePropertyIds) {
    EXPECT_EQ(groupByIndex(0x03E90040), 0);
    EXPECT_EQ(groupByIndex(0x03F1000B), 7);
    EXPECT_EQ(groupByIndex(0x03FA0012), 14);
    EXPECT_EQ(groupByIndex(kGroupByNothing), 15);
    // The date layout's 0 and a client id with other type bits name no choice,
    // and such a groupBy survives a save with nothing chosen.
    EXPECT_EQ(groupByIndex(0), -1);
    EXPECT_EQ(groupByIndex(0x03EA0040), -1);
    ReportLayout layout = dateLayout();
    layout.setType(kGroupedReport);
    applyDesign(designFromLayout(layout), layout);
    EXPECT_EQ(layout.groupBy(), 0u);

    Settings s;
    s.custom2Caption = u"Ticket";
    EXPECT_EQ(groupByText(12, s), u"Ticket");
    EXPECT_EQ(groupByText(15, s), u"(None)");
}

TEST(LayoutDesigner, CharactersThatNameNoFieldStayAndShowNothing) {
    ReportLayout layout = dateLayout();
    layout.setFieldOrder(u"0z1");
    layout.setFieldMask(0xFFFFFFFF);
    LayoutDesign d = designFromLayout(layout);
    ASSERT_EQ(d.fields.size(), 3u);
    EXPECT_FALSE(d.fields[1].shown);
    std::swap(d.fields[1], d.fields[2]);
    applyDesign(d, layout);
    EXPECT_EQ(layout.fieldOrder(), u"01z");
    EXPECT_EQ(layout.fieldMask(), 3u);
}

}  // namespace
}  // namespace qb
