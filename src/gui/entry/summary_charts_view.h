#pragma once

// The quick summary's pictures, one tab each: hours per project, per client
// and per day, billable against non-billable hours, and the paid and unpaid
// amounts of each currency. They only draw what summaryCharts computed.

#include <QTabWidget>

class QChart;

namespace qb {

struct SummaryCharts;

class SummaryChartsView : public QTabWidget {
    Q_OBJECT
  public:
    // Bars beyond this many in the project and client charts share one.
    static constexpr std::size_t kMaxBars = 12;

    explicit SummaryChartsView(QWidget* parent = nullptr);

    void showCharts(const SummaryCharts& charts);

    // "projects", "clients", "days", "billable", "amounts".
    QChart* chart(const char* name) const;

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void applyTheme();
};

}  // namespace qb
