#pragma once

// The items the filter dialog and the criteria sheet offer in their combo
// boxes, next to their "(All)" item.

#include <string>
#include <vector>

namespace qb {

class Platform;
struct MasterTables;

inline constexpr char16_t kAllItem[] = u"(All)";

// Each list is sorted ignoring case, as the device's sorted combo boxes
// were, holds no empty text and no exact repeat.
struct FilterChoices {
    std::vector<std::u16string> clients;
    std::vector<std::u16string> projects;  // of every client
    std::vector<std::u16string> tasks;     // of projects and loose tasks, every client
    std::vector<std::u16string> billTo;    // every client's contacts
    std::vector<std::u16string> phases;    // the drop lists from here on
    std::vector<std::u16string> currencies;
    std::vector<std::u16string> custom1;
    std::vector<std::u16string> custom2;
    std::vector<std::u16string> custom3;
};

FilterChoices filterChoices(MasterTables& masters, Platform& platform);

// Sorts ignoring case (ties in code-unit order), then drops empty texts and
// exact repeats.
void sortChoices(std::vector<std::u16string>& items);

}  // namespace qb
