#include "entry/rate_setup.h"

#include <algorithm>

#include "entry/rate_rules.h"
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

std::u16string rateNodeText(const RateRecord& rate) {
    return rate.description + u" (" + rateText(rate.rate) + u")";
}

std::vector<RateRecord> ratesForClient(MasterTables& tables, const std::u16string& client) {
    std::vector<RateRecord> rates = ratesOf(tables.rates, kDefaultRatesClient);
    ClientId id = client.empty() ? kNoClient : clientIdOf(tables.clients, client);
    if (id != kNoClient && id != kDefaultRatesClient) {
        std::vector<RateRecord> own = ratesOf(tables.rates, id);
        rates.insert(rates.end(), own.begin(), own.end());
    }
    return rates;
}

std::optional<std::uint16_t> matchingRateNode(MasterTables& tables, const std::u16string& client,
                                              std::uint32_t rate, std::uint16_t rateType) {
    for (const RateRecord& r : ratesForClient(tables, client)) {
        if (r.rate == rate && r.rateType == rateType) return r.rateType;
    }
    return std::nullopt;
}

}  // namespace qb
