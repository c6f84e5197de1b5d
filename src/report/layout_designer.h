#pragma once

// The report designer's rows as values: what each row of the Header, Detail
// and Footer areas shows for a layout, and how the rows are written back
// into it. The window only draws these and hands them back.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "report/report_layout.h"

namespace qb {

struct Settings;

// The "Group By" choices: index = report field number 0-14, then one that
// names no field.
inline constexpr int kGroupByChoiceCount = 16;
std::uint32_t groupByProperty(int index);
// The choice holding exactly that property; -1 when none does.
int groupByIndex(std::uint32_t groupBy);
// The field's column title, "(None)" for the last choice.
std::u16string groupByText(int index, const Settings& settings);

struct LayoutDesign {
    struct FieldRow {
        char16_t code = u'0';  // the fieldOrder character, kept as it was
        bool shown = false;
        // The report field, -1 for a character that names none.
        int field() const { return fieldDigitValue(code); }
    };

    std::u16string title;
    std::uint16_t dateSelection = 0;
    std::uint16_t type = 0;
    int groupByIndex = -1;  // -1: nothing chosen
    bool groupTitleShown = true;
    bool groupTotalShown = true;
    std::vector<FieldRow> fields;  // the Detail Area, top to bottom
    std::array<bool, kFooterLineCount> footerShown{};

    // The grouping rows only mean something for a grouped report.
    bool groupingEnabled() const { return type == kGroupedReport; }
};

LayoutDesign designFromLayout(const ReportLayout& layout);
// Writes the rows into `layout`. A flat report keeps the grouping fields it
// had, and an order longer than the rows keeps its tail.
void applyDesign(const LayoutDesign& design, ReportLayout& layout);

}  // namespace qb
