#include "gui/totals_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "gui/app_state.h"
#include "views/period_totals.h"

namespace qb {

TotalsBar::TotalsBar(QWidget* parent) : QFrame(parent) {
    setObjectName(QStringLiteral("totalsBar"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(10, 5, 10, 5);
    column->setSpacing(2);
    for (QHBoxLayout*& line : lines_) {
        line = new QHBoxLayout;
        line->setSpacing(20);
        column->addLayout(line);
    }
    for (const TotalsField& f : totalsFields(PeriodTotals())) {
        auto* cell = new QWidget(this);
        auto* pair = new QHBoxLayout(cell);
        pair->setContentsMargins(0, 0, 0, 0);
        pair->setSpacing(6);
        auto* caption = new QLabel(toQt(f.caption) + QLatin1Char(':'), cell);
        QPalette pal = caption->palette();
        pal.setColor(QPalette::WindowText, pal.color(QPalette::PlaceholderText));
        caption->setPalette(pal);
        auto* value = new QLabel(cell);
        value->setObjectName(QStringLiteral("totals") + toQt(f.caption));
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        QFont bold = value->font();
        bold.setWeight(QFont::DemiBold);
        value->setFont(bold);
        pair->addWidget(caption);
        pair->addWidget(value);
        cells_.push_back(cell);
        fields_.emplace_back(caption, value);
    }
    arrange();
}

void TotalsBar::arrange() {
    // One line while everything fits; else the amounts, which grow with the
    // number of currencies, move to a second line instead of being cut off.
    int needed = 0;
    for (QWidget* cell : cells_) needed += cell->sizeHint().width() + lines_[0]->spacing();
    const bool oneLine = needed <= contentsRect().width() - 20;
    for (QHBoxLayout* line : lines_) {
        while (QLayoutItem* item = line->takeAt(0)) delete item;
    }
    for (std::size_t i = 0; i < cells_.size(); ++i) {
        lines_[oneLine || i < kFirstAmountField ? 0 : 1]->addWidget(cells_[i]);
    }
    for (QHBoxLayout* line : lines_) line->addStretch(1);
}

void TotalsBar::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    arrange();
}

void TotalsBar::setTotals(const PeriodTotals& totals) {
    std::vector<TotalsField> fields = totalsFields(totals);
    for (std::size_t i = 0; i < fields.size() && i < fields_.size(); ++i) {
        fields_[i].second->setText(toQt(fields[i].value));
    }
    arrange();
}

QString TotalsBar::value(const QString& caption) const {
    for (const auto& [c, v] : fields_) {
        if (c->text() == caption + QLatin1Char(':')) return v->text();
    }
    return {};
}

}  // namespace qb
