#pragma once

// The entry list's text colours: palette indexes as the display options keep
// them, drawn as Qt colours.

#include <QColor>
#include <QPalette>
#include <cstdint>

namespace qb {

// Index 0, and any index past the palette, is the system's text colour.
QColor paletteColour(std::uint32_t index, const QColor& systemText);

// A dark palette (light text on a dark base) needs lighter status colours.
bool isDarkPalette(const QPalette& palette);
// The colour of a warning text, readable on the palette's window.
QColor warningColour(const QPalette& palette);

}  // namespace qb
