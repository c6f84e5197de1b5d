#include "views/period_totals.h"

#include <algorithm>

#include "app/settings.h"
#include "entry/entry_amount.h"
#include "entry/rate_rules.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

constexpr std::u16string_view kJoin = u" \u00b7 ";

std::u16string joined(const std::vector<std::u16string>& parts) {
    std::u16string out;
    for (const auto& p : parts) {
        if (!out.empty()) out += kJoin;
        out += p;
    }
    return out;
}

std::u16string amountsText(const PeriodTotals& totals, double CurrencyAmount::*which) {
    if (totals.amounts.empty()) return amountText(u"", 0);
    std::vector<std::u16string> parts;
    for (const CurrencyAmount& a : totals.amounts)
        parts.push_back(amountText(a.currency, a.*which));
    return joined(parts);
}

}  // namespace

PeriodTotals periodTotals(const std::vector<TimeEntry>& rows, const Settings& settings) {
    PeriodTotals t;
    for (const TimeEntry& e : rows) {
        ++t.count;
        t.hours += e.duration;
        if (!e.billable) continue;
        t.billableHours += e.duration;
        CurrencyAmount* slot = nullptr;
        for (CurrencyAmount& a : t.amounts) {
            if (a.currency == e.currency) slot = &a;
        }
        if (!slot) slot = &t.amounts.emplace_back(CurrencyAmount{e.currency, 0, 0});
        double amount = EntryAmount(e, settings);
        slot->total += amount;
        if (!e.paid) slot->unpaid += amount;
    }
    // One order whatever the list is arranged by: no currency first, then
    // by name.
    std::stable_sort(t.amounts.begin(), t.amounts.end(),
                     [](const CurrencyAmount& a, const CurrencyAmount& b) {
                         return compareStringW(a.currency, b.currency, true) < 0;
                     });
    return t;
}

std::u16string amountText(const std::u16string& currency, double amount) {
    std::u16string number = utf8ToUtf16(stringPrintf("%.2f", amount));
    return currency.empty() ? number : currency + u" " + number;
}

std::u16string hoursText(std::uint64_t hundredths) {
    return utf8ToUtf16(stringPrintf("%llu.%02llu",
                                    static_cast<unsigned long long>(hundredths / 100),
                                    static_cast<unsigned long long>(hundredths % 100)));
}

std::vector<TotalsField> totalsFields(const PeriodTotals& t) {
    return {{u"Entries", utf8ToUtf16(stringPrintf("%ld", t.count))},
            {u"Hours", hoursText(t.hours)},
            {u"Billable", hoursText(t.billableHours)},
            {u"Unpaid", amountsText(t, &CurrencyAmount::unpaid)},
            {u"Amount", amountsText(t, &CurrencyAmount::total)}};
}

RowSide rowSide(const TimeEntry& e, const Settings& settings) {
    RowSide side;
    side.client = e.client;
    if (!e.billable) {
        side.state = u"Non-billable";
        return side;
    }
    side.amount = amountText(e.currency, EntryAmount(e, settings));
    side.state = e.paid ? u"Paid" : u"Unpaid";
    return side;
}

std::u16string filterDescription(const EntryFilter& f, const Settings& settings) {
    std::vector<std::u16string> parts;
    auto criterion = [&parts](std::u16string_view caption, const std::u16string& value) {
        if (!value.empty()) parts.push_back(std::u16string(caption) + u": " + value);
    };
    criterion(u"Client", f.client);
    criterion(u"Project", f.project);
    criterion(u"Phase", f.phase);
    criterion(u"Task", f.task);
    criterion(u"Bill To", f.billTo);
    criterion(u"Currency", f.currency);
    criterion(settings.custom1Caption, f.custom1);
    criterion(settings.custom2Caption, f.custom2);
    criterion(settings.custom3Caption, f.custom3);
    if (f.rateType >= 0) {
        std::u16string_view name = rateTypeName(static_cast<std::uint16_t>(f.rateType));
        parts.push_back(u"Rate: " + (name.empty() ? utf8ToUtf16(stringPrintf("%d", f.rateType))
                                                  : std::u16string(name)));
    }
    // The three kinds of entry: say which are shown when some are hidden.
    if (!(f.showUnpaid && f.showPaid && f.showNonBillable)) {
        std::vector<std::u16string> shown;
        if (f.showUnpaid) shown.push_back(u"unpaid");
        if (f.showPaid) shown.push_back(u"paid");
        if (f.showNonBillable) shown.push_back(u"non-billable");
        if (shown.empty()) {
            parts.push_back(u"no kind of entry shown");
        } else {
            std::u16string kinds;
            for (std::size_t i = 0; i < shown.size(); ++i) {
                if (i > 0) kinds += i + 1 == shown.size() ? u" and " : u", ";
                kinds += shown[i];
            }
            parts.push_back(kinds + u" only");
        }
    }
    return joined(parts);
}

int filterChoice(const EntryFilter& f) {
    auto same = [](const EntryFilter& a, const EntryFilter& b) {
        return a.client == b.client && a.project == b.project && a.phase == b.phase &&
               a.task == b.task && a.billTo == b.billTo && a.currency == b.currency &&
               a.custom1 == b.custom1 && a.custom2 == b.custom2 && a.custom3 == b.custom3 &&
               a.rateType == b.rateType && a.showPaid == b.showPaid &&
               a.showUnpaid == b.showUnpaid && a.showNonBillable == b.showNonBillable;
    };
    if (same(f, EntryFilter())) return 0;
    if (same(f, unpaidOnlyFilter())) return 1;
    return 2;
}

}  // namespace qb
