#pragma once

// Texts of the main frame's own commands, shared by the desktop and the
// command line.

#include <string_view>

namespace qb {

inline constexpr std::u16string_view kDeleteEntryQuestion =
    u"Are you sure to permanently delete this item?";

}  // namespace qb
