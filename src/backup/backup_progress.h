#pragma once

// How a backup reports its progress: one step after each entry and each
// client written. The desktop's progress dialog derives from
// ProgressDisplay and repaints on each change.

#include <string>

namespace qb {

class BackupProgress {
  public:
    virtual ~BackupProgress() = default;
    // The work is about to begin and takes `total` steps.
    virtual void start(long total) = 0;
    virtual void step() = 0;
};

// What the dialog shows: the bar's range and position and the second text
// line. The running number starts at 1 and is shown before it grows, so the
// first step shows 1 again, as the starting line did.
class ProgressDisplay : public BackupProgress {
  public:
    void start(long total) override;
    void step() override;

    long total() const { return total_; }
    long position() const { return position_; }
    const std::u16string& line() const { return line_; }

  protected:
    // Called after every change, for the dialog to repaint.
    virtual void changed() {}

  private:
    long total_ = 0;
    long position_ = 0;
    long number_ = 1;
    std::u16string line_;
};

}  // namespace qb
