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

// Builds the subtree of [begin, end) at `depth`; answers its root.
std::size_t build(std::size_t begin, std::size_t end, int depth, std::vector<SiblingLinks>& links,
                  std::vector<int>& depths) {
    if (begin >= end) return kNoSibling;
    std::size_t middle = begin + (end - begin) / 2;
    depths[middle] = depth;
    links[middle].left = build(begin, middle, depth + 1, links, depths);
    links[middle].right = build(middle + 1, end, depth + 1, links, depths);
    return middle;
}

}  // namespace

std::size_t balancedSiblingTree(std::size_t count, std::vector<SiblingLinks>* links) {
    links->assign(count, SiblingLinks{});
    if (count == 0) return kNoSibling;
    std::vector<int> depths(count, 0);
    std::size_t root = build(0, count, 0, *links, depths);
    // Every null link lies on the last level or the one before it, so
    // colouring only an incomplete last level red gives every path the same
    // number of black nodes.
    int deepest = 0;
    for (int d : depths) deepest = d > deepest ? d : deepest;
    std::size_t full = (std::size_t{1} << (deepest + 1)) - 1;
    if (count != full) {
        for (std::size_t i = 0; i < count; ++i) (*links)[i].red = depths[i] == deepest;
    }
    return root;
}

}  // namespace qb::compound
