#include "gui/totals_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <iterator>

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
        // The bar re-flows its fields instead of asking for their width.
        cell->setMinimumWidth(1);
        cells_.push_back(cell);
        fields_.emplace_back(caption, value);
    }
    arrange();
}

void TotalsBar::arrange() {
    // The fields flow onto as many lines as the width needs (the amounts grow
    // with the number of currencies), so nothing is cut off and the bar never
    // holds the window wider than the screen.
    for (QHBoxLayout* line : lines_) {
        while (QLayoutItem* item = line->takeAt(0)) delete item;
    }
    const int room = contentsRect().width() - 20;
    std::size_t line = 0;
    int used = 0;
    for (QWidget* cell : cells_) {
        const int width = cell->sizeHint().width() + lines_[line]->spacing();
        if (used > 0 && used + width > room && line + 1 < std::size(lines_)) {
            ++line;
            used = 0;
        }
        lines_[line]->addWidget(cell);
        used += width;
    }
    for (std::size_t i = 0; i <= line; ++i) lines_[i]->addStretch(1);
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
