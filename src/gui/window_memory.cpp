#include "gui/window_memory.h"

#include <QByteArray>
#include <QMainWindow>
#include <QScreen>

#include "platform/registry.h"

namespace qb {
namespace {

constexpr const char* kDesktopKey = "Software\\Quillarbor\\Desktop";
constexpr std::uint32_t kMostBytes = 64 * 1024;

QByteArray readBytes(Registry& registry, const char* name) {
    auto key = registry.openKey(RegRoot::HKEY_CURRENT_USER, kDesktopKey);
    RegValue value;
    if (!key || key->queryValue(name, kMostBytes, &value) != ERROR_SUCCESS) return {};
    return QByteArray(reinterpret_cast<const char*>(value.data.data()),
                      static_cast<qsizetype>(value.data.size()));
}

void writeBytes(Registry& registry, const char* name, const QByteArray& bytes) {
    auto key = registry.createKey(RegRoot::HKEY_CURRENT_USER, kDesktopKey);
    if (!key) return;
    key->setValue(name, REG_BINARY, std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

// Most of the screen, no smaller than the list needs and no larger than a
// comfortable reading width, centred.
void fitToScreen(QMainWindow& window) {
    QScreen* screen = window.screen();
    if (!screen) {
        window.resize(960, 680);
        return;
    }
    QRect room = screen->availableGeometry();
    QSize size(std::clamp(room.width() * 3 / 4, std::min(960, room.width()), 1600),
               std::clamp(room.height() * 4 / 5, std::min(680, room.height()), 1100));
    window.resize(size);
    window.move(room.center() - QPoint(size.width() / 2, size.height() / 2));
}

}  // namespace

void restoreWindow(QMainWindow& window, Registry& registry) {
    QByteArray geometry = readBytes(registry, "Geometry");
    if (geometry.isEmpty() || !window.restoreGeometry(geometry)) {
        fitToScreen(window);
    } else if (QScreen* screen = window.screen()) {
        // A size remembered on a larger screen, or before the scale grew,
        // would leave the window's edges off this one.
        const QRect room = screen->availableGeometry();
        if (window.width() > room.width() || window.height() > room.height()) {
            window.resize(std::min(window.width(), room.width()),
                          std::min(window.height(), room.height()));
            window.move(room.topLeft());
        }
    }
    QByteArray state = readBytes(registry, "Panels");
    if (!state.isEmpty()) window.restoreState(state);
}

void saveWindow(const QMainWindow& window, Registry& registry) {
    writeBytes(registry, "Geometry", window.saveGeometry());
    writeBytes(registry, "Panels", window.saveState());
}

}  // namespace qb
