#include "entry/entry_amount.h"

#include <cmath>

#include "entry/rate_rules.h"

namespace qb {

double EntryAmount(const TimeEntry& entry, const Settings& settings) {
    if (entry.rateType == kFixedRate) return entry.rate * 0.01;
    const double hours = entry.duration * 0.01;
    const double price = entry.rate * 0.01;
    if (!(settings.optionFlags & kPreciseCalculation)) return price * hours;
    // Exact comparisons of doubles: of all durations only 0.17, 0.33 and
    // 0.67 hours match, and amounts elsewhere depend on that staying so.
    const double whole = std::floor(hours);
    const double f = hours - whole;
    if (f == 0.17) return (whole + 1.0 / 6) * price;
    if (f == 0.33) return (whole + 1.0 / 3) * price;
    if (f == 0.67) return (whole + 2.0 / 3) * price;
    if (f == 0.83) return (whole + 5.0 / 6) * price;
    return price * hours;
}

}  // namespace qb
