#pragma once

// The choices the options dialog offers for settings that hold a number.

#include <cstdint>

namespace qb {

// "Enable Duration Granularity of" ... minutes (minTime).
inline constexpr std::uint16_t kMinTimeChoices[] = {6, 10, 15, 20, 30, 40, 45, 50};

// "Font Size": the index is fontSize, the list font is index + 7 points.
inline constexpr int kFontSizeChoices = 12;
constexpr int fontSizePoints(int index) {
    return index + 7;
}

}  // namespace qb
