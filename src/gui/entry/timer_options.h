#pragma once

// The "Timers" page of Options: the idle setting.

namespace qb {

class AppState;
class OptionsDialog;

// Appends the page; on OK it writes the idle setting. Where the desktop
// reports no idle time the page says so and the setting cannot be changed.
void addTimerPage(OptionsDialog& dialog, AppState& state);

}  // namespace qb
