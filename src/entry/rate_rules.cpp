#include "entry/rate_rules.h"

#include "entry/number_text.h"

namespace qb {
namespace {

constexpr std::u16string_view kRateTypeNames[kRateTypeCount] = {
    u"Normal Rate", u"Overtime Rate", u"Weekend Rate", u"Fixed Rate", u"Discount Rate",
};

}  // namespace

std::u16string_view rateTypeName(std::uint16_t type) {
    return type < kRateTypeCount ? kRateTypeNames[type] : std::u16string_view();
}

namespace {

bool inRateRange(std::int64_t hundredths) {
    return hundredths >= 0 && hundredths <= kMaxRate;
}

}  // namespace

std::optional<std::uint32_t> rateDialogValue(std::u16string_view text) {
    if (!inRateRange(parseHundredths(text))) return std::nullopt;
    // The dialog's own arithmetic; a tiny negative value ("-0.001") is 0.
    const double v = parseNumber(text) * 1000 * 0.1;
    if (v <= 0) return 0u;
    return v >= kMaxRate ? kMaxRate : static_cast<std::uint32_t>(v);
}

std::optional<std::uint32_t> editorRate(std::u16string_view text) {
    const std::int64_t hundredths = parseHundredths(text);
    if (!inRateRange(hundredths)) return std::nullopt;
    return static_cast<std::uint32_t>(hundredths);
}

std::u16string rateText(std::uint32_t rate) {
    return twoDecimals(rate * 0.01);
}

RateCheck checkRateDialog(std::u16string_view description, std::u16string_view rateText,
                          std::optional<std::uint32_t> storedRate) {
    if (description.empty()) return {false, RateField::kDescription, kNoDescriptionMessage, 0};
    if (holdsLetter(rateText)) return {false, RateField::kRate, kInvalidRateMessage, 0};
    if (storedRate && rateText == qb::rateText(*storedRate)) {
        return {true, RateField::kNone, {}, *storedRate};
    }
    const std::optional<std::uint32_t> value = rateDialogValue(rateText);
    if (!value) return {false, RateField::kRate, kRateRangeMessage, 0};
    // The rate table takes currency units and keeps its own truncation.
    return {true, RateField::kNone, {}, qb::storedRate(*value * 0.01)};
}

}  // namespace qb
