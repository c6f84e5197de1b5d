#include "gui/colours.h"

#include "views/entry_rows.h"

namespace qb {

QColor paletteColour(std::uint32_t index, const QColor& systemText) {
    if (index == 0 || index >= kPaletteSize) return systemText;
    const std::uint32_t bgr = kPalette[index];  // 0x00BBGGRR
    return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                  static_cast<int>((bgr >> 16) & 0xFF));
}

bool isDarkPalette(const QPalette& palette) {
    return palette.color(QPalette::Base).lightness() < 128;
}

QColor warningColour(const QPalette& palette) {
    return isDarkPalette(palette) ? QColor(0xff, 0x8a, 0x80) : QColor(0xb0, 0x00, 0x20);
}

}  // namespace qb
