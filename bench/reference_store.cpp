#include "reference_store.h"

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/settings.h"
#include "entry/note_text.h"
#include "entry/rate_rules.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {
namespace {

constexpr FILETIME kTicksPerDay = 864'000'000'000ULL;

// std::mt19937's output is fixed by the standard but its distributions are
// not, so draws are reduced here to keep the store identical across
// standard libraries.
class Draw {
  public:
    explicit Draw(std::uint32_t seed) : rng_(seed) {}

    std::uint32_t below(std::uint32_t n) {
        return static_cast<std::uint32_t>((std::uint64_t{rng_()} * n) >> 32);
    }
    int between(int lo, int hi) { return lo + static_cast<int>(below(hi - lo + 1)); }
    bool percent(std::uint32_t p) { return below(100) < p; }

    template <typename T, std::size_t N>
    const T& pick(const std::array<T, N>& items) {
        return items[below(N)];
    }

    // `count` distinct indices below `n`, in drawn order.
    std::vector<std::size_t> distinct(std::size_t n, std::size_t count) {
        std::vector<std::size_t> all(n);
        for (std::size_t i = 0; i < n; ++i) all[i] = i;
        for (std::size_t i = 0; i < count && i < n; ++i) {
            std::size_t j = i + below(static_cast<std::uint32_t>(n - i));
            std::swap(all[i], all[j]);
        }
        all.resize(std::min(count, n));
        return all;
    }

  private:
    std::mt19937 rng_;
};

// Commits every `limit` writes, as the application's long operations do.
class Batches {
  public:
    Batches(DataFile& file, int limit) : file_(file), limit_(limit < 1 ? 1 : limit) {}
    ~Batches() {
        if (open_) file_.rollbackBatch();
    }

    bool begin() { return open_ = file_.beginBatch(); }

    // Counts one write; false when it failed or the commit that fell due did.
    bool wrote(bool ok) {
        if (!ok) return false;
        if (++pending_ < limit_) return true;
        return finish() && begin();
    }

    bool finish() {
        pending_ = 0;
        open_ = false;
        return file_.commitBatch();
    }

  private:
    DataFile& file_;
    int limit_;
    int pending_ = 0;
    bool open_ = false;
};

constexpr std::array<std::u16string_view, 25> kClientStems = {
    u"Alder",    u"Birchwood",  u"Calloway", u"Dunmore", u"Eastgate",  u"Fairholm",  u"Greystone",
    u"Hartwell", u"Ironbridge", u"Juniper",  u"Kestrel", u"Lindqvist", u"Marlowe",   u"Northcott",
    u"Oakridge", u"Pemberton",  u"Quayside", u"Redfern", u"Saltmarsh", u"Thornbury", u"Underhill",
    u"Vantage",  u"Westbrook",  u"Yardley",  u"Zöllner"};
constexpr std::array<std::u16string_view, 8> kClientForms = {
    u" Ltd", u" & Partners", u" GmbH", u" Studio", u" Group", u" Labs", u" Inc.", u" Consulting"};

constexpr std::array<std::u16string_view, 20> kProjectWords = {
    u"Website",        u"Annual Report", u"Brand Refresh", u"Mobile App",   u"Data Migration",
    u"Audit",          u"Intranet",      u"Campaign",      u"Training",     u"Support Contract",
    u"Product Launch", u"Catalogue",     u"Research",      u"Office Move",  u"Newsletter",
    u"Strategy",       u"Integration",   u"Prototype",     u"Localisation", u"Maintenance"};

constexpr std::array<std::u16string_view, 24> kTaskWords = {
    u"Design",    u"Development", u"Meetings",   u"Research",     u"Writing",     u"Review",
    u"Testing",   u"Travel",      u"Planning",   u"Support",      u"Training",    u"Documentation",
    u"Analysis",  u"Bug fixing",  u"Deployment", u"Copy editing", u"Photography", u"Proofreading",
    u"Workshops", u"Phone calls", u"Admin",      u"Estimates",    u"Invoicing",   u"Interviews"};

constexpr std::array<std::u16string_view, 16> kFirstNames = {
    u"Anna",   u"Ben", u"Chloé", u"David", u"Eva",  u"Farid", u"Grace", u"Hiro",
    u"Ingrid", u"Jon", u"Kasia", u"Luis",  u"Maya", u"Nils",  u"Olga",  u"Peter"};
constexpr std::array<std::u16string_view, 16> kLastNames = {
    u"Abbott",  u"Brennan", u"Castillo", u"Dvořák", u"Ellis",  u"Fischer", u"Gupta",  u"Holm",
    u"Ivanova", u"Jensen",  u"Kowalski", u"Larsen", u"Moreau", u"Novak",   u"Okafor", u"Price"};

constexpr std::array<std::u16string_view, 5> kPhases = {u"Planning", u"Design", u"Build",
                                                        u"Testing", u"Launch"};
constexpr std::array<std::u16string_view, 4> kCurrencies = {u"USD", u"EUR", u"GBP", u"CHF"};
constexpr std::array<std::u16string_view, 3> kCustom2 = {u"On site", u"Remote", u"Travel"};
constexpr std::array<std::u16string_view, 3> kCustom3 = {u"Urgent", u"Follow-up", u"Warranty"};
constexpr int kPurchaseOrders = 40;

constexpr std::array<std::u16string_view, 12> kNoteSentences = {
    u"Call with the client about the schedule.",
    u"Agreed next steps; minutes sent by mail.",
    u"Waiting for feedback on the second draft.",
    u"Fixed the layout problems found in review.",
    u"Café meeting at the client's office — went well.",
    u"Prepared the figures for the quarterly review.",
    u"Travel time included (train both ways).",
    u"Größere Änderungen am Entwurf besprochen.",
    u"Scope change: see the revised estimate.",
    u"Remote session, screen sharing worked fine.",
    u"Invoice questions answered; nothing outstanding.",
    u"Left early; remaining work moved to tomorrow."};

struct Rate {
    std::uint16_t type;
    std::uint32_t hundredths;
};

// Default rates, by type (the catalogue's client 0).
constexpr std::array<Rate, kRateTypeCount> kDefaultRates = {
    Rate{kNormalRate, 8500}, Rate{kOvertimeRate, 12750}, Rate{kWeekendRate, 17000},
    Rate{kFixedRate, 50000}, Rate{kDiscountRate, 6000}};

struct ClientPlan {
    std::u16string name;
    ClientId id = 0;
    std::vector<std::pair<std::u16string, std::u16string>> pairs;  // project, task
    std::vector<std::u16string> ownTasks;
    std::vector<std::u16string> contacts;
    std::vector<Rate> rates;
    std::u16string currency;
};

std::u16string withNumber(std::u16string_view prefix, int number) {
    std::u16string text(prefix);
    for (char c : std::to_string(number)) text += static_cast<char16_t>(c);
    return text;
}

std::u16string clientName(int index) {
    std::u16string name(kClientStems[index % kClientStems.size()]);
    name += kClientForms[(index / kClientStems.size()) % kClientForms.size()];
    const int perRound = static_cast<int>(kClientStems.size() * kClientForms.size());
    return index < perRound ? name : withNumber(name + u" ", index / perRound + 1);
}

std::u16string purchaseOrder(int index) {
    return withNumber(u"PO-", 41000 + index * 37);
}

// Five projects and ten tasks a client: tasks 0-7 are paired with projects
// (the last project shares two of them, as a real task list does), tasks 8
// and 9 belong to the client alone.
ClientPlan planClient(Draw& draw, int index) {
    ClientPlan plan;
    plan.name = clientName(index);
    std::vector<std::u16string> projects;
    for (std::size_t p : draw.distinct(kProjectWords.size(), 5)) {
        projects.push_back(
            withNumber(std::u16string(kProjectWords[p]) + u" ", draw.between(2016, 2025)));
    }
    std::vector<std::u16string> tasks;
    for (std::size_t t : draw.distinct(kTaskWords.size(), 10)) tasks.emplace_back(kTaskWords[t]);
    for (int p = 0; p < 4; ++p) {
        plan.pairs.emplace_back(projects[p], tasks[2 * p]);
        plan.pairs.emplace_back(projects[p], tasks[2 * p + 1]);
    }
    plan.pairs.emplace_back(projects[4], tasks[0]);
    plan.pairs.emplace_back(projects[4], tasks[7]);
    plan.ownTasks = {tasks[8], tasks[9]};
    for (std::size_t c : draw.distinct(kFirstNames.size(), 2)) {
        plan.contacts.push_back(std::u16string(kFirstNames[c]) + u" " +
                                std::u16string(draw.pick(kLastNames)));
    }
    plan.rates.push_back({kNormalRate, static_cast<std::uint32_t>(draw.between(12, 30) * 500)});
    if (draw.percent(30)) {
        plan.rates.push_back({kFixedRate, static_cast<std::uint32_t>(draw.between(5, 40) * 5000)});
    }
    if (draw.percent(20)) {
        plan.rates.push_back({kOvertimeRate, plan.rates[0].hundredths * 3 / 2});
    }
    std::uint32_t c = draw.below(100);
    plan.currency = std::u16string(kCurrencies[c < 60 ? 0 : c < 85 ? 1 : c < 95 ? 2 : 3]);
    return plan;
}

std::uint32_t rateFor(const ClientPlan& client, std::uint16_t type) {
    for (const Rate& r : client.rates) {
        if (r.type == type) return r.hundredths;
    }
    return kDefaultRates[type].hundredths;
}

bool addMasterData(Platform& platform, Draw& draw, const ReferenceOptions& options,
                   Batches& batches, std::vector<ClientPlan>* plans) {
    MasterTables m(platform);
    if (!m.open()) return false;
    for (const Rate& r : kDefaultRates) {
        if (!batches.wrote(addRate(m.rates, r.type, r.hundredths * 0.01, kDefaultRatesClient,
                                   std::u16string(rateTypeName(r.type)), false) != 0)) {
            return false;
        }
    }
    for (int i = 0; i < options.clients; ++i) {
        ClientPlan plan = planClient(draw, i);
        if (!batches.wrote(addClient(m.clients, plan.name, &plan.id) != 0)) return false;
        for (const auto& [project, task] : plan.pairs) {
            if (!batches.wrote(addProjectTask(m.projects, plan.id, project, task) != 0))
                return false;
        }
        for (const std::u16string& task : plan.ownTasks) {
            if (!batches.wrote(addTask(m.tasks, plan.id, task) != 0)) return false;
        }
        for (const std::u16string& contact : plan.contacts) {
            if (!batches.wrote(addContact(m.contacts, plan.id, contact) != 0)) return false;
        }
        for (const Rate& r : plan.rates) {
            if (!batches.wrote(addRate(m.rates, r.type, r.hundredths * 0.01, plan.id,
                                       std::u16string(rateTypeName(r.type)), false) != 0)) {
                return false;
            }
        }
        plans->push_back(std::move(plan));
    }
    return true;
}

// Every value the entries use, as the editor would have learnt them.
bool addDropLists(Platform& platform, Batches& batches) {
    ListTable list(platform, ListTable::Order::kByText);
    if (!list.open()) return false;
    auto add = [&](ListKind kind, std::u16string_view text) {
        return batches.wrote(list.addItem(kind, std::u16string(text)) != 0);
    };
    for (auto p : kPhases) {
        if (!add(kListPhase, p)) return false;
    }
    for (auto c : kCurrencies) {
        if (!add(kListCurrency, c)) return false;
    }
    for (int i = 0; i < kPurchaseOrders; ++i) {
        if (!add(kListCustom1, purchaseOrder(i))) return false;
    }
    for (auto c : kCustom2) {
        if (!add(kListCustom2, c)) return false;
    }
    for (auto c : kCustom3) {
        if (!add(kListCustom3, c)) return false;
    }
    return true;
}

std::vector<std::uint8_t> makeNote(Draw& draw) {
    std::u16string text;
    int sentences = draw.between(1, 4);
    for (int i = 0; i < sentences; ++i) {
        if (i > 0) text += draw.percent(40) ? u"\r\n" : u" ";
        text += draw.pick(kNoteSentences);
    }
    return noteBytes(text);
}

// The clients a user works for change over the years: most entries go to
// the current handful of regulars, the rest to anyone.
const ClientPlan& pickClient(Draw& draw, const std::vector<ClientPlan>& plans, long dayIndex) {
    const std::size_t n = plans.size();
    if (draw.percent(65)) {
        std::size_t era = static_cast<std::size_t>(dayIndex / 120);
        return plans[(era * 7 + draw.below(12)) % n];
    }
    return plans[draw.below(static_cast<std::uint32_t>(n))];
}

std::uint16_t pickRateType(Draw& draw) {
    std::uint32_t r = draw.below(100);
    if (r < 70) return kNormalRate;
    if (r < 80) return kOvertimeRate;
    if (r < 88) return kWeekendRate;
    if (r < 95) return kFixedRate;
    return kDiscountRate;
}

std::uint16_t pickDuration(Draw& draw) {
    std::uint32_t r = draw.below(100);
    if (r < 90) return static_cast<std::uint16_t>(draw.between(1, 16) * 25);  // quarter hours
    if (r < 97) return static_cast<std::uint16_t>(draw.between(8, 20) * 50);  // long days
    return static_cast<std::uint16_t>(draw.between(1, 99));                   // odd minutes
}

TimeEntry makeEntry(Draw& draw, const std::vector<ClientPlan>& plans, FILETIME day, long dayIndex,
                    bool recentDay, long serial) {
    const ClientPlan& client = pickClient(draw, plans, dayIndex);
    TimeEntry e;
    e.date = day;
    if (draw.percent(60)) {
        SYSTEMTIME start{};
        start.wHour = static_cast<std::uint16_t>(draw.between(7, 18));
        start.wMinute = static_cast<std::uint16_t>(15 * draw.between(0, 3));
        setStartTime(e, start);
    }
    e.client = client.name;
    if (draw.percent(80)) {
        const auto& pair =
            client.pairs[draw.below(static_cast<std::uint32_t>(client.pairs.size()))];
        e.project = pair.first;
        e.task = pair.second;
        if (draw.percent(50)) e.phase = draw.pick(kPhases);
    } else {
        e.task = client.ownTasks[draw.below(static_cast<std::uint32_t>(client.ownTasks.size()))];
    }
    e.duration = pickDuration(draw);
    e.billable = draw.percent(80);
    e.paid = e.billable && draw.percent(recentDay ? 20 : 92);
    std::uint32_t c = draw.below(100);
    e.currency = c < 95   ? client.currency
                 : c < 97 ? std::u16string()
                          : std::u16string(draw.pick(kCurrencies));
    e.rateType = pickRateType(draw);
    e.rate = rateFor(client, e.rateType);
    if (draw.percent(50)) e.billTo = client.contacts[draw.below(2)];
    if (draw.percent(30)) e.custom1 = purchaseOrder(static_cast<int>(draw.below(kPurchaseOrders)));
    if (draw.percent(40)) e.custom2 = draw.pick(kCustom2);
    if (draw.percent(10)) e.custom3 = draw.pick(kCustom3);
    if (serial % 10 == 7) e.notes = makeNote(draw);
    return e;
}

FILETIME fileTimeOf(const SYSTEMTIME& st) {
    FILETIME ft = 0;
    systemTimeToFileTime(st, &ft);
    return ft;
}

bool addEntries(Platform& platform, Draw& draw, const ReferenceOptions& options, Batches& batches,
                const std::vector<ClientPlan>& plans, ReferenceSummary* summary) {
    EntryTable table(platform);
    if (!table.open() || plans.empty()) return false;
    const FILETIME first = fileTimeOf(referenceFirstDay());
    const FILETIME last = fileTimeOf(referenceLastDay());
    const long days = static_cast<long>((last - first) / kTicksPerDay) + 1;
    const long quietDay =
        static_cast<long>((fileTimeOf(referenceQuietWeek()) - first) / kTicksPerDay);
    // A store too small to afford the quiet week (a profiling run) is spread
    // evenly instead.
    const long quietEntries = options.entries >= kQuietWeekEntries * 10 ? kQuietWeekEntries : 0;
    const long spread = options.entries - quietEntries;
    const long spreadDays = days - 7;
    // Entries in the last three months are mostly not paid yet.
    const long recentFrom = days - 91;

    long serial = 0;
    long spreadDay = 0;
    for (long d = 0; d < days; ++d) {
        long count;
        if (d >= quietDay && d < quietDay + 7) {
            count = quietEntries == 0 ? 0 : (d - quietDay < 5 ? quietEntries / 5 : 0);
        } else {
            // Even spread of the rest over the other days, exact in total.
            count = (spreadDay + 1) * spread / spreadDays - spreadDay * spread / spreadDays;
            ++spreadDay;
        }
        const FILETIME day = first + static_cast<FILETIME>(d) * kTicksPerDay;
        for (long i = 0; i < count; ++i, ++serial) {
            TimeEntry e = makeEntry(draw, plans, day, d, d >= recentFrom, serial);
            if (!batches.wrote(addEntry(table, e))) return false;
            if (summary) {
                if (summary->firstEntry == 0) summary->firstEntry = table.currentOid();
                summary->lastEntry = table.currentOid();
                ++summary->entries;
            }
        }
    }
    return true;
}

}  // namespace

SYSTEMTIME referenceFirstDay() {
    return makeDate(2016, 1, 1);
}
SYSTEMTIME referenceLastDay() {
    return makeDate(2025, 12, 31);
}
SYSTEMTIME referenceQuietWeek() {
    return makeDate(2025, 6, 2);
}

bool makeReferenceStore(Platform& platform, const ReferenceOptions& options,
                        ReferenceSummary* summary) {
    if (summary) *summary = ReferenceSummary();
    Draw draw(options.seed);
    Batches batches(platform.file(), options.writesPerBatch);
    if (!batches.begin()) return false;
    std::vector<ClientPlan> plans;
    if (!saveSettings(platform.registry(), defaultSettings()) ||
        !addMasterData(platform, draw, options, batches, &plans) ||
        !addDropLists(platform, batches) ||
        !addEntries(platform, draw, options, batches, plans, summary)) {
        return false;
    }
    if (!batches.finish()) return false;
    if (summary && !plans.empty()) {
        summary->client = plans[0].name;
        summary->project = plans[0].pairs[0].first;
        summary->projectTask = plans[0].pairs[0].second;
        summary->clientTask = plans[0].ownTasks[0];
    }
    return true;
}

}  // namespace qb
