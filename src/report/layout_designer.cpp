#include "report/layout_designer.h"

#include <cmath>

#include "app/settings.h"
#include "report/report_fields.h"
#include "store/record_props.h"

namespace qb {
namespace {

constexpr std::size_t kFieldRows = 18;

constexpr std::array<std::uint32_t, kGroupByChoiceCount> kGroupByProperties = {
    makePropId(kPropDate, CEVT_FILETIME),   makePropId(kPropClient, CEVT_LPWSTR),
    makePropId(kPropProject, CEVT_LPWSTR),  makePropId(kPropPhase, CEVT_LPWSTR),
    makePropId(kPropTask, CEVT_LPWSTR),     makePropId(kPropDuration, CEVT_UI2),
    makePropId(kPropCurrency, CEVT_LPWSTR), makePropId(kPropBillable, CEVT_BOOL),
    makePropId(kPropPaid, CEVT_BOOL),       makePropId(kPropOldStartTime, CEVT_FILETIME),
    makePropId(kPropBillTo, CEVT_LPWSTR),   makePropId(kPropCustom1, CEVT_LPWSTR),
    makePropId(kPropCustom2, CEVT_LPWSTR),  makePropId(kPropCustom3, CEVT_LPWSTR),
    makePropId(kPropRateType, CEVT_UI2),    kGroupByNothing,
};

// The mask bit of a field is 2^n in floating point, as layouts have always
// been written.
std::uint32_t fieldBit(int field) {
    return static_cast<std::uint32_t>(std::pow(2.0, field));
}

}  // namespace

std::uint32_t groupByProperty(int index) {
    return index >= 0 && index < kGroupByChoiceCount ? kGroupByProperties[index] : kGroupByNothing;
}

int groupByIndex(std::uint32_t groupBy) {
    for (int i = 0; i < kGroupByChoiceCount; ++i) {
        if (kGroupByProperties[i] == groupBy) return i;
    }
    return -1;
}

std::u16string groupByText(int index, const Settings& settings) {
    return index == kGroupByChoiceCount - 1 ? std::u16string(u"(None)")
                                            : reportFieldTitle(index, settings);
}

LayoutDesign designFromLayout(const ReportLayout& layout) {
    LayoutDesign d;
    d.title = layout.title();
    d.dateSelection = layout.dateSelection();
    d.type = layout.type();
    d.groupByIndex = groupByIndex(layout.groupBy());
    d.groupTitleShown = layout.groupRule() == 0;
    d.groupTotalShown = layout.groupTotalHidden() == 0;
    const std::u16string order = layout.fieldOrder();
    for (std::size_t i = 0; i < order.size() && i < kFieldRows; ++i) {
        LayoutDesign::FieldRow row;
        row.code = order[i];
        row.shown = row.field() >= 0 && (layout.fieldMask() & fieldBit(row.field())) != 0;
        d.fields.push_back(row);
    }
    for (int i = 0; i < kFooterLineCount; ++i) {
        d.footerShown[i] = layout.footerHidden(static_cast<FooterLine>(i)) == 0;
    }
    return d;
}

void applyDesign(const LayoutDesign& design, ReportLayout& layout) {
    layout.setTitle(design.title);
    layout.setDateSelection(design.dateSelection);
    layout.setType(design.type);
    if (design.groupingEnabled()) {
        if (design.groupByIndex >= 0) layout.setGroupBy(groupByProperty(design.groupByIndex));
        layout.setGroupRule(design.groupTitleShown ? 0 : 1);
        layout.setGroupTotalHidden(design.groupTotalShown ? 0 : 1);
    }
    std::u16string order = layout.fieldOrder();
    if (order.size() < design.fields.size()) order.resize(design.fields.size(), u'0');
    std::uint32_t mask = 0;
    for (std::size_t i = 0; i < design.fields.size(); ++i) {
        const LayoutDesign::FieldRow& row = design.fields[i];
        order[i] = row.code;
        if (row.shown && row.field() >= 0) mask += fieldBit(row.field());
    }
    layout.setFieldOrder(order);
    layout.setFieldMask(mask);
    for (int i = 0; i < kFooterLineCount; ++i) {
        layout.setFooterHidden(static_cast<FooterLine>(i), design.footerShown[i] ? 0 : 1);
    }
}

}  // namespace qb
