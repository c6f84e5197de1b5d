#pragma once

// "Quick Summary": the totals of the rows the entry list shows, as the
// table of rows, with charts of the same rows beside it. It stays open
// beside the main window and is filled again for each period it is given.

#include <QDialog>
#include <vector>

#include "platform/win_types.h"
#include "views/period_view.h"

class QSplitter;
class QTableWidget;

namespace qb {

class AppState;
class SummaryChartsView;

// What the summary totals: the list's rows and the period they belong to.
struct SummaryPeriod {
    std::vector<CEOID> ids;  // the entry list's rows, in row order
    ViewKind kind = kWeekView;
    SYSTEMTIME start{};  // the period as getPeriod gives it
    SYSTEMTIME end{};
    SYSTEMTIME firstDay{};  // the days the period walks, both included
    SYSTEMTIME lastDay{};
};

class SummaryDialog : public QDialog {
    Q_OBJECT
  public:
    explicit SummaryDialog(AppState& state, QWidget* parent = nullptr);

    void showPeriod(const SummaryPeriod& period);
    // Sizes the window for the screen of `main` and puts it to the right of
    // `main`, or over its right side when the screen has no room there.
    void placeBeside(const QWidget& main);

    QTableWidget* table() const { return table_; }
    SummaryChartsView* charts() const { return charts_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void fitColumns();
    int widthForRows() const;

    AppState& state_;
    QTableWidget* table_;
    SummaryChartsView* charts_;
    QSplitter* split_;
};

}  // namespace qb
