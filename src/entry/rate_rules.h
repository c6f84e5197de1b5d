#pragma once

// Rate types and the conversions of rate text and rate values into stored
// hundredths of a currency unit.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "store/master_data.h"

namespace qb {

// Only kFixedRate changes the arithmetic of an amount; the others label
// hourly prices.
enum RateType : std::uint16_t {
    kNormalRate = 0,
    kOvertimeRate = 1,
    kWeekendRate = 2,
    kFixedRate = 3,
    kDiscountRate = 4,
};
inline constexpr std::uint16_t kRateTypeCount = 5;

// "Normal Rate", ...; empty for a number that is no rate type.
std::u16string_view rateTypeName(std::uint16_t type);

// The largest rate the stored 32-bit field holds: 42,949,672.95.
inline constexpr std::uint32_t kMaxRate = 0xFFFFFFFF;
inline constexpr std::u16string_view kRateRangeMessage =
    u"Rate must be between 0 and 42,949,672.95.";

// A rate typed into the rate dialog, in hundredths: v × 1000 × 0.1 truncated
// toward zero, which keeps 0.29 as 29 where a plain × 100 would give 28.
// Empty text is 0. None when the rate is negative or beyond kMaxRate.
std::optional<std::uint32_t> rateDialogValue(std::u16string_view text);

// The entry editor's rate box (and --rate): its leading number cut after
// the second decimal in decimal (12.999 is 1299, 1.16 is 116). None when it
// is negative or beyond kMaxRate.
std::optional<std::uint32_t> editorRate(std::u16string_view text);

// A stored rate as it is shown: "%.02f" of the currency units.
std::u16string rateText(std::uint32_t rate);

inline constexpr std::u16string_view kNoDescriptionMessage = u"Please enter a description.";
inline constexpr std::u16string_view kInvalidRateMessage =
    u"This is not a valid rate. Rate can have up to 2 decimal places.";

enum class RateField { kNone, kDescription, kRate };

struct RateCheck {
    bool ok = false;
    RateField field = RateField::kNone;  // the box that gets the focus
    std::u16string_view message;
    std::uint32_t rate = 0;  // when ok: the value the rate table stores
};

// OK of the rate dialog: the description must not be empty, then the rate
// must hold no letter (commas and extra decimals pass) and lie in 0 to
// kMaxRate. A typed rate then goes through the rate table's truncation of
// currency units (storedRate: 0.29 is 28). When the dialog modifies a rate,
// `storedRate` is its value: a box still showing it keeps it exactly, so
// changing only the type or the description never lowers the rate.
RateCheck checkRateDialog(std::u16string_view description, std::u16string_view rateText,
                          std::optional<std::uint32_t> storedRate = std::nullopt);

}  // namespace qb
