#include "gui/totals_bar.h"

#include <QHBoxLayout>
#include <QLabel>

#include "gui/app_state.h"
#include "views/period_totals.h"

namespace qb {

TotalsBar::TotalsBar(QWidget* parent) : QFrame(parent) {
    setObjectName(QStringLiteral("totalsBar"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 5, 10, 5);
    row->setSpacing(6);
    for (const TotalsField& f : totalsFields(PeriodTotals())) {
        auto* caption = new QLabel(toQt(f.caption) + QLatin1Char(':'), this);
        QPalette pal = caption->palette();
        pal.setColor(QPalette::WindowText, pal.color(QPalette::PlaceholderText));
        caption->setPalette(pal);
        auto* value = new QLabel(this);
        value->setObjectName(QStringLiteral("totals") + toQt(f.caption));
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        QFont bold = value->font();
        bold.setWeight(QFont::DemiBold);
        value->setFont(bold);
        row->addWidget(caption);
        row->addWidget(value);
        row->addSpacing(14);
        fields_.emplace_back(caption, value);
    }
    row->addStretch(1);
}

void TotalsBar::setTotals(const PeriodTotals& totals) {
    std::vector<TotalsField> fields = totalsFields(totals);
    for (std::size_t i = 0; i < fields.size() && i < fields_.size(); ++i) {
        fields_[i].second->setText(toQt(fields[i].value));
    }
}

QString TotalsBar::value(const QString& caption) const {
    for (const auto& [c, v] : fields_) {
        if (c->text() == caption + QLatin1Char(':')) return v->text();
    }
    return {};
}

}  // namespace qb
