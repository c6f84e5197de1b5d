#pragma once

#include <QWidget>

#include "views/timesheet.h"

class QLabel;
class QTableWidget;

namespace qb {

class AppState;
class MainWindow;

// View > Timesheet: the main window's period as a grid of hours, client /
// project / task down, days across, with totals. It follows the main
// window's period, filter and changes; a double-click on a cell opens its
// entry, or lists them when there are several.
class TimesheetWindow : public QWidget {
    Q_OBJECT
  public:
    TimesheetWindow(MainWindow& window, AppState& state);

    // Builds the grid from the rows the main window shows.
    void rebuild();
    QTableWidget* table() const { return table_; }
    const Timesheet& sheet() const { return sheet_; }
    // The entries of a day cell (row and column of the table).
    std::vector<CEOID> cellEntries(int row, int column) const;
    // What a double-click does: one entry opens, several are listed.
    void openCell(int row, int column);

  private:
    MainWindow& window_;
    AppState& state_;
    QLabel* title_;
    QTableWidget* table_;
    Timesheet sheet_;
};

void installTimesheet(MainWindow& window, AppState& state);

}  // namespace qb
