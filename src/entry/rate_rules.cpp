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

std::uint32_t rateDialogValue(std::u16string_view text) {
    const double v = parseNumber(text.empty() ? u"0" : text);
    return static_cast<std::uint32_t>(truncateToInt32(v * 1000 * 0.1));
}

std::uint32_t editorRate(std::u16string_view text) {
    return storedRate(parseNumber(text));
}

std::u16string rateText(std::uint32_t rate) {
    return twoDecimals(rate * 0.01);
}

RateCheck checkRateDialog(std::u16string_view description, std::u16string_view rateText) {
    if (description.empty()) return {false, RateField::kDescription, kNoDescriptionMessage, 0};
    if (holdsLetter(rateText)) return {false, RateField::kRate, kInvalidRateMessage, 0};
    return {true, RateField::kNone, {}, rateDialogValue(rateText)};
}

}  // namespace qb
