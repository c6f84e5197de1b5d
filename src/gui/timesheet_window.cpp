#include "gui/timesheet_window.h"

#include <QCursor>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QTableWidget>
#include <QVBoxLayout>

#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/entry_list_widget.h"
#include "gui/main_window.h"
#include "platform/calendar.h"
#include "store/time_entry.h"
#include "views/date_texts.h"
#include "views/entry_rows.h"
#include "views/period_totals.h"

namespace qb {
namespace {

// Client, project and task come before the days; the total after them.
constexpr int kFirstDay = 3;

QTableWidgetItem* cell(const QString& text, bool number, bool bold = false) {
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    if (number) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    if (bold) {
        QFont f = item->font();
        f.setWeight(QFont::DemiBold);
        item->setFont(f);
    }
    return item;
}

}  // namespace

TimesheetWindow::TimesheetWindow(MainWindow& window, AppState& state)
    : QWidget(&window, Qt::Window), window_(window), state_(state) {
    setObjectName(QStringLiteral("timesheet"));
    setWindowTitle(QStringLiteral("Timesheet - Quillarbor"));
    auto* column = new QVBoxLayout(this);
    title_ = new QLabel(this);
    QFont big = title_->font();
    big.setPointSizeF(big.pointSizeF() * 1.2);
    big.setWeight(QFont::DemiBold);
    title_->setFont(big);
    table_ = new QTableWidget(this);
    table_->setAlternatingRowColors(true);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->verticalHeader()->setVisible(false);
    table_->horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
    column->addWidget(title_);
    column->addWidget(table_, 1);
    connect(table_, &QTableWidget::cellDoubleClicked, this, &TimesheetWindow::openCell);
    connect(table_, &QTableWidget::cellActivated, this, &TimesheetWindow::openCell);
    connect(&window_, &MainWindow::refreshed, this, [this] {
        if (isVisible()) rebuild();
    });
    resize(1100, 520);
}

void TimesheetWindow::rebuild() {
    SYSTEMTIME first{};
    SYSTEMTIME last{};
    window_.periodView().getPeriod(&first, &last);
    // The period's end is its last day for every view but the month, whose
    // end may be the first of the next month at midnight.
    FILETIME lo = 0;
    FILETIME hi = 0;
    window_.periodView().bounds(&lo, &hi);
    fileTimeToSystemTime(lo, &first);
    fileTimeToSystemTime(hi, &last);
    sheet_ = buildTimesheet(window_.shownRows(), first, last);
    title_->setText(toQt(window_.periodView().label(state_.locale())));

    const int days = static_cast<int>(sheet_.days.size());
    table_->setUpdatesEnabled(false);
    table_->clear();
    table_->setColumnCount(kFirstDay + days + 1);
    table_->setRowCount(static_cast<int>(sheet_.rows.size()) + 1);
    QStringList titles = {QStringLiteral("Client"), QStringLiteral("Project"),
                          QStringLiteral("Task")};
    for (const SYSTEMTIME& d : sheet_.days) titles << toQt(timesheetDayTitle(d));
    titles << QStringLiteral("Total");
    table_->setHorizontalHeaderLabels(titles);
    int r = 0;
    for (const TimesheetRow& row : sheet_.rows) {
        table_->setItem(r, 0, cell(toQt(row.client), false));
        table_->setItem(r, 1, cell(toQt(row.project), false));
        table_->setItem(r, 2, cell(toQt(row.task), false));
        for (int d = 0; d < days; ++d) {
            table_->setItem(
                r, kFirstDay + d,
                cell(toQt(timesheetCellText(row.hours[static_cast<std::size_t>(d)])), true));
        }
        table_->setItem(r, kFirstDay + days, cell(toQt(hoursText(row.total)), true, true));
        ++r;
    }
    table_->setItem(r, 0, cell(QStringLiteral("Total"), false, true));
    for (int d = 0; d < days; ++d) {
        table_->setItem(r, kFirstDay + d,
                        cell(toQt(timesheetCellText(sheet_.dayTotals[static_cast<std::size_t>(d)])),
                             true, true));
    }
    table_->setItem(r, kFirstDay + days, cell(toQt(hoursText(sheet_.total)), true, true));
    table_->resizeColumnsToContents();
    table_->setUpdatesEnabled(true);
}

std::vector<CEOID> TimesheetWindow::cellEntries(int row, int column) const {
    int day = column - kFirstDay;
    if (row < 0 || row >= static_cast<int>(sheet_.rows.size()) || day < 0 ||
        day >= static_cast<int>(sheet_.days.size())) {
        return {};
    }
    return sheet_.rows[static_cast<std::size_t>(row)].ids[static_cast<std::size_t>(day)];
}

void TimesheetWindow::openCell(int row, int column) {
    std::vector<CEOID> ids = cellEntries(row, column);
    auto open = [this](CEOID id) {
        window_.entryList().select(id);
        window_.runCommand(kCmdEdit);
    };
    if (ids.size() == 1) {
        open(ids.front());
        return;
    }
    if (ids.empty()) return;
    QMenu menu(this);
    ListDisplay display = listDisplayOf(state_.settings());
    for (CEOID id : ids) {
        TimeEntry e;
        if (!state_.entries().seekOid(id) || readEntry(state_.entries(), e) != 0) continue;
        std::vector<std::u16string> lines =
            defaultRowLines(e, window_.periodView().kind(), display, state_.locale());
        QString text = lines.empty() ? QString() : toQt(lines[0]);
        if (lines.size() > 1) text += QStringLiteral("  ") + toQt(lines[1]);
        menu.addAction(text, this, [open, id] { open(id); });
    }
    menu.exec(QCursor::pos());
}

void installTimesheet(MainWindow& window, AppState& state) {
    auto* sheet = new TimesheetWindow(window, state);
    window.setHandler(kCmdTimesheet, [sheet] {
        sheet->rebuild();
        sheet->show();
        sheet->raise();
        sheet->activateWindow();
    });
}

}  // namespace qb
