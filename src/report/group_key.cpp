#include "report/group_key.h"

#include <algorithm>

#include "report/report_fields.h"
#include "store/time_entry.h"

namespace qb {
namespace {

constexpr std::int64_t kTicksPerMinute = 600'000'000;
constexpr std::int64_t kTicksPerDay = 1440 * kTicksPerMinute;

}  // namespace

GroupKey::GroupKey(std::uint32_t groupBy) : field_(reportFieldOfProperty(groupBy)) {}

bool GroupKey::keepsDateOrder() const {
    return field_ == kFieldDate || field_ < 0;
}

GroupKey::Value GroupKey::valueOf(const TimeEntry& e) const {
    const auto date = static_cast<std::int64_t>(e.date);
    switch (field_) {
        case 0:
            return {date / kTicksPerDay, {}};
        case 1:
            return {0, e.client};
        case 2:
            return {0, e.project};
        case 3:
            return {0, e.phase};
        case 4:
            return {0, e.task};
        case 5:
            return {e.duration, {}};
        case 6:
            return {0, e.currency};
        case 7:
            return {e.billable ? 1 : 0, {}};
        case 8:
            return {e.paid ? 1 : 0, {}};
        case 9:
            return {date % kTicksPerDay / kTicksPerMinute, {}};
        case 10:
            return {0, e.billTo};
        case 11:
            return {0, e.custom1};
        case 12:
            return {0, e.custom2};
        case 13:
            return {0, e.custom3};
        case 14:
            return {e.rateType, {}};
        default:
            return {};
    }
}

void GroupKey::sort(std::vector<TimeEntry>& entries) const {
    if (keepsDateOrder()) return;
    std::vector<std::pair<Value, std::size_t>> keyed;
    keyed.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) keyed.emplace_back(valueOf(entries[i]), i);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<TimeEntry> sorted;
    sorted.reserve(entries.size());
    for (auto& k : keyed) sorted.push_back(std::move(entries[k.second]));
    entries = std::move(sorted);
}

bool GroupKey::startsGroup(Value v) {
    if (started_ && v == current_) return false;
    started_ = true;
    current_ = std::move(v);
    return true;
}

std::u16string GroupKey::heading(const TimeEntry& entry, const ExportSettings& env,
                                 const EntryPictures& pictures) const {
    if (field_ < 0) return {};
    std::u16string text = reportFieldTitle(field_, env.settings) + u": ";
    appendReportCell(field_, entry, env, pictures, text);
    return text;
}

}  // namespace qb
