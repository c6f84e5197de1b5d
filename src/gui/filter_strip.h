#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace qb {

// The strip above the entry list that says what the view filter hides,
// with "Show All" beside it. Hidden while the filter shows everything.
class FilterStrip : public QFrame {
    Q_OBJECT
  public:
    explicit FilterStrip(QWidget* parent = nullptr);

    // The filter's description; empty hides the strip.
    void setDescription(const QString& text);
    QString description() const;
    QPushButton* showAllButton() const { return showAll_; }

  signals:
    void showAllRequested();
    void editRequested();

  private:
    QLabel* text_;
    QPushButton* showAll_;
};

}  // namespace qb
