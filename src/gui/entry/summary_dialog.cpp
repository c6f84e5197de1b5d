#include "gui/entry/summary_dialog.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/app_state.h"
#include "gui/entry/summary_charts_view.h"
#include "views/quick_summary.h"
#include "views/summary_charts.h"

namespace qb {
namespace {

// Shares of the columns in hundredths of the usable width, and how each
// column aligns its text.
constexpr int kColumnShares[3] = {43, 34, 23};
constexpr Qt::Alignment kColumnAlignment[3] = {Qt::AlignLeft | Qt::AlignVCenter,
                                               Qt::AlignRight | Qt::AlignVCenter,
                                               Qt::AlignRight | Qt::AlignVCenter};
// The table's least width in average characters; it takes what its rows
// need up to a share of the window, and the charts the rest.
constexpr int kTableChars = 36;
constexpr int kMostTableShare = 45;

}  // namespace

SummaryDialog::SummaryDialog(AppState& state, QWidget* parent)
    : QDialog(parent),
      state_(state),
      table_(new QTableWidget(this)),
      charts_(new SummaryChartsView(this)),
      split_(new QSplitter(Qt::Horizontal, this)) {
    setObjectName(QStringLiteral("quickSummary"));
    setWindowTitle(QStringLiteral("Quick Summary"));
    setModal(false);

    table_->setObjectName(QStringLiteral("summary"));
    table_->setColumnCount(3);
    table_->horizontalHeader()->hide();
    table_->verticalHeader()->hide();
    table_->setShowGrid(true);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionMode(QAbstractItemView::NoSelection);
    table_->setFocusPolicy(Qt::NoFocus);
    table_->setWordWrap(false);
    table_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->viewport()->installEventFilter(this);

    split_->setObjectName(QStringLiteral("summarySplit"));
    split_->setChildrenCollapsible(false);
    split_->addWidget(table_);
    split_->addWidget(charts_);
    split_->setStretchFactor(0, 0);
    split_->setStretchFactor(1, 1);
    table_->setMinimumWidth(fontMetrics().averageCharWidth() * kTableChars);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(split_, 1);
    layout->addWidget(buttons);
}

void SummaryDialog::showPeriod(const SummaryPeriod& period) {
    const std::vector<SummaryRow> rows =
        quickSummary(state_.entries(), period.ids, period.kind, period.start, period.end,
                     state_.settings(), state_.locale());
    table_->clearContents();
    table_->setRowCount(static_cast<int>(rows.size()));
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
    table_->scrollToTop();
    charts_->showCharts(summaryCharts(state_.entries(), period.ids, period.firstDay, period.lastDay,
                                      state_.settings()));
}

void SummaryDialog::placeBeside(const QWidget& main) {
    const QScreen* screen = main.screen();
    if (!screen) return;
    const QRect room = screen->availableGeometry();
    // Most of a laptop's screen; on a wide one, enough for both panes.
    const int width = room.width() * (room.width() >= 1600 ? 70 : 80) / 100;
    const int height = room.height() * 80 / 100;
    resize(width, height);
    const QRect frame = main.frameGeometry();
    int x = frame.right() + 1;
    if (x + width > room.right()) x = room.right() - width;
    const int y = std::clamp(frame.top(), room.top(), std::max(room.top(), room.bottom() - height));
    move(std::max(room.left(), x), y);
    const int tableWidth = std::min(widthForRows(), width * kMostTableShare / 100);
    split_->setSizes({tableWidth, width - tableWidth});
}

// Each column's longest text within its share of the table.
int SummaryDialog::widthForRows() const {
    const QFontMetrics metrics(table_->font());
    const int padding = 2 * metrics.averageCharWidth();
    int width = 0;
    for (int c = 0; c < 3; ++c) {
        int longest = 0;
        for (int r = 0; r < table_->rowCount(); ++r) {
            if (const QTableWidgetItem* cell = table_->item(r, c)) {
                longest = std::max(longest, metrics.horizontalAdvance(cell->text()));
            }
        }
        width = std::max(width, (longest + padding) * 100 / kColumnShares[c]);
    }
    return width + 2 * table_->frameWidth() + table_->verticalScrollBar()->sizeHint().width();
}

void SummaryDialog::fitColumns() {
    const int width = table_->viewport()->width();
    for (int c = 0; c < 3; ++c) table_->setColumnWidth(c, width * kColumnShares[c] / 100);
}

bool SummaryDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == table_->viewport() && event->type() == QEvent::Resize) fitColumns();
    return QDialog::eventFilter(watched, event);
}

}  // namespace qb
