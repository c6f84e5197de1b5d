#pragma once

// The container's order of element names and the shape of the sibling tree
// the writer stores them in.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qb::compound {

// One code unit upper-cased the way the container compares names: ASCII,
// Latin-1, Latin Extended-A pairs, Greek and Cyrillic letters.
char16_t upperUnit(char16_t unit);
// The name with every unit upper-cased: equal keys name the same element.
std::u16string nameKey(std::u16string_view name);
// Container order: the shorter name first, then by upper-cased code units.
// Negative, zero or positive.
int compareNames(std::u16string_view a, std::u16string_view b);

// An element name the container can hold: 1 to 31 code units, none of
// / \ : ! nor NUL.
bool validName(std::u16string_view name);

inline constexpr std::size_t kNoSibling = static_cast<std::size_t>(-1);

struct SiblingLinks {
    std::size_t left = kNoSibling;
    std::size_t right = kNoSibling;
    bool red = false;
};

// A red-black tree over `count` siblings already in container order: each
// node is the middle of its range, every level but the last is full, and the
// last level's nodes are red. Fills `links` (indexed like the siblings) and
// answers the root, or kNoSibling when there are none.
std::size_t balancedSiblingTree(std::size_t count, std::vector<SiblingLinks>* links);
// The same tree one node at a time, without a table: the root, and the links
// of sibling `index` (in O(log count)).
std::size_t siblingTreeRoot(std::size_t count);
SiblingLinks siblingLinksOf(std::size_t count, std::size_t index);

}  // namespace qb::compound
