#include "report/report_layout.h"

#include <cmath>

namespace qb {
namespace {

constexpr std::size_t kTitleAt = 0;
constexpr std::size_t kOrderAt = 152;
constexpr std::size_t kMaskAt = 216;
constexpr std::size_t kColumnPositions = 18;
constexpr int kFieldCount = 18;

constexpr std::u16string_view kBuiltInOrder = u"01234a95bcde678fghijklmnopqrst";
constexpr std::uint32_t kBuiltInMask = 1599;
constexpr std::u16string_view kBuiltInTitle = u"Quillarbor Summary Report";

// A base-32 digit, or -1.
int digitValue(char16_t c) {
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'a' && c <= u'v') return c - u'a' + 10;
    return -1;
}

}  // namespace

int fieldDigitValue(char16_t c) {
    return digitValue(c);
}

char16_t fieldDigit(int field) {
    return static_cast<char16_t>(field < 10 ? u'0' + field : u'a' + field - 10);
}

std::uint16_t ReportLayout::u16At(std::size_t at) const {
    return static_cast<std::uint16_t>(bytes_[at] | bytes_[at + 1] << 8);
}
std::uint32_t ReportLayout::u32At(std::size_t at) const {
    return u16At(at) | static_cast<std::uint32_t>(u16At(at + 2)) << 16;
}
void ReportLayout::setU16At(std::size_t at, std::uint16_t v) {
    bytes_[at] = static_cast<std::uint8_t>(v & 0xFF);
    bytes_[at + 1] = static_cast<std::uint8_t>(v >> 8);
}
void ReportLayout::setU32At(std::size_t at, std::uint32_t v) {
    setU16At(at, static_cast<std::uint16_t>(v & 0xFFFF));
    setU16At(at + 2, static_cast<std::uint16_t>(v >> 16));
}

std::u16string ReportLayout::title() const {
    std::u16string t;
    for (std::size_t at = kTitleAt; at < kTitleAt + 128; at += 2) {
        char16_t c = u16At(at);
        if (c == 0) break;
        t += c;
    }
    return t;
}

void ReportLayout::setTitle(std::u16string_view title) {
    title = title.substr(0, kLayoutTitleMax);
    std::size_t at = kTitleAt;
    for (char16_t c : title) {
        setU16At(at, c);
        at += 2;
    }
    setU16At(at, 0);
}

std::u16string ReportLayout::fieldOrder() const {
    std::u16string order;
    for (std::size_t at = kOrderAt; at < kMaskAt; at += 2) {
        char16_t c = u16At(at);
        if (c == 0) break;
        order += c;
    }
    return order;
}

void ReportLayout::setFieldOrder(std::u16string_view order) {
    constexpr std::size_t kRoom = (kMaskAt - kOrderAt) / 2 - 1;  // the NUL needs its place
    order = order.substr(0, kRoom);
    std::size_t at = kOrderAt;
    for (char16_t c : order) {
        setU16At(at, c);
        at += 2;
    }
    setU16At(at, 0);
}

bool ReportLayout::setBytes(const std::vector<std::uint8_t>& bytes) {
    if (bytes.size() != kReportLayoutSize) return false;
    std::copy(bytes.begin(), bytes.end(), bytes_.begin());
    return true;
}

ReportLayout clientLayout() {
    ReportLayout l;
    l.setType(kGroupedReport);
    l.setDateSelection(kDateRange);
    l.setGroupBy(kGroupByClient);
    l.setTitle(kBuiltInTitle);
    l.setFieldOrder(kBuiltInOrder);
    l.setFieldMask(kBuiltInMask);
    return l;
}

ReportLayout dateLayout() {
    ReportLayout l;
    l.setType(kFlatReport);
    l.setDateSelection(kStartDateOnly);
    l.setGroupBy(0);
    l.setTitle(kBuiltInTitle);
    l.setFieldOrder(kBuiltInOrder);
    l.setFieldMask(kBuiltInMask);
    return l;
}

void extendFieldOrder(ReportLayout& layout) {
    std::u16string order = layout.fieldOrder();
    if (order.size() < kColumnPositions) layout.setFieldOrder(order + u"hijklmnopqrst");
}

std::vector<int> shownFields(const ReportLayout& layout) {
    std::vector<int> fields;
    const std::uint32_t mask = layout.fieldMask();
    for (std::size_t i = 0; i < kColumnPositions; ++i) {
        const int n = digitValue(static_cast<char16_t>(layout.bytes()[kOrderAt + 2 * i] |
                                                       layout.bytes()[kOrderAt + 2 * i + 1] << 8));
        if (n < 0 || n >= kFieldCount) continue;
        // The bit is 2^n computed in floating point, as the designer computes it.
        const auto bit = static_cast<std::uint32_t>(std::pow(2.0, n));
        if (mask & bit) fields.push_back(n);
    }
    return fields;
}

}  // namespace qb
