#pragma once

// "Quick Summary": the totals of the rows the entry list shows, computed
// once when the dialog opens.

#include <QDialog>
#include <vector>

#include "platform/win_types.h"
#include "views/period_view.h"

class QTableWidget;

namespace qb {

class AppState;

class SummaryDialog : public QDialog {
    Q_OBJECT
  public:
    SummaryDialog(AppState& state, const std::vector<CEOID>& ids, ViewKind kind,
                  const SYSTEMTIME& start, const SYSTEMTIME& end, QWidget* parent = nullptr);

    QTableWidget* table() const { return table_; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void fitColumns();

    QTableWidget* table_;
};

}  // namespace qb
