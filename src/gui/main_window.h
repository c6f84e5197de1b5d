#pragma once

#include <QMainWindow>
#include <map>
#include <memory>

#include "gui/commands.h"
#include "platform/win_types.h"
#include "store/time_entry.h"
#include "views/entry_rows.h"
#include "views/period_view.h"

class QAction;
class QMenu;
class QTimer;

namespace qb {

class AppState;
class EntryListWidget;
class FileNotice;
class FilterStrip;
class PeriodHeader;
class TotalsBar;
class UndoCommands;

// The main frame: menus, tool bar, the period's header band and entry list.
// Every command arrives at runCommand with its identifier.
class MainWindow : public QMainWindow {
    Q_OBJECT
  public:
    explicit MainWindow(AppState& state, QWidget* parent = nullptr);
    ~MainWindow() override;

    void runCommand(int id);
    QAction* action(int id) const;
    // Brings the menus' checks and grey items up to date, as before a menu
    // opens.
    void updateMenuStates();

    PeriodView& periodView() { return *view_; }
    EntryListWidget& entryList() { return *list_; }
    PeriodHeader& header() { return *header_; }
    TotalsBar& totalsBar() { return *totals_; }
    FilterStrip& filterStrip() { return *filterStrip_; }
    UndoCommands& undoCommands() { return *undo_; }
    // Walks the period again and redraws the list.
    void refresh();
    // Registers the handler of a command that a later part of the window
    // brings; commands without one stay grey.
    void setHandler(int id, std::function<void()> handler);
    // Refreshes when another process (the command line) changed the store;
    // a timer calls it every second.
    void pollForChanges();
    // The entries the list shows after the last refresh, in list order.
    const std::vector<TimeEntry>& shownRows() const { return shownRows_; }
    // Says where a saved export, report, backup or archive went, with
    // "Open" and "Open Folder".
    void announceFile(const QString& what, const QString& path);
    FileNotice& fileNotice() { return *fileNotice_; }

  signals:
    // Another process (the command line) changed the store.
    void storeChanged();
    // After every refresh: the period, filter or entries may have changed.
    void refreshed();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QAction* addCommand(QMenu* menu, int id, const QString& text, bool checkable = false);
    void buildMenus();
    void dispatch(int id);
    void movePeriod(void (PeriodView::*step)());
    void buildToolBar();
    void switchView(ViewKind kind);
    void setListStyle(ListStyle style);
    void arrange(std::uint16_t key);
    void showContextMenu(CEOID id, const QPoint& pos);
    void openEntry(CEOID id);
    bool readSelected(TimeEntry* entry);
    void deleteSelected();
    void togglePaid();
    void preview();
    void chooseCustomPeriod();
    void customize();
    void options();
    void filterDialog();
    void setFilter(bool unpaidOnly);
    void updateHeader();

    AppState& state_;
    std::unique_ptr<PeriodView> view_;
    PeriodHeader* header_;
    EntryListWidget* list_;
    TotalsBar* totals_;
    FilterStrip* filterStrip_;
    FileNotice* fileNotice_;
    UndoCommands* undo_ = nullptr;
    std::vector<TimeEntry> shownRows_;
    std::map<int, QAction*> actions_;
    std::map<int, std::function<void()>> handlers_;
    QTimer* changePoll_;
    std::uint64_t changeCounter_ = 0;
};

}  // namespace qb
