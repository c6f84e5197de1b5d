#pragma once

// What the totals bar under the entry list and the right side of each
// default-style row say. Amounts come from EntryAmount alone; amounts in
// different currencies are kept apart and never added together.

#include <cstdint>
#include <string>
#include <vector>

namespace qb {

struct EntryFilter;
struct Settings;
struct TimeEntry;

// The amounts of one currency (its text as the entries hold it; empty for
// entries without one). Only billable entries have an amount, as in the
// quick summary.
struct CurrencyAmount {
    std::u16string currency;
    double unpaid = 0;
    double total = 0;
};

struct PeriodTotals {
    long count = 0;
    // Hundredths of an hour, summed as stored so no rounding creeps in.
    std::uint64_t hours = 0;
    std::uint64_t billableHours = 0;
    // No currency first, then by name ignoring case.
    std::vector<CurrencyAmount> amounts;
};

// The totals of the rows a refresh shows (periodEntries: the period's
// entries that pass the filter).
PeriodTotals periodTotals(const std::vector<TimeEntry>& rows, const Settings& settings);

// "USD 12.50", or "12.50" without a currency.
std::u16string amountText(const std::u16string& currency, double amount);
// Hundredths of an hour as "%.2f".
std::u16string hoursText(std::uint64_t hundredths);

// The bar's fields, each a caption and its value: "Entries", "Hours",
// "Billable", "Unpaid", "Amount". Amounts of several currencies are joined
// by " · ".
struct TotalsField {
    std::u16string caption;
    std::u16string value;
};
std::vector<TotalsField> totalsFields(const PeriodTotals& totals);

// The right side of a default-style row: the client, the amount with its
// currency (empty for non-billable work) and the state.
struct RowSide {
    std::u16string client;
    std::u16string amount;
    std::u16string state;  // "Non-billable", "Unpaid", "Paid"
};
RowSide rowSide(const TimeEntry& entry, const Settings& settings);

// What the view filter restricts, for the strip above the list, e.g.
// "Client: Acme · unpaid only"; empty when it shows everything.
std::u16string filterDescription(const EntryFilter& filter, const Settings& settings);

// Which Filter menu item describes the filter: 0 Show All, 1 Show Unpaid
// Only, 2 Custom.
int filterChoice(const EntryFilter& filter);

}  // namespace qb
