#pragma once

// The entry list's text colours: palette indexes as the display options keep
// them, drawn as Qt colours.

#include <QColor>
#include <cstdint>

namespace qb {

// Index 0, and any index past the palette, is the system's text colour.
QColor paletteColour(std::uint32_t index, const QColor& systemText);

}  // namespace qb
