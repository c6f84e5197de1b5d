#include "entry/rate_setup.h"

#include <algorithm>

#include "platform/text.h"
#include "store/tables.h"

namespace qb {

void sortRateGroup(std::vector<RateRecord>& rates) {
    std::stable_sort(rates.begin(), rates.end(), [](const RateRecord& a, const RateRecord& b) {
        if (a.rateType != b.rateType) return a.rateType < b.rateType;
        return compareStringW(a.description, b.description, false) < 0;
    });
}

std::vector<RateGroup> rateSetupGroups(MasterTables& tables) {
    std::vector<RateGroup> groups;
    groups.push_back({kDefaultRatesClient, std::u16string(kDefaultRatesTitle),
                      ratesOf(tables.rates, kDefaultRatesClient)});
    for (const ClientRecord& c : allClients(tables.clients)) {
        groups.push_back({c.clientId, c.name, ratesOf(tables.rates, c.clientId)});
    }
    for (RateGroup& g : groups) sortRateGroup(g.rates);
    return groups;
}

}  // namespace qb
