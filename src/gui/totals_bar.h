#pragma once

#include <QFrame>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace qb {

struct PeriodTotals;

// The bar under the entry list: count, hours, billable hours, unpaid and
// total amount of the rows the list shows. It only draws what
// totalsFields answers.
class TotalsBar : public QFrame {
    Q_OBJECT
  public:
    explicit TotalsBar(QWidget* parent = nullptr);

    void setTotals(const PeriodTotals& totals);
    // The shown value of a field ("Entries", "Hours", "Billable", "Unpaid",
    // "Amount").
    QString value(const QString& caption) const;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void arrange();

    QHBoxLayout* lines_[5] = {};
    std::vector<QWidget*> cells_;
    std::vector<std::pair<QLabel*, QLabel*>> fields_;
};

}  // namespace qb
