#include "gui/main_window.h"

#include <QAbstractItemView>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/frame_texts.h"
#include "gui/app_state.h"
#include "gui/clients/client_setup_window.h"
#include "gui/dialogs/about_box.h"
#include "gui/dialogs/custom_period_dialog.h"
#include "gui/dialogs/customize_dialog.h"
#include "gui/dialogs/filter_dialog.h"
#include "gui/dialogs/options_dialog.h"
#include "gui/dialogs/preview_window.h"
#include "gui/dialogs/rate_setup_window.h"
#include "gui/entry/entry_work.h"
#include "gui/entry/timer_options.h"
#include "gui/entry_list_widget.h"
#include "gui/file_notice.h"
#include "gui/filter_strip.h"
#include "gui/help.h"
#include "gui/icons.h"
#include "gui/message_box.h"
#include "gui/mnemonics.h"
#include "gui/period_header.h"
#include "gui/reports/report_commands.h"
#include "gui/timesheet_window.h"
#include "gui/tools/tools.h"
#include "gui/tools/tracker_import.h"
#include "gui/totals_bar.h"
#include "gui/undo_commands.h"
#include "gui/window_memory.h"
#include "store/time_entry.h"
#include "views/calendar_helpers.h"
#include "views/period_rows.h"
#include "views/period_totals.h"

namespace qb {
namespace {

const char* const kArrangeTexts[] = {"(Default Order)", "Client",   "Project",  "Phase",   "Task",
                                     "Bill To",         "Custom 1", "Custom 2", "Custom 3"};

}  // namespace

MainWindow::MainWindow(AppState& state, QWidget* parent) : QMainWindow(parent), state_(state) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    setWindowIcon(applicationIcon());
    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    header_ = new PeriodHeader(central);
    list_ = new EntryListWidget(state_, central);
    filterStrip_ = new FilterStrip(central);
    fileNotice_ = new FileNotice(central);
    totals_ = new TotalsBar(central);
    column->addWidget(header_);
    column->addWidget(fileNotice_);
    column->addWidget(filterStrip_);
    column->addWidget(list_, 1);
    column->addWidget(totals_);
    setCentralWidget(central);

    buildMenus();
    buildToolBar();

    connect(header_, &PeriodHeader::previousRequested, this,
            [this] { movePeriod(&PeriodView::previous); });
    connect(header_, &PeriodHeader::nextRequested, this, [this] { movePeriod(&PeriodView::next); });
    connect(header_, &PeriodHeader::todayRequested, this,
            [this] { movePeriod(&PeriodView::today); });
    connect(filterStrip_, &FilterStrip::showAllRequested, this,
            [this] { runCommand(kCmdShowAll); });
    connect(filterStrip_, &FilterStrip::editRequested, this,
            [this] { runCommand(kCmdFilterCustom); });
    connect(header_, &PeriodHeader::dateSelected, this, [this](const SYSTEMTIME& d) {
        view_->selectDate(d);
        refresh();
    });
    connect(list_, &EntryListWidget::entryActivated, this, &MainWindow::openEntry);
    // The entry commands' shortcuts work on the selection, so their grey
    // states follow it rather than waiting for a menu to open.
    connect(list_, &EntryListWidget::selectionChanged, this, &MainWindow::updateMenuStates);
    connect(list_, &EntryListWidget::arrangeRequested, this,
            [this](std::uint16_t key) { runCommand(kCmdArrangeDefault + key); });
    connect(list_, &EntryListWidget::contextMenuRequested, this, &MainWindow::showContextMenu);

    Settings& s = state_.settings();
    list_->setListStyle(s.listStyle <= kTreeStyle ? static_cast<ListStyle>(s.listStyle)
                                                  : kDefaultStyle);
    ViewKind kind =
        s.view >= kDayView && s.view <= kCustomView ? static_cast<ViewKind>(s.view) : kWeekView;
    switchView(kind);

    changeCounter_ = state_.platform().file().externalChangeCounter();
    changePoll_ = new QTimer(this);
    connect(changePoll_, &QTimer::timeout, this, &MainWindow::pollForChanges);
    changePoll_->start(1000);
    installEntryWork(*this, state_);
    installClientSetup(*this, state_);
    installReports(*this, state_);
    installTools(*this, state_);
    installTrackerImport(*this, state_);
    undo_ = installUndo(*this, state_);
    installTimesheet(*this, state_);
    undo_->updateActions();
    updateMenuStates();
    restoreWindow(*this, state_.registry());
    useRegistryForFolders(&state_.registry());
}

MainWindow::~MainWindow() {
    useRegistryForFolders(nullptr);
}

void MainWindow::announceFile(const QString& what, const QString& path) {
    fileNotice_->announce(what, path);
}

QAction* MainWindow::addCommand(QMenu* menu, int id, const QString& text, bool checkable) {
    auto* a = new QAction(text, this);
    a->setData(id);
    a->setCheckable(checkable);
    connect(a, &QAction::triggered, this, [this, id] { runCommand(id); });
    if (menu) menu->addAction(a);
    actions_[id] = a;
    return a;
}

QAction* MainWindow::action(int id) const {
    auto it = actions_.find(id);
    return it == actions_.end() ? nullptr : it->second;
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    addCommand(file, kCmdNew, QStringLiteral("New"))->setShortcut(QKeySequence::New);
    file->addSeparator();
    addCommand(file, kCmdImport, tr("Import..."))->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_I));
    file->addSeparator();
    addCommand(file, kCmdQuit, tr("Quit"))->setShortcut(QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    addCommand(edit, kCmdUndo, tr("&Undo"))->setShortcut(QKeySequence::Undo);
    addCommand(edit, kCmdRedo, tr("&Redo"))
        ->setShortcuts(
            {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});

    QMenu* entry = menuBar()->addMenu(tr("E&ntry"));
    addCommand(entry, kCmdPreview, QStringLiteral("Preview..."));
    addCommand(entry, kCmdEdit, QStringLiteral("Edit..."))->setShortcut(Qt::Key_Return);
    addCommand(entry, kCmdCopy, QStringLiteral("Copy..."))
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
    addCommand(entry, kCmdExportNote, QStringLiteral("Export Note..."));
    entry->addSeparator();
    addCommand(entry, kCmdMarkAsPaid, QStringLiteral("Mark As Paid"), true)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
    entry->addSeparator();
    addCommand(entry, kCmdDelete, QStringLiteral("Delete"))->setShortcut(QKeySequence::Delete);
    action(kCmdEdit)->setShortcutContext(Qt::WidgetWithChildrenShortcut);

    QMenu* view = menuBar()->addMenu(tr("&View"));
    auto* kinds = new QActionGroup(this);
    const std::pair<int, const char*> kViews[] = {{kCmdDay, "Day"},
                                                  {kCmdWeek, "Week"},
                                                  {kCmdMonth, "Month"},
                                                  {kCmdCustomPeriod, "Custom Period..."}};
    int digit = 0;
    for (auto [id, text] : kViews) {
        QAction* a = addCommand(view, id, QString::fromLatin1(text), true);
        a->setShortcut(QKeySequence(Qt::CTRL | (Qt::Key_1 + digit++)));
        kinds->addAction(a);
    }
    addCommand(view, kCmdTimesheet, tr("Timesheet"))
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_5));
    view->addSeparator();
    addCommand(view, kCmdPreviousPeriod, tr("Previous Period"))
        ->setShortcuts(
            {QKeySequence(Qt::ALT | Qt::Key_Left), QKeySequence(Qt::CTRL | Qt::Key_PageUp)});
    addCommand(view, kCmdNextPeriod, tr("Next Period"))
        ->setShortcuts(
            {QKeySequence(Qt::ALT | Qt::Key_Right), QKeySequence(Qt::CTRL | Qt::Key_PageDown)});
    addCommand(view, kCmdToday, tr("Today"))->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
    view->addSeparator();
    auto* styles = new QActionGroup(this);
    styles->addAction(
        addCommand(view, kCmdDefaultStyle, QStringLiteral("Default List Style"), true));
    styles->addAction(addCommand(view, kCmdSimpleStyle, QStringLiteral("Simple List Style"), true));
    styles->addAction(addCommand(view, kCmdTreeStyle, QStringLiteral("Tree List Style"), true));
    view->addSeparator();
    addCommand(view, kCmdCustomize, QStringLiteral("Customize..."));
    QMenu* filter = view->addMenu(QStringLiteral("Filter"));
    auto* filters = new QActionGroup(this);
    filters->addAction(addCommand(filter, kCmdShowAll, QStringLiteral("Show All"), true));
    filters->addAction(
        addCommand(filter, kCmdShowUnpaid, QStringLiteral("Show Unpaid Only"), true));
    filters->addAction(addCommand(filter, kCmdFilterCustom, QStringLiteral("Custom..."), true));
    QMenu* arrangeMenu = view->addMenu(QStringLiteral("Arrange By"));
    arrangeMenu->setObjectName(QStringLiteral("arrangeMenu"));
    auto* keys = new QActionGroup(this);
    for (int key = 0; key < kArrangeKeys; ++key) {
        keys->addAction(addCommand(arrangeMenu, kCmdArrangeDefault + key,
                                   QString::fromLatin1(kArrangeTexts[key]), true));
    }

    QMenu* tools = menuBar()->addMenu(tr("&Tools"));
    addCommand(tools, kCmdMarkPaidEntries, QStringLiteral("Mark Paid Entries..."));
    addCommand(tools, kCmdReport, QStringLiteral("Report..."))
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
    addCommand(tools, kCmdReportDesigner, QStringLiteral("Report Designer..."));
    QMenu* exportMenu = tools->addMenu(QStringLiteral("Export"));
    addCommand(exportMenu, kCmdExportCsv, QStringLiteral("CSV..."));
    addCommand(exportMenu, kCmdExportXml, QStringLiteral("XML..."));
    addCommand(exportMenu, kCmdExportIcal, tr("iCalendar..."));
    QMenu* backup = tools->addMenu(QStringLiteral("Backup"));
    addCommand(backup, kCmdBackupCreate, QStringLiteral("Create..."));
    addCommand(backup, kCmdBackupRestore, QStringLiteral("Restore..."));
    QMenu* archive = tools->addMenu(QStringLiteral("Archive"));
    addCommand(archive, kCmdArchiveCreate, QStringLiteral("Create..."));
    addCommand(archive, kCmdArchiveLoad, QStringLiteral("Load..."));
    tools->addSeparator();
    addCommand(tools, kCmdClientSetup, QStringLiteral("Client Setup..."));
    addCommand(tools, kCmdRateSetup, QStringLiteral("Rate Setup..."));
    addCommand(tools, kCmdEditDropLists, QStringLiteral("Edit Drop Lists..."));
    addCommand(tools, kCmdReplaceFieldText, QStringLiteral("Replace Field Text..."));
    tools->addSeparator();
    addCommand(tools, kCmdOptions, QStringLiteral("Options..."));

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    addCommand(help, kCmdHelp, tr("Quillarbor Help"))->setShortcut(QKeySequence::HelpContents);
    addCommand(help, kCmdAbout, QStringLiteral("About..."));

    for (QMenu* m :
         {file, edit, entry, view, filter, arrangeMenu, tools, exportMenu, backup, archive, help}) {
        connect(m, &QMenu::aboutToShow, this, &MainWindow::updateMenuStates);
        giveMnemonics(m);
    }
}

void MainWindow::buildToolBar() {
    QToolBar* bar = addToolBar(tr("Tools"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QAction* timers = addCommand(nullptr, kCmdEntryTimers, QStringLiteral("Entry Timers"));
    timers->setIcon(timersIcon(false));
    QAction* summary = addCommand(nullptr, kCmdQuickSummary, QStringLiteral("Quick Summary"));
    summary->setIcon(summaryIcon());
    bar->addAction(timers);
    bar->addAction(summary);
}

void MainWindow::setHandler(int id, std::function<void()> handler) {
    handlers_[id] = std::move(handler);
    updateMenuStates();
}

void MainWindow::updateMenuStates() {
    const Settings& s = state_.settings();
    for (auto& [id, a] : actions_) {
        bool built = handlers_.count(id) > 0;
        switch (id) {
            case kCmdNew:
            case kCmdEdit:
            case kCmdCopy:
            case kCmdExportNote:
            case kCmdMarkPaidEntries:
            case kCmdReport:
            case kCmdExportCsv:
            case kCmdExportXml:
            case kCmdExportIcal:
            case kCmdImport:
            case kCmdBackupCreate:
            case kCmdBackupRestore:
            case kCmdArchiveCreate:
            case kCmdArchiveLoad:
            case kCmdClientSetup:
            case kCmdEditDropLists:
            case kCmdReplaceFieldText:
            case kCmdEntryTimers:
            case kCmdQuickSummary:
                a->setEnabled(built);
                break;
            default:
                break;
        }
    }
    action(kCmdDay + static_cast<int>(view_ ? view_->kind() : kWeekView) - 1)->setChecked(true);
    action(kCmdDefaultStyle + static_cast<int>(list_->listStyle()))->setChecked(true);
    action(kCmdCustomize)->setEnabled(list_->listStyle() == kDefaultStyle);
    if (QMenu* arrangeMenu = findChild<QMenu*>(QStringLiteral("arrangeMenu"))) {
        arrangeMenu->setEnabled(list_->listStyle() != kTreeStyle);
    }
    if (s.sort < kArrangeKeys) action(kCmdArrangeDefault + s.sort)->setChecked(true);
    action(kCmdArrangeDefault + 6)->setText(toQt(s.custom1Caption));
    action(kCmdArrangeDefault + 7)->setText(toQt(s.custom2Caption));
    action(kCmdArrangeDefault + 8)->setText(toQt(s.custom3Caption));
    if (QMenu* arrangeMenu = findChild<QMenu*>(QStringLiteral("arrangeMenu"))) {
        giveMnemonics(arrangeMenu);
    }
    list_->setArrangeKey(s.sort);
    action(kCmdShowAll + filterChoice(state_.filter()))->setChecked(true);
    // The entry commands work on the selected entry.
    TimeEntry selected;
    bool has = readSelected(&selected);
    for (int id : {kCmdPreview, kCmdDelete}) action(id)->setEnabled(has);
    for (int id : {kCmdEdit, kCmdCopy, kCmdExportNote}) {
        action(id)->setEnabled(has && handlers_.count(id) > 0);
    }
    action(kCmdMarkAsPaid)->setEnabled(has && selected.billable);
    action(kCmdMarkAsPaid)->setChecked(has && selected.paid);
}

void MainWindow::runCommand(int id) {
    if (undo_ && UndoCommands::records(id)) {
        undo_->record(id, [this, id] { dispatch(id); });
        return;
    }
    dispatch(id);
}

void MainWindow::movePeriod(void (PeriodView::*step)()) {
    ((*view_).*step)();
    refresh();
    if (QAbstractItemView* v = list_->view()) v->scrollToTop();
}

void MainWindow::dispatch(int id) {
    if (auto it = handlers_.find(id); it != handlers_.end()) {
        it->second();
        return;
    }
    if (id >= kCmdArrangeDefault && id < kCmdArrangeDefault + kArrangeKeys) {
        arrange(static_cast<std::uint16_t>(id - kCmdArrangeDefault));
        updateMenuStates();
        return;
    }
    switch (id) {
        case kCmdDay:
        case kCmdWeek:
        case kCmdMonth:
            switchView(static_cast<ViewKind>(id - 42000));
            break;
        case kCmdCustomPeriod:
            chooseCustomPeriod();
            break;
        case kCmdDefaultStyle:
        case kCmdSimpleStyle:
        case kCmdTreeStyle:
            setListStyle(static_cast<ListStyle>(id - kCmdDefaultStyle));
            break;
        case kCmdCustomize:
            customize();
            break;
        case kCmdShowAll:
            setFilter(false);
            break;
        case kCmdShowUnpaid:
            setFilter(true);
            break;
        case kCmdFilterCustom:
            filterDialog();
            break;
        case kCmdRateSetup: {
            RateSetupWindow window(state_, this);
            window.exec();
            break;
        }
        case kCmdOptions:
            options();
            break;
        case kCmdAbout: {
            AboutBox about(this);
            about.exec();
            break;
        }
        case kCmdHelp:
            openHelp(this, "Main_Contents");
            break;
        case kCmdPreview:
            preview();
            break;
        case kCmdMarkAsPaid:
            togglePaid();
            break;
        case kCmdDelete:
            deleteSelected();
            break;
        case kCmdQuit:
            close();
            break;
        case kCmdPreviousPeriod:
            movePeriod(&PeriodView::previous);
            break;
        case kCmdNextPeriod:
            movePeriod(&PeriodView::next);
            break;
        case kCmdToday:
            movePeriod(&PeriodView::today);
            break;
        default:
            break;
    }
    updateMenuStates();
}

void MainWindow::switchView(ViewKind kind) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    SYSTEMTIME start = todayDate();
    SYSTEMTIME end = start;
    if (view_) view_->getPeriod(&start, &end);
    Settings& s = state_.settings();
    s.view = kind;
    if (kind == kCustomView && s.periodStart.wMonth != 0) {
        start = s.periodStart;
        end = s.periodEnd;
    }
    view_ = makePeriodView(kind, s.optionFlags & kWeekStartsMonday);
    view_->setPeriod(start, end);
    refresh();
    QApplication::restoreOverrideCursor();
}

void MainWindow::updateHeader() {
    const Settings& s = state_.settings();
    header_->setLabel(toQt(view_->label(state_.locale())));
    int week = 0;
    if (view_->kind() == kWeekView && (s.optionFlags & kShowWeekNumber)) {
        SYSTEMTIME start = view_->currentDate();
        if (!(s.optionFlags & kWeekStartsMonday)) addDays(start, 1);
        week = isoWeekNumber(start);
    }
    header_->setWeekNumber(week);
    header_->setCalendarDate(view_->currentDate(), s.optionFlags & kWeekStartsMonday,
                             s.optionFlags & kShowWeekNumber);
}

void MainWindow::refresh() {
    shownRows_ = periodEntries(state_.entries(), *view_, state_.filter());
    if (list_->listStyle() != kTreeStyle) arrangeEntries(shownRows_, state_.settings().sort);
    list_->setRows(shownRows_, view_->kind());
    totals_->setTotals(periodTotals(shownRows_, state_.settings()));
    filterStrip_->setDescription(toQt(filterDescription(state_.filter(), state_.settings())));
    updateHeader();
    emit refreshed();
}

void MainWindow::setListStyle(ListStyle style) {
    state_.settings().listStyle = style;
    list_->setListStyle(style);
    switchView(view_->kind());
}

void MainWindow::arrange(std::uint16_t key) {
    state_.settings().sort = key;
    refresh();
}

void MainWindow::chooseCustomPeriod() {
    Settings& s = state_.settings();
    SYSTEMTIME start, end;
    if (s.periodStart.wMonth != 0) {
        start = s.periodStart;
        end = s.periodEnd;
    } else {
        view_->getPeriod(&start, &end);
    }
    if (!CustomPeriodDialog::choose(this, &start, &end)) return;
    s.periodStart = start;
    s.periodEnd = end;
    switchView(kCustomView);
}

void MainWindow::customize() {
    ListDisplay display = listDisplayOf(state_.settings());
    CustomizeDialog dialog(display, this);
    if (dialog.exec() != QDialog::Accepted) return;
    storeListDisplay(display, state_.settings());
    list_->setListStyle(list_->listStyle());
    refresh();
}

void MainWindow::options() {
    OptionsDialog dialog(state_.settings(), this);
    addExportPage(dialog, state_.settings());
    addTimerPage(dialog, state_);
    if (dialog.exec() != QDialog::Accepted) return;
    state_.saveSettings();
    list_->applyFont();
    switchView(view_->kind());
}

void MainWindow::setFilter(bool unpaidOnly) {
    EntryFilter& f = state_.filter();
    f = unpaidOnly ? unpaidOnlyFilter() : EntryFilter();
    f.save(state_.registry());
    refresh();
}

void MainWindow::filterDialog() {
    FilterDialog dialog(state_, state_.filter(), this);
    if (dialog.exec() == QDialog::Accepted) state_.filter().save(state_.registry());
    refresh();
}

bool MainWindow::readSelected(TimeEntry* entry) {
    CEOID id = list_->selectedId();
    return id != 0 && state_.entries().seekOid(id) && readEntry(state_.entries(), *entry) == 0;
}

void MainWindow::openEntry(CEOID id) {
    list_->select(id);
    runCommand(state_.settings().optionFlags & kTapPreview ? kCmdPreview : kCmdEditMenu);
}

void MainWindow::showContextMenu(CEOID id, const QPoint& pos) {
    list_->select(id);
    updateMenuStates();
    QMenu menu(this);
    for (int cmd : {kCmdPreview, kCmdEdit, kCmdCopy, kCmdExportNote}) menu.addAction(action(cmd));
    menu.addSeparator();
    menu.addAction(action(kCmdMarkAsPaid));
    menu.addSeparator();
    menu.addAction(action(kCmdDelete));
    menu.exec(pos);
}

void MainWindow::deleteSelected() {
    TimeEntry entry;
    if (!readSelected(&entry)) return;
    if (!confirm(this, toQt(std::u16string(kDeleteEntryQuestion)))) return;
    state_.entries().remove(entry.recordOid);
    refresh();
}

void MainWindow::togglePaid() {
    TimeEntry entry;
    if (!readSelected(&entry) || !entry.billable) return;
    entry.paid = !entry.paid;
    if (state_.entries().seekOid(entry.recordOid)) updateEntry(state_.entries(), entry);
    refresh();
}

void MainWindow::preview() {
    TimeEntry entry;
    if (!readSelected(&entry)) return;
    PreviewWindow window(state_, entry, this);
    window.exec();
}

void MainWindow::pollForChanges() {
    std::uint64_t counter = state_.platform().file().externalChangeCounter();
    if (counter == changeCounter_) return;
    changeCounter_ = counter;
    refresh();
    emit storeChanged();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    state_.saveSettings();
    saveWindow(*this, state_.registry());
    event->accept();
}

}  // namespace qb
