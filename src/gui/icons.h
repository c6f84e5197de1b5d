#pragma once

// The application's small pictures, drawn rather than loaded so that they
// stay sharp at any scale.

#include <QIcon>
#include <cstdint>

namespace qb {

enum class TimerState : std::uint32_t;

// The entry status: 0 non-billable, 1 billable and unpaid, 2 paid.
QIcon statusIcon(int status);
// The tree's node pictures, by its image index (0 to 8).
QIcon treeIcon(int image);
// The header band's buttons.
QIcon todayIcon();
QIcon previousIcon();
QIcon nextIcon();
// The tool bar: the timers (idle or running) and the quick summary.
QIcon timersIcon(bool running);
// One timer: idle, recording (also when complete) or paused.
QIcon timerStateIcon(TimerState state);
QIcon summaryIcon();
// Rate nodes by rate type, and the rate groups.
QIcon rateIcon(int rateType);
QIcon groupIcon();
// A contact (bill-to name) of the client setup.
QIcon contactIcon();
QIcon applicationIcon();

}  // namespace qb
