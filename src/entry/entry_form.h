#pragma once

// The time entry editor without its windows: the texts of its boxes and the
// checks that turn them into a TimeEntry. The desktop editor and the command
// line both go through here, so an entry is accepted or refused the same way.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "platform/win_types.h"
#include "store/time_entry.h"

namespace qb {

// The editor's boxes, holding what the user typed.
struct EntryForm {
    // General
    SYSTEMTIME day{};
    std::optional<SYSTEMTIME> start;  // none: the start picker is empty
    std::u16string client;
    std::u16string project;
    std::u16string phase;
    std::u16string task;
    std::u16string duration;
    // A span measured in whole seconds (an imported record's end - start);
    // when set it stands for the Duration box.
    std::optional<std::int64_t> spanSeconds;
    // Billing
    bool billable = false;
    bool paid = false;
    std::u16string billTo;
    std::u16string currency;
    std::u16string rate;
    // The rate type of the selected rate-tree node; none for "(Custom Rate)".
    std::optional<std::uint16_t> rateNode;
    bool fixed = false;
    // Custom
    std::u16string custom1;
    std::u16string custom2;
    std::u16string custom3;
    // Notes
    std::vector<std::uint8_t> notes;

    // The editor asks before discarding boxes that differ from how it opened.
    bool operator==(const EntryForm&) const = default;
};

// How many UTF-16 units each box takes; typing stops there.
inline constexpr std::size_t kNameLimit = 127;  // client, project, phase, task
inline constexpr std::size_t kDurationLimit = 6;
inline constexpr std::size_t kBillToLimit = 64;
inline constexpr std::size_t kCurrencyLimit = 16;
inline constexpr std::size_t kRateLimit = 16;
inline constexpr std::size_t kCustomLimit = 63;

// The text as a box of that limit holds it: cut at the limit, and one unit
// earlier rather than between the halves of a surrogate pair.
std::u16string limitText(std::u16string_view text, std::size_t limit);

// The entry the editor opens on: today's date (midnight, no start time),
// then every field of `passed` when there is one. An entry without a record
// yet takes billable from kBillableDefault and the currency from
// defaultCurrency, whatever `passed` held.
TimeEntry prepareEntry(const TimeEntry* passed, const Settings& settings, const SYSTEMTIME& today);

// The boxes as the editor first shows an entry: duration and rate with two
// decimals, the custom-rate node selected and "Fixed" checked for a fixed
// rate. (The desktop editor then selects a client rate matching the entry's
// rate and type, when there is one, by setting rateNode.)
EntryForm formFromEntry(const TimeEntry& entry);

// The box that gets the focus after a refusal.
enum class FormField { kNone, kClient, kDuration, kTask, kRate };
enum class FormPage { kGeneral, kBilling };
FormPage pageOf(FormField field);

inline constexpr std::u16string_view kClientBlankMessage =
    u"Please enter a client name.  You cannot leave Client field blank.";
inline constexpr std::u16string_view kDurationBlankMessage =
    u"You must enter a duration in hours. (e.g. 1.5, or 0.5)";
inline constexpr std::u16string_view kTaskBlankMessage =
    u"Please enter a task name.  You cannot have a blank Task field.";
inline constexpr std::u16string_view kNumericOnlyMessage =
    u"This field accepts numeric values only.";

struct FormResult {
    bool ok = true;
    std::u16string_view message;  // empty when ok
    FormField field = FormField::kNone;
};

// Leaving the General page (also the first step of OK): client and duration
// must not be blank; then the duration box goes into `entry` by the duration
// rule, so that the Billing page computes with it. A box that still shows
// the entry's duration keeps it exactly; hours outside 0 to 655.35 are
// refused (kDurationRangeMessage).
FormResult leaveGeneral(const EntryForm& form, const Settings& settings, TimeEntry& entry);

// OK of the editor: leaving General, then each page stores its boxes into
// `entry` in page order (General, Billing, Custom, Notes), stopping at the
// first refusal. What was stored before a refusal stays in `entry`; the
// editor stays open on it, the command line drops it.
//
// The rate box, like the Duration box, keeps the entry's rate when it still
// shows it; a typed rate is cut after the second decimal in decimal and must
// lie in 0 to 42,949,672.95 (kRateRangeMessage).
//
// A non-billable entry stores billable = false and rate = 0 and nothing else
// of the Billing page: paid, bill-to, currency and rate type keep what the
// entry held before (for a new entry: not paid, no bill-to, the default
// currency, Normal).
//
// Every text is first cut to its box's limit.
FormResult applyForm(const EntryForm& form, const Settings& settings, TimeEntry& entry);

// What OK would store, worked out as the user types by the same steps as
// OK, for the editor to show beside its boxes.
struct FormPreview {
    bool ok = true;               // false: OK would refuse the box
    std::u16string text;          // what the editor shows
    std::u16string_view message;  // OK's message for the refusal
};

// The hours the Duration box (or the counted span) will be stored as, e.g.
// "Saves 1.00 h" for "1:30", whose leading number is 1; a blank box, a
// letter or hours out of range say why OK refuses them ("Not saved: ...").
// A box that still shows the entry's duration keeps it.
FormPreview durationPreview(const EntryForm& form, const Settings& settings,
                            const TimeEntry& entry);
// The Billing page's Total as the entry will be saved, as Calculate shows
// it ("%s%.02f" of the currency box and the amount), from the previewed
// hours and the page's rate, rate type and currency. A non-billable entry is
// saved without a rate, so its total is 0.00. Empty text when OK would
// refuse the duration or the rate.
FormPreview totalPreview(const EntryForm& form, const Settings& settings, const TimeEntry& entry);

// The first step of "Set...": the Duration box must not be blank; the start
// picker and the typed duration are stored into `entry` (the duration by the
// duration rule). The dialog then proposes the entry's start (or now) and
// the start plus endOffsetMinutes(entry.duration); on its OK the caller
// calls finishSetTimes.
FormResult beginSetTimes(const EntryForm& form, const Settings& settings, TimeEntry& entry);
// OK of the start/end dialog: the start becomes the entry's start time and
// the span (spanMinutes) its duration by the duration rule. A span below
// zero (an end earlier within the start's hour) or beyond 655.35 hours is
// refused with kDurationRangeMessage and changes nothing.
FormResult finishSetTimes(const SYSTEMTIME& start, const SYSTEMTIME& end, const Settings& settings,
                          TimeEntry& entry);

}  // namespace qb
