#pragma once

// Edit Drop Lists: the phase, currency and custom lists that the entry
// editor offers, edited, emptied and filled from a list file.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "entry/unique_names.h"
#include "store/tables.h"

namespace qb {

class DataFile;

inline constexpr std::u16string_view kDeleteListQuestion = u"Are you to delete the entire list?";

// The in-place edit box of "Items:" takes this many characters.
inline constexpr std::size_t kDropItemLimit = 63;

// The lists "List Type:" offers, in its order.
const std::vector<ListKind>& editableLists();

// Edits an item in place: its record takes the new text, cut to the box's
// limit (handed back in `newText`). Refused for an empty text, an item that
// is not there, or a text the list holds already.
RenameOutcome renameDropItem(ListTable& byKind, ListKind kind, const std::u16string& item,
                             const std::u16string& text, std::u16string* newText = nullptr);

// "Delete All" is offered only for a list with at least one item.
bool canDeleteAll(ListTable& byKind, ListKind kind);

// Import...: adds the lines in order, in one batch; the list refuses empty
// and present texts by itself. Answers false when the batch failed (nothing
// added), else sets how many were added.
bool importDropItems(DataFile& file, ListTable& list, ListKind kind,
                     const std::vector<std::u16string>& items, std::size_t* added);

}  // namespace qb
