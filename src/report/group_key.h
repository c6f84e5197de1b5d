#pragma once

// What groups the entries of a grouped report: the key of the layout's
// groupBy property, its order and each group's heading. The choices are
// recorded in docs/formats/report_layout.md.

#include <cstdint>
#include <string>
#include <vector>

#include "export/entry_pictures.h"
#include "export/export_settings.h"

namespace qb {

struct TimeEntry;

class GroupKey {
  public:
    explicit GroupKey(std::uint32_t groupBy);

    // True when the entries come in date order already grouped (by day), or
    // when there is nothing to group by.
    bool keepsDateOrder() const;
    // Stable order of `entries` by the key.
    void sort(std::vector<TimeEntry>& entries) const;
    // "Client: Acme"; empty when there is no field to group by. `pictures`
    // are the locale's, read once by a writer of many headings.
    std::u16string heading(const TimeEntry& entry, const ExportSettings& env,
                           const EntryPictures& pictures) const;

    // The key of an entry; groups follow each other in the order of their
    // keys, and entries of one key keep their order.
    struct Value {
        std::int64_t number = 0;
        std::u16string text;
        auto operator<=>(const Value&) const = default;
    };
    Value valueOf(const TimeEntry& entry) const;
    // True for the first key and whenever the key differs from the last one
    // asked about.
    bool startsGroup(Value value);

  private:
    int field_;  // report field number, -1 for none
    bool started_ = false;
    Value current_;
};

}  // namespace qb
