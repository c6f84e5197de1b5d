#pragma once

class QMainWindow;

namespace qb {

class Registry;

// The main window's size, position and panel layout, kept between runs
// under the desktop's own key. A first run sizes the window to the screen.
void restoreWindow(QMainWindow& window, Registry& registry);
void saveWindow(const QMainWindow& window, Registry& registry);

}  // namespace qb
