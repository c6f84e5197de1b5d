#include "views/entry_tree.h"

#include <algorithm>

#include "entry/entry_amount.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/time_entry.h"
#include "views/date_texts.h"

namespace qb {
namespace {

using Children = std::vector<std::unique_ptr<TreeNode>>;

TreeNode* append(Children& children, std::u16string text, int image) {
    auto node = std::make_unique<TreeNode>();
    node->text = std::move(text);
    node->image = image;
    children.push_back(std::move(node));
    return children.back().get();
}

// Sorted insertion as the tree control does it: by text, ignoring case
// first, and after the equal ones.
TreeNode* insertSorted(Children& children, std::u16string text, int image) {
    auto at = std::upper_bound(children.begin(), children.end(), text,
                               [](const std::u16string& t, const std::unique_ptr<TreeNode>& n) {
                                   int c = compareStringW(t, n->text, true);
                                   return c != 0 ? c < 0 : compareStringW(t, n->text, false) < 0;
                               });
    auto node = std::make_unique<TreeNode>();
    node->text = std::move(text);
    node->image = image;
    return children.insert(at, std::move(node))->get();
}

TreeNode* findChild(Children& children, const std::u16string& text) {
    for (auto& c : children) {
        if (c->text == text) return c.get();
    }
    return nullptr;
}

}  // namespace

EntryTree::EntryTree(const LocaleInfo& locale, const Settings& settings)
    : locale_(locale), settings_(settings) {}

void EntryTree::add(const TimeEntry& entry) {
    struct Level {
        std::u16string text;
        int image;
    };
    std::vector<Level> levels{{entry.client, kTreeClient}};
    if (!entry.project.empty()) levels.push_back({entry.project, kTreeProject});
    if (!entry.phase.empty()) levels.push_back({entry.phase, kTreePhase});
    levels.push_back({entry.task, kTreeTask});

    // Dates arrive in order, so a day is either the last root or a new one.
    std::u16string day = shortDateText(locale_, entry.date);
    bool inserting = false;
    TreeNode* node = roots_.empty() ? nullptr : findChild(roots_, day);
    if (!node) {
        node = append(roots_, day, kTreeDate);
        inserting = true;
    }
    for (const Level& level : levels) {
        TreeNode* child = inserting ? nullptr : findChild(node->children, level.text);
        if (!child) {
            child = insertSorted(node->children, level.text, level.image);
            inserting = true;
        }
        node = child;
    }
    node->recordOid = entry.recordOid;

    std::u16string duration = utf8ToUtf16(stringPrintf("%.2f", entry.duration * 0.01));
    SYSTEMTIME date{};
    fileTimeToSystemTime(entry.date, &date);
    if (date.wSecond != 0) duration += u" (" + shortTimeText(locale_, date) + u")";
    int image = !entry.billable ? kTreeNonBillable : entry.paid ? kTreePaid : kTreeUnpaid;
    append(node->children, duration, image)->recordOid = entry.recordOid;
    if (entry.billable) {
        std::string amount = stringPrintf("%.02f", EntryAmount(entry, settings_));
        std::u16string text = entry.currency.empty() ? utf8ToUtf16(amount)
                                                     : entry.currency + u" " + utf8ToUtf16(amount);
        append(node->children, text, kTreeAmount)->recordOid = entry.recordOid;
    }
}

}  // namespace qb
