#pragma once

// The rates as the Rate Setup window shows them: the default rates first,
// then one group per client in the client table's order.

#include <string>
#include <vector>

#include "store/master_data.h"

namespace qb {

inline constexpr std::u16string_view kDefaultRatesTitle = u"(Default Rates)";

struct RateGroup {
    ClientId clientId = 0;
    std::u16string title;
    std::vector<RateRecord> rates;
};

// Children of a group: by rate type, then by description.
void sortRateGroup(std::vector<RateRecord>& rates);
std::vector<RateGroup> rateSetupGroups(MasterTables& tables);

}  // namespace qb
