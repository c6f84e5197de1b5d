#include "entry/entry_form.h"

#include "entry/duration_rule.h"
#include "entry/editor_choices.h"
#include "entry/rate_rules.h"
#include "platform/calendar.h"

namespace qb {
namespace {

FormResult refuse(std::u16string_view message, FormField field) {
    return {false, message, field};
}

void storeStart(const std::optional<SYSTEMTIME>& start, TimeEntry& entry) {
    if (start) {
        setStartTime(entry, *start);
    } else {
        clearStartTime(entry);
    }
}

// The hours OK stores for the Duration box, or why it refuses them, with the
// short note the editor shows beside the box. A box that still shows the
// entry's duration keeps it exactly: saving an entry again never changes
// hours the user did not touch, even after the granularity option changed.
// A counted span goes through the rule in whole seconds.
struct DurationCheck {
    std::optional<std::uint16_t> duration;
    std::u16string_view message;
    std::u16string_view note;
};

DurationCheck checkDuration(const EntryForm& form, const Settings& settings,
                            const TimeEntry& entry) {
    constexpr std::u16string_view kRangeNote = u"0 to 655.35 h";
    if (form.spanSeconds) {
        const std::optional<std::uint16_t> span = durationFromSeconds(*form.spanSeconds, settings);
        if (!span) return {std::nullopt, kDurationRangeMessage, kRangeNote};
        return {span, {}, {}};
    }
    const std::u16string box = limitText(form.duration, kDurationLimit);
    if (box.empty()) return {std::nullopt, kDurationBlankMessage, u"blank"};
    if (holdsLetter(box)) return {std::nullopt, kNumericOnlyMessage, u"numbers only"};
    if (box == durationText(entry.duration)) return {entry.duration, {}, {}};
    const std::optional<std::uint16_t> duration = durationFromText(box, settings);
    if (!duration) return {std::nullopt, kDurationRangeMessage, kRangeNote};
    return {duration, {}, {}};
}

// The callers have refused a blank box already. A box holding a letter is
// left to OK's letter test, so that refusals come in the order of the page.
FormResult storeDuration(const EntryForm& form, const Settings& settings, TimeEntry& entry) {
    if (!form.spanSeconds && holdsLetter(limitText(form.duration, kDurationLimit))) return {};
    const DurationCheck check = checkDuration(form, settings, entry);
    if (!check.duration) return refuse(check.message, FormField::kDuration);
    entry.duration = *check.duration;
    return {};
}

FormResult applyGeneral(const EntryForm& form, TimeEntry& entry) {
    setEntryDay(entry, form.day);
    storeStart(form.start, entry);
    entry.client = limitText(form.client, kNameLimit);
    entry.project = limitText(form.project, kNameLimit);
    entry.phase = limitText(form.phase, kNameLimit);
    if (form.task.empty()) return refuse(kTaskBlankMessage, FormField::kTask);
    entry.task = limitText(form.task, kNameLimit);
    if (!form.spanSeconds && holdsLetter(limitText(form.duration, kDurationLimit))) {
        return refuse(kNumericOnlyMessage, FormField::kDuration);
    }
    return {};
}

FormResult applyBilling(const EntryForm& form, TimeEntry& entry) {
    if (!form.billable) {
        // The page's other boxes are disabled and left out, so paid, bill-to,
        // currency and rate type stay as they were.
        entry.billable = false;
        entry.rate = 0;
        return {};
    }
    entry.billable = true;
    entry.paid = form.paid;
    const std::u16string rate = limitText(form.rate, kRateLimit);
    if (holdsLetter(rate)) return refuse(kNumericOnlyMessage, FormField::kRate);
    // As with the duration, a rate box that still shows the rate keeps it.
    if (rate != rateText(entry.rate)) {
        const std::optional<std::uint32_t> value = editorRate(rate);
        if (!value) return refuse(kRateRangeMessage, FormField::kRate);
        entry.rate = *value;
    }
    entry.billTo = limitText(form.billTo, kBillToLimit);
    entry.currency = limitText(form.currency, kCurrencyLimit);
    if (form.rateNode) {
        entry.rateType = *form.rateNode;
    } else {
        entry.rateType = form.fixed ? kFixedRate : kNormalRate;
    }
    return {};
}

void applyCustom(const EntryForm& form, TimeEntry& entry) {
    entry.custom1 = limitText(form.custom1, kCustomLimit);
    entry.custom2 = limitText(form.custom2, kCustomLimit);
    entry.custom3 = limitText(form.custom3, kCustomLimit);
}

}  // namespace

std::u16string limitText(std::u16string_view text, std::size_t limit) {
    if (text.size() <= limit) return std::u16string(text);
    std::size_t n = limit;
    if (n > 0 && text[n - 1] >= 0xD800 && text[n - 1] <= 0xDBFF) --n;
    return std::u16string(text.substr(0, n));
}

TimeEntry prepareEntry(const TimeEntry* passed, const Settings& settings, const SYSTEMTIME& today) {
    TimeEntry entry;
    setEntryDay(entry, today);
    if (passed) entry = *passed;
    if (entry.recordOid == 0) {
        entry.billable = (settings.optionFlags & kBillableDefault) != 0;
        entry.currency = settings.defaultCurrency;
    }
    return entry;
}

EntryForm formFromEntry(const TimeEntry& entry) {
    EntryForm form;
    SYSTEMTIME date;
    if (fileTimeToSystemTime(entry.date, &date)) {
        form.day = date;
        if (hasStartTime(entry)) form.start = date;
    }
    form.client = entry.client;
    form.project = entry.project;
    form.phase = entry.phase;
    form.task = entry.task;
    form.duration = durationText(entry.duration);
    form.billable = entry.billable;
    form.paid = entry.paid;
    form.billTo = entry.billTo;
    form.currency = entry.currency;
    form.rate = rateText(entry.rate);
    form.fixed = entry.rateType == kFixedRate;
    form.custom1 = entry.custom1;
    form.custom2 = entry.custom2;
    form.custom3 = entry.custom3;
    form.notes = entry.notes;
    return form;
}

FormPage pageOf(FormField field) {
    return field == FormField::kRate ? FormPage::kBilling : FormPage::kGeneral;
}

FormResult leaveGeneral(const EntryForm& form, const Settings& settings, TimeEntry& entry) {
    if (form.client.empty()) return refuse(kClientBlankMessage, FormField::kClient);
    if (!form.spanSeconds && form.duration.empty()) {
        return refuse(kDurationBlankMessage, FormField::kDuration);
    }
    return storeDuration(form, settings, entry);
}

FormResult applyForm(const EntryForm& form, const Settings& settings, TimeEntry& entry) {
    if (FormResult r = leaveGeneral(form, settings, entry); !r.ok) return r;
    if (FormResult r = applyGeneral(form, entry); !r.ok) return r;
    if (FormResult r = applyBilling(form, entry); !r.ok) return r;
    applyCustom(form, entry);
    setNotes(entry, static_cast<std::int32_t>(form.notes.size()), form.notes.data());
    return {};
}

FormPreview durationPreview(const EntryForm& form, const Settings& settings,
                            const TimeEntry& entry) {
    const DurationCheck check = checkDuration(form, settings, entry);
    if (!check.duration) return {false, u"Not saved: " + std::u16string(check.note), check.message};
    return {true, u"Saves " + durationText(*check.duration) + u" h", {}};
}

FormPreview totalPreview(const EntryForm& form, const Settings& settings, const TimeEntry& entry) {
    const DurationCheck check = checkDuration(form, settings, entry);
    if (!check.duration) return {false, {}, check.message};
    TimeEntry saved = entry;
    saved.duration = *check.duration;
    if (const FormResult r = applyBilling(form, saved); !r.ok) return {false, {}, r.message};
    return {true, totalText(saved, form.currency, settings), {}};
}

FormResult beginSetTimes(const EntryForm& form, const Settings& settings, TimeEntry& entry) {
    if (form.duration.empty()) return refuse(kDurationBlankMessage, FormField::kDuration);
    storeStart(form.start, entry);
    return storeDuration(form, settings, entry);
}

FormResult finishSetTimes(const SYSTEMTIME& start, const SYSTEMTIME& end, const Settings& settings,
                          TimeEntry& entry) {
    const std::optional<std::uint16_t> duration =
        durationFromMinutes(spanMinutes(start, end), settings);
    if (!duration) return refuse(kDurationRangeMessage, FormField::kDuration);
    setStartTime(entry, start);
    entry.duration = *duration;
    return {};
}

}  // namespace qb
