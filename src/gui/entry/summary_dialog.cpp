#include "gui/entry/summary_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/app_state.h"
#include "views/quick_summary.h"

namespace qb {
namespace {

// Shares of the columns in hundredths of the usable width, and how each
// column aligns its text.
constexpr int kColumnShares[3] = {43, 34, 23};
constexpr Qt::Alignment kColumnAlignment[3] = {Qt::AlignLeft | Qt::AlignVCenter,
                                               Qt::AlignRight | Qt::AlignVCenter,
                                               Qt::AlignRight | Qt::AlignVCenter};

}  // namespace

SummaryDialog::SummaryDialog(AppState& state, const std::vector<CEOID>& ids, ViewKind kind,
                             const SYSTEMTIME& start, const SYSTEMTIME& end, QWidget* parent)
    : QDialog(parent), table_(new QTableWidget(this)) {
    setWindowTitle(QStringLiteral("Quick Summary"));
    const std::vector<SummaryRow> rows =
        quickSummary(state.entries(), ids, kind, start, end, state.settings(), state.locale());

    table_->setObjectName(QStringLiteral("summary"));
    table_->setColumnCount(3);
    table_->setRowCount(static_cast<int>(rows.size()));
    table_->horizontalHeader()->hide();
    table_->verticalHeader()->hide();
    table_->setShowGrid(true);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionMode(QAbstractItemView::NoSelection);
    table_->setFocusPolicy(Qt::NoFocus);
    table_->setWordWrap(false);
    table_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    const QColor undefined = palette().color(QPalette::Disabled, QPalette::Text);
    for (int r = 0; r < table_->rowCount(); ++r) {
        for (int c = 0; c < 3; ++c) {
            const std::u16string& text =
                rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
            auto* cell = new QTableWidgetItem(toQt(text));
            cell->setTextAlignment(kColumnAlignment[c]);
            // Nothing to divide by: say so quietly rather than as a number.
            if (text == kUndefinedShare) cell->setForeground(undefined);
            table_->setItem(r, c, cell);
        }
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_, 1);
    layout->addWidget(buttons);
    // Tall enough for every row up to a screenful, then the list scrolls.
    table_->resizeRowsToContents();
    const int rowsHeight = table_->verticalHeader()->length() + 2 * table_->frameWidth();
    const int chrome = buttons->sizeHint().height() + layout->spacing() +
                       layout->contentsMargins().top() + layout->contentsMargins().bottom();
    resize(fontMetrics().averageCharWidth() * 60,
           std::min(rowsHeight + chrome, fontMetrics().height() * 40));
}

void SummaryDialog::fitColumns() {
    const int width = table_->viewport()->width();
    for (int c = 0; c < 3; ++c) table_->setColumnWidth(c, width * kColumnShares[c] / 100);
}

void SummaryDialog::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    fitColumns();
}

void SummaryDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    fitColumns();
}

}  // namespace qb
