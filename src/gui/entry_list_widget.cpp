#include "gui/entry_list_widget.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QStackedLayout>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <cstring>

#include "gui/app_state.h"
#include "gui/colours.h"
#include "gui/icons.h"
#include "store/time_entry.h"
#include "views/entry_tree.h"
#include "views/period_rows.h"
#include "views/period_totals.h"

namespace qb {
namespace {

constexpr int kIdRole = Qt::UserRole;
constexpr int kLinesRole = Qt::UserRole + 1;
constexpr int kStatusRole = Qt::UserRole + 2;
constexpr int kSideRole = Qt::UserRole + 3;

// The status colours of the right side, chosen for the palette's lightness
// so they stay readable on a dark one.
QColor stateColour(int status, const QPalette& pal) {
    bool dark = pal.color(QPalette::Base).lightness() < 128;
    switch (status) {
        case kPaid:
            return dark ? QColor(0x7c, 0xd9, 0x8b) : QColor(0x1e, 0x7b, 0x34);
        case kUnpaid:
            return dark ? QColor(0xff, 0xb8, 0x6b) : QColor(0xb3, 0x4d, 0x00);
        default:
            return pal.color(QPalette::PlaceholderText);
    }
}

// Cuts a line that is too wide to what fits, less two characters, and
// appends "...".
QString fitted(const QString& text, const QFontMetrics& metrics, int width) {
    if (metrics.horizontalAdvance(text) <= width) return text;
    int fit = 0;
    while (fit < text.size() && metrics.horizontalAdvance(text.left(fit + 1)) <= width) ++fit;
    return text.left(std::max(0, fit - 2)) + QStringLiteral("...");
}

// Draws the default style's rows: three or four lines, the status icon when
// asked for, the text in the colour chosen for the entry's status.
class DefaultRowDelegate : public QStyledItemDelegate {
  public:
    DefaultRowDelegate(AppState& state, QObject* parent)
        : QStyledItemDelegate(parent), state_(state) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        int lines = listDisplayOf(state_.settings()).showClientName() ? 4 : 3;
        return QSize(option.rect.width(), QFontMetrics(option.font).height() * lines + 1 + 8);
    }

    void paint(QPainter* p, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        ListDisplay display = listDisplayOf(state_.settings());
        int status = index.data(kStatusRole).toInt();
        bool selected = option.state & QStyle::State_Selected;
        const QPalette& pal = option.palette;
        p->save();
        p->fillRect(option.rect, selected ? pal.highlight() : pal.base());
        std::uint32_t colourIndex = display.colour[status];
        QColor text = selected ? pal.highlightedText().color()
                               : paletteColour(colourIndex, pal.text().color());
        // The first line says when and how long; the lines under it are quieter
        // unless the user chose a colour for the entry's status.
        QColor secondary =
            selected || colourIndex != 0 ? text : pal.color(QPalette::PlaceholderText).darker(160);
        QRect r = option.rect.adjusted(8, 4, -8, -4);
        if (display.showStatusIcon()) {
            int icon = QFontMetrics(option.font).height();
            statusIcon(status).paint(p, QRect(r.left(), r.top() + 1, icon, icon));
            r.setLeft(r.left() + icon + 6);
        }
        p->setFont(option.font);
        p->setPen(text);
        QFontMetrics metrics(option.font);
        int lineHeight = metrics.height();
        QStringList lines = index.data(kLinesRole).toStringList();
        // With room beside the row's own lines, the right side says the
        // client, the amount and the state; the lines themselves stay whole.
        QStringList side = index.data(kSideRole).toStringList();
        int textWidth = 0;
        for (const QString& line : lines)
            textWidth = std::max(textWidth, metrics.horizontalAdvance(line));
        int sideWidth = 0;
        for (const QString& t : side) sideWidth = std::max(sideWidth, metrics.horizontalAdvance(t));
        if (!side.isEmpty() && r.width() >= textWidth + sideWidth + 48) {
            QRect block(r.right() - sideWidth, r.top(), sideWidth, r.height());
            QFont bold = option.font;
            bold.setWeight(QFont::DemiBold);
            p->setFont(bold);
            p->setPen(text);
            p->drawText(QRect(block.left(), block.top(), sideWidth, lineHeight),
                        Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, side[1]);
            p->setFont(option.font);
            p->setPen(secondary);
            p->drawText(QRect(block.left(), block.top() + lineHeight, sideWidth, lineHeight),
                        Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, side[0]);
            p->setPen(selected ? text : stateColour(status, pal));
            p->drawText(QRect(block.left(), block.top() + 2 * lineHeight, sideWidth, lineHeight),
                        Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, side[2]);
            p->setPen(text);
            r.setRight(block.left() - 24);
        }
        for (int i = 0; i < lines.size(); ++i) {
            QRect line(r.left(), r.top() + i * lineHeight, r.width(), lineHeight);
            p->setPen(i == 0 ? text : secondary);
            p->drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                        fitted(lines[i], metrics, line.width()));
        }
        p->setPen(pal.color(QPalette::Midlight));
        p->drawLine(option.rect.left(), option.rect.bottom(), option.rect.right(),
                    option.rect.bottom());
        p->restore();
    }

  private:
    AppState& state_;
};

void fillTree(QTreeWidgetItem* parent, QTreeWidget* tree,
              const std::vector<std::unique_ptr<TreeNode>>& nodes) {
    for (const auto& node : nodes) {
        auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(tree);
        item->setText(0, toQt(node->text));
        item->setIcon(0, treeIcon(node->image));
        item->setData(0, kIdRole, node->recordOid);
        fillTree(item, tree, node->children);
    }
}

}  // namespace

EntryListWidget::EntryListWidget(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state) {
    stack_ = new QStackedLayout(this);
    stack_->setStackingMode(QStackedLayout::StackAll);
    empty_ = new QLabel(this);
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setWordWrap(true);
    empty_->setTextFormat(Qt::RichText);
    empty_->setText(
        tr("<p style='font-size:large'>No entries in this period</p>"
           "<p>Choose <b>New</b> to record time, or start one of the "
           "<b>Entry Timers</b>.</p>"));
    empty_->setAttribute(Qt::WA_TransparentForMouseEvents);
    QPalette pal = empty_->palette();
    pal.setColor(QPalette::WindowText, pal.color(QPalette::PlaceholderText));
    empty_->setPalette(pal);
    stack_->addWidget(empty_);
}

EntryListWidget::~EntryListWidget() {
    saveColumns();
}

QAbstractItemView* EntryListWidget::view() const {
    if (list_) return list_;
    if (table_) return table_;
    return tree_;
}

void EntryListWidget::wire(QAbstractItemView* v) {
    v->setContextMenuPolicy(Qt::CustomContextMenu);
    v->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(v, &QAbstractItemView::activated, this, [this](const QModelIndex& index) {
        CEOID id = index.data(kIdRole).toUInt();
        if (id != 0) emit entryActivated(id);
    });
    connect(v, &QWidget::customContextMenuRequested, this, [this, v](const QPoint& pos) {
        QModelIndex index = v->indexAt(pos);
        if (!index.isValid()) return;
        v->setCurrentIndex(index);
        CEOID id = index.data(kIdRole).toUInt();
        if (id != 0) emit contextMenuRequested(id, v->viewport()->mapToGlobal(pos));
    });
    connect(v->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &EntryListWidget::selectionChanged);
    stack_->addWidget(v);
    stack_->setCurrentWidget(v);
    empty_->raise();
}

void EntryListWidget::setListStyle(ListStyle style) {
    saveColumns();
    for (QWidget* w : {static_cast<QWidget*>(list_), static_cast<QWidget*>(table_),
                       static_cast<QWidget*>(tree_)}) {
        if (w) {
            stack_->removeWidget(w);
            delete w;
        }
    }
    list_ = nullptr;
    table_ = nullptr;
    tree_ = nullptr;
    style_ = style;
    if (style == kSimpleStyle) {
        table_ = new QTreeWidget(this);
        table_->setRootIsDecorated(false);
        table_->setUniformRowHeights(true);
        table_->setAlternatingRowColors(true);
        table_->setColumnCount(static_cast<int>(kSimpleColumns));
        QStringList titles;
        for (auto t : kSimpleColumnTitles) titles << toQt(std::u16string(t));
        // The custom columns carry the captions the user gave the fields.
        const Settings& s = state_.settings();
        titles[8] = toQt(s.custom1Caption);
        titles[9] = toQt(s.custom2Caption);
        titles[10] = toQt(s.custom3Caption);
        table_->setHeaderLabels(titles);
        table_->header()->setSectionsMovable(true);
        // A click on a column that has an "Arrange By" key arranges by it.
        table_->header()->setSectionsClickable(true);
        table_->header()->setSortIndicatorShown(true);
        connect(table_->header(), &QHeaderView::sectionClicked, this, [this](int column) {
            int key = simpleColumnArrangeKey(column);
            if (key >= 0) emit arrangeRequested(static_cast<std::uint16_t>(key));
        });
        table_->header()->setStretchLastSection(false);
        for (std::size_t i = 0; i < kSimpleColumns; ++i) {
            table_->setColumnWidth(static_cast<int>(i),
                                   kSimpleColumnWidths[i] * logicalDpiX() / 72);
        }
        restoreColumns();
        setArrangeKey(arrangeKey_);
        wire(table_);
    } else if (style == kTreeStyle) {
        tree_ = new QTreeWidget(this);
        tree_->setHeaderHidden(true);
        tree_->setAnimated(true);
        wire(tree_);
    } else {
        list_ = new QListWidget(this);
        list_->setItemDelegate(new DefaultRowDelegate(state_, list_));
        list_->setUniformItemSizes(true);
        list_->setFrameShape(QFrame::NoFrame);
        list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        wire(list_);
    }
    applyFont();
}

void EntryListWidget::applyFont() {
    const Settings& s = state_.settings();
    QFont f = QApplication::font();
    f.setPointSize(listFontTenths(s) / 10);
    f.setWeight(listFontWeight(s) >= kWeightBold ? QFont::DemiBold : QFont::Normal);
    if (QAbstractItemView* v = view()) v->setFont(f);
    if (list_) list_->doItemsLayout();
}

void EntryListWidget::setRows(const std::vector<TimeEntry>& rows, ViewKind viewKind) {
    CEOID selected = selectedId();
    ids_.clear();
    for (const TimeEntry& e : rows) ids_.push_back(e.recordOid);
    const LocaleInfo& locale = state_.locale();
    if (list_) {
        list_->setUpdatesEnabled(false);
        list_->clear();
        ListDisplay display = listDisplayOf(state_.settings());
        const Settings& settings = state_.settings();
        for (const TimeEntry& e : rows) {
            auto* item = new QListWidgetItem(list_);
            QStringList lines;
            for (const auto& line : defaultRowLines(e, viewKind, display, locale))
                lines << toQt(line);
            item->setData(kIdRole, e.recordOid);
            item->setData(kLinesRole, lines);
            item->setData(kStatusRole, static_cast<int>(entryStatus(e)));
            RowSide side = rowSide(e, settings);
            item->setData(kSideRole,
                          QStringList{toQt(side.client), toQt(side.amount), toQt(side.state)});
            item->setToolTip(lines.join(QStringLiteral("\n")));
        }
        list_->setUpdatesEnabled(true);
    } else if (table_) {
        table_->setUpdatesEnabled(false);
        table_->clear();
        for (const TimeEntry& e : rows) {
            auto* item = new QTreeWidgetItem(table_);
            auto cells = simpleRowCells(e, locale);
            for (std::size_t i = 0; i < cells.size(); ++i) {
                item->setText(static_cast<int>(i), toQt(cells[i]));
            }
            item->setTextAlignment(5, Qt::AlignRight | Qt::AlignVCenter);
            item->setIcon(0, statusIcon(entryStatus(e)));
            item->setData(0, kIdRole, e.recordOid);
        }
        table_->setUpdatesEnabled(true);
    } else if (tree_) {
        tree_->setUpdatesEnabled(false);
        tree_->clear();
        EntryTree tree(locale, state_.settings());
        for (const TimeEntry& e : rows) tree.add(e);
        fillTree(nullptr, tree_, tree.roots());
        tree_->expandAll();
        tree_->setUpdatesEnabled(true);
    }
    empty_->setVisible(rows.empty());
    if (selected != 0) select(selected);
}

void EntryListWidget::setArrangeKey(std::uint16_t key) {
    arrangeKey_ = key;
    if (!table_) return;
    int column = arrangedSimpleColumn(key);
    QHeaderView* header = table_->header();
    header->setSortIndicatorShown(column >= 0 && key != 0);
    if (column >= 0) header->setSortIndicator(column, Qt::AscendingOrder);
}

CEOID EntryListWidget::selectedId() const {
    QAbstractItemView* v = view();
    if (!v || !v->selectionModel() || !v->selectionModel()->hasSelection()) return 0;
    return v->currentIndex().data(kIdRole).toUInt();
}

void EntryListWidget::select(CEOID id) {
    if (list_) {
        for (int i = 0; i < list_->count(); ++i) {
            if (list_->item(i)->data(kIdRole).toUInt() == id) {
                list_->setCurrentRow(i);
                return;
            }
        }
    } else if (QTreeWidget* t = table_ ? table_ : tree_) {
        for (QTreeWidgetItemIterator it(t); *it; ++it) {
            bool taskNode = (*it)->childCount() > 0;
            if ((*it)->data(0, kIdRole).toUInt() == id && taskNode == (t == tree_)) {
                t->setCurrentItem(*it);
                return;
            }
        }
    }
}

std::vector<CEOID> EntryListWidget::collectIds() const {
    return ids_;
}

// The simple style keeps its column order (44 bytes of eleven indexes) and
// widths under the application's key.
void EntryListWidget::saveColumns() {
    if (!table_) return;
    auto key = state_.registry().createKey(RegRoot::HKEY_CURRENT_USER, kAppKey);
    if (!key) return;
    std::vector<std::uint8_t> order(kSimpleColumns * 4);
    QHeaderView* header = table_->header();
    for (std::size_t visual = 0; visual < kSimpleColumns; ++visual) {
        std::uint32_t logical =
            static_cast<std::uint32_t>(header->logicalIndex(static_cast<int>(visual)));
        std::memcpy(order.data() + visual * 4, &logical, 4);
    }
    key->setValue("ColOrder", REG_BINARY, order);
    for (std::size_t i = 0; i < kSimpleColumns; ++i) {
        key->setDword("Column" + std::to_string(i),
                      static_cast<std::uint32_t>(table_->columnWidth(static_cast<int>(i))));
    }
}

void EntryListWidget::restoreColumns() {
    auto key = state_.registry().openKey(RegRoot::HKEY_CURRENT_USER, kAppKey);
    if (!key) return;
    QHeaderView* header = table_->header();
    RegValue order;
    if (key->queryValue("ColOrder", kSimpleColumns * 4, &order) == ERROR_SUCCESS &&
        order.data.size() == kSimpleColumns * 4) {
        for (std::size_t visual = 0; visual < kSimpleColumns; ++visual) {
            std::uint32_t logical = 0;
            std::memcpy(&logical, order.data.data() + visual * 4, 4);
            if (logical >= kSimpleColumns) continue;
            header->moveSection(header->visualIndex(static_cast<int>(logical)),
                                static_cast<int>(visual));
        }
    }
    for (std::size_t i = 0; i < kSimpleColumns; ++i) {
        std::uint32_t width = 0;
        if (key->queryDword("Column" + std::to_string(i), &width) == ERROR_SUCCESS) {
            table_->setColumnWidth(static_cast<int>(i), static_cast<int>(width & 0xFFFF));
        }
    }
}

}  // namespace qb
