#include "gui/app_state.h"

namespace qb {

AppState::AppState(std::unique_ptr<Platform> platform)
    : platform_(std::move(platform)), entries_(*platform_), masters_(*platform_) {}

bool AppState::open() {
    if (!entries_.open()) return false;
    masters_.open();
    loadSettings(registry(), settings_);
    filter_.load(registry());
    locale_ = loadLocaleInfo(registry());
    return true;
}

bool AppState::saveSettings() {
    return qb::saveSettings(registry(), settings_);
}

}  // namespace qb
