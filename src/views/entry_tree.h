#pragma once

// The tree style: date, client, project, phase and task nodes, with the
// duration and amount leaves under each task.

#include <memory>
#include <string>
#include <vector>

#include "platform/date_format.h"
#include "platform/win_types.h"

namespace qb {

struct TimeEntry;
struct Settings;

// Images of the tree's nodes: levels 0 to 4, then the amount leaf and the
// duration leaf by status (the tree orders those three differently from the
// lists on purpose).
enum TreeImage : int {
    kTreeDate = 0,
    kTreeClient = 1,
    kTreeProject = 2,
    kTreePhase = 3,
    kTreeTask = 4,
    kTreeAmount = 5,
    kTreeUnpaid = 6,
    kTreeNonBillable = 7,
    kTreePaid = 8,
};

struct TreeNode {
    std::u16string text;
    int image = 0;
    CEOID recordOid = 0;  // on task nodes and their leaves
    std::vector<std::unique_ptr<TreeNode>> children;
};

class EntryTree {
  public:
    EntryTree(const LocaleInfo& locale, const Settings& settings);
    void add(const TimeEntry& entry);
    void clear() { roots_.clear(); }
    const std::vector<std::unique_ptr<TreeNode>>& roots() const { return roots_; }

  private:
    const LocaleInfo& locale_;
    const Settings& settings_;
    std::vector<std::unique_ptr<TreeNode>> roots_;
};

}  // namespace qb
