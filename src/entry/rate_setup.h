#pragma once

// The rates as the Rate Setup window shows them: the default rates first,
// then one group per client in the client table's order.

#include <optional>
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

// A rate's node in the Rate Setup window and in the rate tree:
// "<description> (<rate as %.02f>)".
std::u16string rateNodeText(const RateRecord& rate);

// The rates the entry editor's rate tree offers for a client: the default
// rates, then the client's own (none for an unknown client).
std::vector<RateRecord> ratesForClient(MasterTables& tables, const std::u16string& client);

// The rate type of the node the Billing page selects for an entry: a rate of
// the tree whose value and type both equal the entry's; none means the
// "(Custom Rate)" node.
std::optional<std::uint16_t> matchingRateNode(MasterTables& tables, const std::u16string& client,
                                              std::uint32_t rate, std::uint16_t rateType);

}  // namespace qb
