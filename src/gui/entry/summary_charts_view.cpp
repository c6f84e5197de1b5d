#include "gui/entry/summary_charts_view.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCursor>
#include <QEvent>
#include <QHorizontalBarSeries>
#include <QHorizontalStackedBarSeries>
#include <QPieSeries>
#include <QPieSlice>
#include <QSet>
#include <QToolTip>
#include <QValueAxis>
#include <algorithm>

#include "gui/app_state.h"
#include "gui/colours.h"
#include "views/period_totals.h"
#include "views/summary_charts.h"

namespace qb {
namespace {

struct ChartTab {
    const char* name;  // of the chart, for chart()
    const char* tab;
    const char* title;
};
constexpr ChartTab kCharts[] = {
    {"projects", "&Projects", "Hours per project"},
    {"clients", "C&lients", "Hours per client"},
    {"days", "&Days", "Hours per day"},
    {"billable", "&Billable", "Billable and non-billable hours"},
    {"amounts", "&Amounts", "Amounts per currency"},
};
// Long names are cut so that the bars keep most of the width.
constexpr int kLabelChars = 32;
// Value labels above a day's bar fit up to a fortnight.
constexpr std::size_t kLabelledDays = 14;
// Up to 9,999.99 hours without an exponent.
constexpr int kHourDigits = 7;

double hoursOf(std::uint64_t hundredths) {
    return static_cast<double>(hundredths) / 100.0;
}

QChartView* addChartTab(QTabWidget* tabs, const char* name, const QString& tab) {
    auto* chart = new QChart;
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setBackgroundRoundness(0);
    auto* view = new QChartView(chart, tabs);
    view->setObjectName(QString::fromLatin1(name) + QStringLiteral("Chart"));
    view->setRenderHint(QPainter::Antialiasing);
    tabs->addTab(view, tab);
    return view;
}

void clearChart(QChart* chart) {
    chart->removeAllSeries();
    for (QAbstractAxis* axis : chart->axes()) {
        chart->removeAxis(axis);
        delete axis;
    }
}

// Category axes drop a repeated name, which would shift every bar after
// it: a name cut short (or a day repeated in a long period) gets a number.
QStringList categoryNames(const std::vector<ChartBar>& bars) {
    QStringList names;
    QSet<QString> seen;
    for (const ChartBar& bar : bars) {
        QString name = bar.label.empty() ? QStringLiteral("(none)") : toQt(bar.label);
        if (name.size() > kLabelChars) name = name.left(kLabelChars - 1) + QChar(0x2026);
        const QString base = name;
        for (int n = 2; seen.contains(name); ++n) name = QStringLiteral("%1 (%2)").arg(base).arg(n);
        seen.insert(name);
        names << name;
    }
    return names;
}

QValueAxis* valueAxis(double max, const QString& title) {
    auto* axis = new QValueAxis;
    // Room past the longest bar for its label.
    axis->setRange(0, max > 0 ? max * 1.12 : 1);
    axis->applyNiceNumbers();
    axis->setLabelFormat(QStringLiteral("%g"));
    axis->setTitleText(title);
    return axis;
}

// Hours as bars, the largest first (on top when the bars lie down). The
// bar of the rest, when the last is one, is drawn apart (as selected) so
// that it does not read as one more name.
void showHours(QChart* chart, const std::vector<ChartBar>& bars, bool lying, bool labels,
               bool restLast = false) {
    clearChart(chart);
    QStringList names = categoryNames(bars);
    auto* set = new QBarSet(QStringLiteral("Hours"));
    double max = 0;
    for (const ChartBar& bar : bars) {
        *set << hoursOf(bar.hours);
        max = std::max(max, hoursOf(bar.hours));
    }
    QAbstractBarSeries* series = nullptr;
    if (lying) {
        // A lying chart draws its first category at the bottom.
        std::reverse(names.begin(), names.end());
        QList<qreal> values;
        for (int i = set->count() - 1; i >= 0; --i) values << set->at(i);
        set->remove(0, set->count());
        set->append(values);
        series = new QHorizontalBarSeries;
    } else {
        series = new QBarSeries;
    }
    series->append(set);
    if (restLast && set->count() > 0) set->selectBar(lying ? 0 : set->count() - 1);
    series->setLabelsVisible(labels);
    series->setLabelsPosition(QAbstractBarSeries::LabelsOutsideEnd);
    series->setLabelsFormat(QStringLiteral("@value"));
    series->setLabelsPrecision(kHourDigits);
    chart->addSeries(series);
    auto* categories = new QBarCategoryAxis;
    categories->append(names);
    QValueAxis* values = valueAxis(max, QStringLiteral("Hours"));
    chart->addAxis(categories, lying ? Qt::AlignLeft : Qt::AlignBottom);
    chart->addAxis(values, lying ? Qt::AlignBottom : Qt::AlignLeft);
    series->attachAxis(categories);
    series->attachAxis(values);
    chart->legend()->hide();
    QObject::connect(set, &QBarSet::hovered, chart, [set, names](bool on, int index) {
        if (!on || index < 0 || index >= names.size()) {
            QToolTip::hideText();
            return;
        }
        const auto hundredths = static_cast<std::uint64_t>(set->at(index) * 100 + 0.5);
        QToolTip::showText(
            QCursor::pos(),
            QStringLiteral("%1: %2 h").arg(names[index], toQt(hoursText(hundredths))));
    });
}

void showBillable(QChart* chart, const SummaryCharts& charts) {
    clearChart(chart);
    auto* series = new QPieSeries;
    series->setPieSize(0.62);
    const std::uint64_t total = charts.billableHours + charts.nonBillableHours;
    auto addSlice = [&](const QString& name, std::uint64_t hours) {
        if (hours == 0) return;
        QPieSlice* slice = series->append(name, hoursOf(hours));
        slice->setLabel(
            QStringLiteral("%1\n%2 h (%3%)")
                .arg(name, toQt(hoursText(hours)))
                .arg(100.0 * static_cast<double>(hours) / static_cast<double>(total), 0, 'f', 1));
        slice->setLabelVisible(true);
    };
    addSlice(QStringLiteral("Billable"), charts.billableHours);
    addSlice(QStringLiteral("Non-billable"), charts.nonBillableHours);
    chart->addSeries(series);
    chart->legend()->hide();
}

// One bar per currency, paid and unpaid stacked; amounts of different
// currencies stand side by side and are never added.
void showAmounts(QChart* chart, const SummaryCharts& charts) {
    clearChart(chart);
    auto* paid = new QBarSet(QStringLiteral("Paid"));
    auto* unpaid = new QBarSet(QStringLiteral("Unpaid"));
    std::vector<ChartBar> labels;
    double max = 0;
    // The first currency on top.
    for (auto it = charts.amounts.rbegin(); it != charts.amounts.rend(); ++it) {
        *paid << it->total - it->unpaid;
        *unpaid << it->unpaid;
        labels.push_back({amountText(currencyLabel(it->currency), it->total), 0});
        max = std::max(max, it->total);
    }
    auto* series = new QHorizontalStackedBarSeries;
    series->append(paid);
    series->append(unpaid);
    chart->addSeries(series);
    auto* categories = new QBarCategoryAxis;
    categories->append(categoryNames(labels));
    QValueAxis* values = valueAxis(max, QStringLiteral("Amount"));
    chart->addAxis(categories, Qt::AlignLeft);
    chart->addAxis(values, Qt::AlignBottom);
    series->attachAxis(categories);
    series->attachAxis(values);
    chart->legend()->setVisible(true);
    chart->legend()->setAlignment(Qt::AlignBottom);
    const std::vector<CurrencyAmount> amounts(charts.amounts.rbegin(), charts.amounts.rend());
    for (QBarSet* set : {paid, unpaid}) {
        const bool isPaid = set == paid;
        QObject::connect(set, &QBarSet::hovered, chart, [amounts, isPaid](bool on, int index) {
            if (!on || index < 0 || index >= static_cast<int>(amounts.size())) {
                QToolTip::hideText();
                return;
            }
            const CurrencyAmount& a = amounts[static_cast<std::size_t>(index)];
            QToolTip::showText(
                QCursor::pos(),
                QStringLiteral("%1 %2").arg(
                    isPaid ? QStringLiteral("Paid") : QStringLiteral("Unpaid"),
                    toQt(amountText(a.currency, isPaid ? a.total - a.unpaid : a.unpaid))));
        });
    }
}

}  // namespace

SummaryChartsView::SummaryChartsView(QWidget* parent) : QTabWidget(parent) {
    setObjectName(QStringLiteral("summaryCharts"));
    for (const ChartTab& tab : kCharts) {
        addChartTab(this, tab.name, QString::fromLatin1(tab.tab))
            ->chart()
            ->setTitle(QString::fromLatin1(tab.title));
    }
    applyTheme();
}

QChart* SummaryChartsView::chart(const char* name) const {
    auto* view = findChild<QChartView*>(QString::fromLatin1(name) + QStringLiteral("Chart"));
    return view ? view->chart() : nullptr;
}

void SummaryChartsView::showCharts(const SummaryCharts& charts) {
    showHours(chart("projects"), topBars(charts.projects, kMaxBars), true, true,
              charts.projects.size() > kMaxBars);
    showHours(chart("clients"), topBars(charts.clients, kMaxBars), true, true,
              charts.clients.size() > kMaxBars);
    showHours(chart("days"), charts.days, false, charts.days.size() <= kLabelledDays);
    showBillable(chart("billable"), charts);
    showAmounts(chart("amounts"), charts);
    // A theme colours the series it finds, so it comes after them.
    applyTheme();
}

void SummaryChartsView::changeEvent(QEvent* event) {
    QTabWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) applyTheme();
}

// The charts follow the desktop's light or dark palette.
void SummaryChartsView::applyTheme() {
    const QChart::ChartTheme theme =
        isDarkPalette(palette()) ? QChart::ChartThemeDark : QChart::ChartThemeLight;
    for (const ChartTab& tab : kCharts) {
        QChart* c = chart(tab.name);
        c->setTheme(theme);
        c->setBackgroundRoundness(0);
        c->setBackgroundBrush(palette().base());
        c->setTitleBrush(palette().text());
        // The themes draw value labels for inside the bars; ours stand
        // beside them, on the window's own base.
        for (QAbstractSeries* series : c->series()) {
            if (auto* bars = qobject_cast<QAbstractBarSeries*>(series)) {
                for (QBarSet* set : bars->barSets()) {
                    set->setLabelColor(palette().color(QPalette::Text));
                    set->setSelectedColor(palette().color(QPalette::Disabled, QPalette::Text));
                }
            } else if (auto* pie = qobject_cast<QPieSeries*>(series)) {
                for (QPieSlice* slice : pie->slices()) {
                    slice->setLabelColor(palette().color(QPalette::Text));
                }
            }
        }
    }
}

}  // namespace qb
