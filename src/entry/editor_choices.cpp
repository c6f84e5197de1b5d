#include "entry/editor_choices.h"

#include <algorithm>

#include "entry/entry_amount.h"
#include "entry/rate_rules.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/tables.h"

namespace qb {
namespace {

void addOnce(std::vector<std::u16string>& items, const std::u16string& text) {
    if (text.empty() || std::find(items.begin(), items.end(), text) != items.end()) return;
    items.push_back(text);
}

}  // namespace

std::vector<std::u16string> clientChoices(MasterTables& masters) {
    std::vector<std::u16string> items;
    for (const ClientRecord& c : allClients(masters.clients)) addOnce(items, c.name);
    return items;
}

std::vector<std::u16string> projectChoices(MasterTables& masters, const std::u16string& client) {
    std::vector<std::u16string> items;
    const ClientId id = clientIdOf(masters.clients, client);
    if (id == kNoClient) return items;
    for (const ProjectRecord& p : projectsOf(masters.projects, id)) addOnce(items, p.project);
    return items;
}

std::vector<std::u16string> taskChoices(MasterTables& masters, const std::u16string& client,
                                        const std::u16string& project) {
    std::vector<std::u16string> items;
    const ClientId id = clientIdOf(masters.clients, client);
    if (id == kNoClient) return items;
    const std::vector<ProjectRecord> projects = projectsOf(masters.projects, id);
    const bool known = std::any_of(projects.begin(), projects.end(),
                                   [&](const ProjectRecord& p) { return p.project == project; });
    if (!known) {
        for (const NamedRecord& t : namesOf(masters.tasks, id)) addOnce(items, t.name);
    }
    for (const ProjectRecord& p : projects) {
        if (!known || p.project == project) addOnce(items, p.task);
    }
    return items;
}

std::vector<std::u16string> contactChoices(MasterTables& masters, const std::u16string& client) {
    std::vector<std::u16string> items;
    const ClientId id = clientIdOf(masters.clients, client);
    if (id == kNoClient) return items;
    for (const NamedRecord& c : namesOf(masters.contacts, id)) addOnce(items, c.name);
    return items;
}

std::optional<std::u16string> calculateTotal(TimeEntry& entry, std::u16string_view currencyBox,
                                             std::u16string_view rateBox, bool fixed,
                                             const Settings& settings) {
    const std::optional<std::uint32_t> rate = editorRate(rateBox);
    if (!rate) return std::nullopt;
    entry.rate = *rate;
    entry.rateType = fixed ? kFixedRate : kNormalRate;
    return totalText(entry, currencyBox, settings);
}

std::u16string totalText(const TimeEntry& entry, std::u16string_view currencyBox,
                         const Settings& settings) {
    return utf8ToUtf16(
        stringPrintf("%s%.02f", utf16ToUtf8(currencyBox).c_str(), EntryAmount(entry, settings)));
}

}  // namespace qb
