#include "platform/compound_names.h"

namespace qb::compound {

char16_t upperUnit(char16_t u) {
    if (u >= u'a' && u <= u'z') return static_cast<char16_t>(u - 0x20);
    if (u < 0xB5) return u;
    if (u == 0xB5) return 0x39C;
    if (u >= 0xE0 && u <= 0xFE && u != 0xF7) return static_cast<char16_t>(u - 0x20);
    if (u == 0xFF) return 0x178;
    // Latin Extended-A alternates upper and lower case, with the pairs
    // shifted by one between U+0138 and U+0149 and after U+0178.
    if (u >= 0x100 && u <= 0x137 && (u & 1)) return static_cast<char16_t>(u - 1);
    if (u >= 0x139 && u <= 0x148 && !(u & 1)) return static_cast<char16_t>(u - 1);
    if (u >= 0x14A && u <= 0x177 && (u & 1)) return static_cast<char16_t>(u - 1);
    if ((u == 0x17A || u == 0x17C || u == 0x17E)) return static_cast<char16_t>(u - 1);
    if (u == 0x3C2) return 0x3A3;
    if (u >= 0x3B1 && u <= 0x3CB) return static_cast<char16_t>(u - 0x20);
    if (u >= 0x430 && u <= 0x44F) return static_cast<char16_t>(u - 0x20);
    if (u >= 0x450 && u <= 0x45F) return static_cast<char16_t>(u - 0x50);
    return u;
}

std::u16string nameKey(std::u16string_view name) {
    std::u16string key(name);
    for (char16_t& u : key) u = upperUnit(u);
    return key;
}

int compareNames(std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
    for (std::size_t i = 0; i < a.size(); ++i) {
        char16_t x = upperUnit(a[i]);
        char16_t y = upperUnit(b[i]);
        if (x != y) return x < y ? -1 : 1;
    }
    return 0;
}

bool validName(std::u16string_view name) {
    if (name.empty() || name.size() > 31) return false;
    for (char16_t u : name) {
        if (u == 0 || u == u'/' || u == u'\\' || u == u':' || u == u'!') return false;
    }
    return true;
}

namespace {

std::size_t middleOf(std::size_t begin, std::size_t end) {
    return begin < end ? begin + (end - begin) / 2 : kNoSibling;
}

}  // namespace

std::size_t siblingTreeRoot(std::size_t count) {
    return middleOf(0, count);
}

SiblingLinks siblingLinksOf(std::size_t count, std::size_t index) {
    SiblingLinks links;
    std::size_t begin = 0;
    std::size_t end = count;
    int depth = 0;
    for (std::size_t middle = middleOf(begin, end); middle != index;
         middle = middleOf(begin, end)) {
        if (index < middle) {
            end = middle;
        } else {
            begin = middle + 1;
        }
        ++depth;
    }
    const std::size_t middle = middleOf(begin, end);
    links.left = middleOf(begin, middle);
    links.right = middleOf(middle + 1, end);
    // Each node takes the middle, so the left half is never the smaller and
    // the tree is floor(log2(count)) deep. Every null link lies on the last
    // level or the one before it, so colouring only an incomplete last level
    // red gives every path the same number of black nodes.
    int deepest = 0;
    while ((count >> (deepest + 1)) != 0) ++deepest;
    const std::size_t full = (std::size_t{1} << (deepest + 1)) - 1;
    links.red = count != full && depth == deepest;
    return links;
}

std::size_t balancedSiblingTree(std::size_t count, std::vector<SiblingLinks>* links) {
    links->clear();
    for (std::size_t i = 0; i < count; ++i) links->push_back(siblingLinksOf(count, i));
    return siblingTreeRoot(count);
}

}  // namespace qb::compound
