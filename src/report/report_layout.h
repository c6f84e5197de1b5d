#pragma once

// The report layout: a 220-byte record (docs/formats/report_layout.md) that
// the designer edits, saved layouts store and the generators read. Bytes
// that no accessor names are carried along untouched.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qb {

inline constexpr std::size_t kReportLayoutSize = 220;
inline constexpr std::size_t kLayoutTitleMax = 63;

enum ReportType : std::uint16_t { kGroupedReport = 0, kFlatReport = 1 };
enum DateSelection : std::uint16_t { kNoDates = 0, kDateRange = 1, kStartDateOnly = 2 };

// The footer lines, in the order they are printed.
enum class FooterLine {
    kBillableHours,
    kUnpaidAmount,
    kPaidAmount,
    kNonBillableHours,
    kReportDate,
};
inline constexpr int kFooterLineCount = 5;

// groupBy of the built-in "Client" layout, and the value that names no field.
inline constexpr std::uint32_t kGroupByClient = 0x03EA001F;
inline constexpr std::uint32_t kGroupByNothing = 104;

class ReportLayout {
  public:
    std::u16string title() const;
    // Cut to 63 characters.
    void setTitle(std::u16string_view title);
    std::uint16_t type() const { return u16At(128); }
    void setType(std::uint16_t v) { setU16At(128, v); }
    std::uint16_t dateSelection() const { return u16At(130); }
    void setDateSelection(std::uint16_t v) { setU16At(130, v); }
    std::uint32_t groupBy() const { return u32At(132); }
    void setGroupBy(std::uint32_t v) { setU32At(132, v); }
    // Not 0: groups are separated by a rule instead of a heading.
    std::uint16_t groupRule() const { return u16At(136); }
    void setGroupRule(std::uint16_t v) { setU16At(136, v); }
    // The designer's "Group Total Hours" choice; no generator reads it.
    std::uint16_t groupTotalHidden() const { return u16At(138); }
    void setGroupTotalHidden(std::uint16_t v) { setU16At(138, v); }
    // Not 0: that footer line is left out.
    std::uint16_t footerHidden(FooterLine line) const { return u16At(footerOffset(line)); }
    void setFooterHidden(FooterLine line, std::uint16_t v) { setU16At(footerOffset(line), v); }
    std::uint16_t hideTotalBillableHours() const {
        return footerHidden(FooterLine::kBillableHours);
    }
    std::uint16_t hideTotalUnpaidAmount() const { return footerHidden(FooterLine::kUnpaidAmount); }
    std::uint16_t hideTotalPaidAmount() const { return footerHidden(FooterLine::kPaidAmount); }
    std::uint16_t hideTotalNonBillableHours() const {
        return footerHidden(FooterLine::kNonBillableHours);
    }
    std::uint16_t hideReportDate() const { return footerHidden(FooterLine::kReportDate); }
    // The order text up to its NUL (at most 31 characters).
    std::u16string fieldOrder() const;
    // Written with a NUL; cut to what fits before fieldMask.
    void setFieldOrder(std::u16string_view order);
    std::uint32_t fieldMask() const { return u32At(216); }
    void setFieldMask(std::uint32_t v) { setU32At(216, v); }

    const std::array<std::uint8_t, kReportLayoutSize>& bytes() const { return bytes_; }
    // False, changing nothing, unless `bytes` holds exactly 220 bytes.
    bool setBytes(const std::vector<std::uint8_t>& bytes);

    bool operator==(const ReportLayout&) const = default;

  private:
    static std::size_t footerOffset(FooterLine line) {
        return 140 + 2 * static_cast<std::size_t>(line);
    }
    std::uint16_t u16At(std::size_t at) const;
    std::uint32_t u32At(std::size_t at) const;
    void setU16At(std::size_t at, std::uint16_t v);
    void setU32At(std::size_t at, std::uint32_t v);

    std::array<std::uint8_t, kReportLayoutSize> bytes_{};
};

// The built-in layouts: "Client" groups by client over a date range, "Date"
// is one table with the start date.
ReportLayout clientLayout();
ReportLayout dateLayout();

// What a loaded saved layout goes through: an order shorter than 18
// characters gains "hijklmnopqrst", the later fields, hidden.
void extendFieldOrder(ReportLayout& layout);

// The field numbers of the columns, in column order.
std::vector<int> shownFields(const ReportLayout& layout);

// A character of fieldOrder as the field number it names ("0"-"9", then
// "a"-"v"), -1 for any other; and back, for 0-31.
int fieldDigitValue(char16_t c);
char16_t fieldDigit(int field);

}  // namespace qb
