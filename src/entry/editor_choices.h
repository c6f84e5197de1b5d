#pragma once

// What the entry editor's boxes offer and show besides the typed text: the
// master data of the client in the Client box, and the Billing page's total.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "store/master_data.h"
#include "store/time_entry.h"

namespace qb {

struct MasterTables;

// Every client name, in the client table's order.
std::vector<std::u16string> clientChoices(MasterTables& masters);
// The client's projects, each once, in table order; none for a client the
// master data does not know.
std::vector<std::u16string> projectChoices(MasterTables& masters, const std::u16string& client);
// With no project (or one the client lacks): the client's loose tasks, then
// the tasks of its projects. With a project of the client: that project's
// tasks. Each task once.
std::vector<std::u16string> taskChoices(MasterTables& masters, const std::u16string& client,
                                        const std::u16string& project);
// The client's contacts, the items of "Bill To:".
std::vector<std::u16string> contactChoices(MasterTables& masters, const std::u16string& client);

// "Calculate" on the Billing page: the rate box and "Fixed" go into the
// entry (a fixed rate, else a normal one), and the answer is what "Total:"
// shows, "%s%.02f" of the currency box and the amount. None, with the entry
// unchanged, for a rate outside its range (kRateRangeMessage).
std::optional<std::u16string> calculateTotal(TimeEntry& entry, std::u16string_view currencyBox,
                                             std::u16string_view rateBox, bool fixed,
                                             const Settings& settings);
// "Total:" for the entry as it stands, behind the currency box's text.
std::u16string totalText(const TimeEntry& entry, std::u16string_view currencyBox,
                         const Settings& settings);

}  // namespace qb
