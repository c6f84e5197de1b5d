#include "views/filter_choices.h"

#include <algorithm>

#include "platform/text.h"
#include "store/master_data.h"
#include "store/tables.h"

namespace qb {

void sortChoices(std::vector<std::u16string>& items) {
    std::erase_if(items, [](const std::u16string& s) { return s.empty(); });
    std::sort(items.begin(), items.end(), [](const std::u16string& a, const std::u16string& b) {
        int folded = compareStringW(a, b, true);
        return folded != 0 ? folded < 0 : a < b;
    });
    items.erase(std::unique(items.begin(), items.end()), items.end());
}

FilterChoices filterChoices(MasterTables& masters, Platform& platform) {
    FilterChoices c;
    for (const ClientRecord& client : allClients(masters.clients)) {
        c.clients.push_back(client.name);
        for (const ProjectRecord& p : projectsOf(masters.projects, client.clientId)) {
            c.projects.push_back(p.project);
            c.tasks.push_back(p.task);
        }
        for (const NamedRecord& t : namesOf(masters.tasks, client.clientId)) {
            c.tasks.push_back(t.name);
        }
        for (const NamedRecord& contact : namesOf(masters.contacts, client.clientId)) {
            c.billTo.push_back(contact.name);
        }
    }
    ListTable lists(platform, ListTable::Order::kByKind);
    if (lists.open()) {
        c.phases = lists.items(kListPhase);
        c.currencies = lists.items(kListCurrency);
        c.custom1 = lists.items(kListCustom1);
        c.custom2 = lists.items(kListCustom2);
        c.custom3 = lists.items(kListCustom3);
    }
    for (auto* list : {&c.clients, &c.projects, &c.tasks, &c.billTo, &c.phases, &c.currencies,
                       &c.custom1, &c.custom2, &c.custom3}) {
        sortChoices(*list);
    }
    return c;
}

}  // namespace qb
