#pragma once

// What the read-only preview of an entry shows: every field, in the user's
// formats, with the amount computed and the note as text.

#include <string>
#include <vector>

#include "platform/date_format.h"

namespace qb {

struct Settings;
struct TimeEntry;

struct PreviewField {
    std::u16string label;  // "Client:", or "<caption>:" for a custom field
    std::u16string value;  // empty when the entry has nothing there
};

// In the editor's page order: when and what, billing, custom fields, note.
std::vector<PreviewField> entryPreviewFields(const TimeEntry& entry, const Settings& settings,
                                             const LocaleInfo& locale);

}  // namespace qb
