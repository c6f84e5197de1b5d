#pragma once

#include <QWidget>
#include <vector>

#include "platform/win_types.h"
#include "views/entry_rows.h"

class QAbstractItemView;
class QListWidget;
class QTreeWidget;
class QStackedLayout;
class QLabel;

namespace qb {

class AppState;
struct TimeEntry;

// The entry list in one of its three styles. Rows carry their entry's record
// id; everything they show comes from the core's row texts.
class EntryListWidget : public QWidget {
    Q_OBJECT
  public:
    EntryListWidget(AppState& state, QWidget* parent = nullptr);
    ~EntryListWidget() override;

    // Re-creates the control for the style (the simple style's columns are
    // saved and restored through the settings registry).
    void setListStyle(ListStyle style);
    ListStyle listStyle() const { return style_; }
    // Shows the rows; the default and simple styles in the given order, the
    // tree by date. Keeps the selected entry selected when it is still there.
    void setRows(const std::vector<TimeEntry>& rows, ViewKind view);
    // The list font from the settings.
    void applyFont();
    // Marks the simple style's column that the rows are arranged by.
    void setArrangeKey(std::uint16_t key);

    bool hasSelection() const { return selectedId() != 0; }
    CEOID selectedId() const;
    void select(CEOID id);
    // The record ids of every row, in row order.
    std::vector<CEOID> collectIds() const;
    QAbstractItemView* view() const;

  signals:
    // Double-click or Enter on an entry.
    void entryActivated(CEOID id);
    // A right-click (or the menu key) on an entry, at a screen position.
    void contextMenuRequested(CEOID id, const QPoint& globalPos);
    // Another entry (or none) became the selected one.
    void selectionChanged();
    // A click on a simple-style column header that has an "Arrange By" key.
    void arrangeRequested(std::uint16_t key);

  private:
    void saveColumns();
    void restoreColumns();
    void wire(QAbstractItemView* view);

    AppState& state_;
    ListStyle style_ = kDefaultStyle;
    QStackedLayout* stack_;
    QListWidget* list_ = nullptr;
    QTreeWidget* table_ = nullptr;
    QTreeWidget* tree_ = nullptr;
    QLabel* empty_;
    std::vector<CEOID> ids_;
    std::uint16_t arrangeKey_ = 0;
};

}  // namespace qb
