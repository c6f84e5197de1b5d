#include "gui/entry/note_editor.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include "entry/note_text.h"
#include "gui/app_state.h"
#include "store/time_entry.h"

namespace qb {
namespace {

constexpr int kZoomSteps[] = {75, 100, 150, 200};

QToolButton* menuButton(const QString& text, QMenu* menu, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setAutoRaise(true);
    return button;
}

}  // namespace

NoteEditor::NoteEditor(QWidget* parent) : QWidget(parent), text_(new QPlainTextEdit(this)) {
    text_->setObjectName(QStringLiteral("noteText"));
    basePointSize_ = text_->font().pointSizeF();

    auto* edit = new QMenu(this);
    auto add = [this](QMenu* menu, const QString& text, auto slot) {
        QAction* a = menu->addAction(text);
        connect(a, &QAction::triggered, text_, slot);
        commands_ << a;
        return a;
    };
    QAction* undo = add(edit, QStringLiteral("Undo"), &QPlainTextEdit::undo);
    QAction* redo = add(edit, QStringLiteral("Redo"), &QPlainTextEdit::redo);
    edit->addSeparator();
    QAction* cut = add(edit, QStringLiteral("Cut"), &QPlainTextEdit::cut);
    QAction* copy = add(edit, QStringLiteral("Copy"), &QPlainTextEdit::copy);
    add(edit, QStringLiteral("Paste"), &QPlainTextEdit::paste);
    QAction* remove =
        add(edit, QStringLiteral("Delete"), [this] { text_->textCursor().removeSelectedText(); });
    edit->addSeparator();
    add(edit, QStringLiteral("Select All"), &QPlainTextEdit::selectAll);
    add(edit, QStringLiteral("Clear All"), [this] {
        // Through the cursor, so that Undo brings the note back.
        QTextCursor all(text_->document());
        all.select(QTextCursor::Document);
        all.removeSelectedText();
    });
    undo->setEnabled(false);
    redo->setEnabled(false);
    for (QAction* a : {cut, copy, remove}) a->setEnabled(false);
    connect(text_, &QPlainTextEdit::undoAvailable, undo, &QAction::setEnabled);
    connect(text_, &QPlainTextEdit::redoAvailable, redo, &QAction::setEnabled);
    for (QAction* a : {cut, copy, remove}) {
        connect(text_, &QPlainTextEdit::copyAvailable, a, &QAction::setEnabled);
    }

    auto* zoom = new QMenu(this);
    auto* steps = new QActionGroup(this);
    for (int percent : kZoomSteps) {
        QAction* a = zoom->addAction(QStringLiteral("%1%").arg(percent));
        a->setCheckable(true);
        a->setChecked(percent == zoom_);
        steps->addAction(a);
        connect(a, &QAction::triggered, this, [this, percent] { setZoomPercent(percent); });
        commands_ << a;
    }
    zoom->addSeparator();
    QAction* wrap = zoom->addAction(QStringLiteral("Wrap To Window"));
    wrap->setCheckable(true);
    wrap->setChecked(true);
    connect(wrap, &QAction::toggled, this, [this](bool on) {
        text_->setLineWrapMode(on ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
    });
    commands_ << wrap;

    // The same commands on the box's own context menu.
    text_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(text_, &QWidget::customContextMenuRequested, this, [this, edit, zoom](QPoint at) {
        QMenu menu;
        menu.addActions(edit->actions());
        menu.addSeparator();
        menu.addMenu(zoom)->setText(QStringLiteral("Zoom"));
        menu.exec(text_->mapToGlobal(at));
    });

    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(0, 0, 0, 0);
    bar->setSpacing(2);
    bar->addWidget(menuButton(QStringLiteral("Edit"), edit, this));
    bar->addWidget(menuButton(QStringLiteral("Zoom"), zoom, this));
    bar->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addLayout(bar);
    layout->addWidget(text_, 1);
}

std::vector<std::uint8_t> NoteEditor::noteBytes() const {
    return qb::noteBytes(fromQt(text_->toPlainText()));
}

void NoteEditor::setNoteBytes(const std::vector<std::uint8_t>& bytes) {
    TimeEntry holder;
    holder.notes = bytes;
    text_->setPlainText(toQt(noteText(holder)));
}

void NoteEditor::clear() {
    text_->clear();
}

void NoteEditor::setZoomPercent(int percent) {
    zoom_ = percent;
    QFont font = text_->font();
    font.setPointSizeF(basePointSize_ * percent / 100.0);
    text_->setFont(font);
    for (QAction* a : commands_) {
        if (a->isCheckable() && a->text().endsWith(QLatin1Char('%'))) {
            a->setChecked(a->text() == QStringLiteral("%1%").arg(percent));
        }
    }
}

QAction* NoteEditor::command(const QString& text) const {
    for (QAction* a : commands_) {
        if (a->text() == text) return a;
    }
    return nullptr;
}

}  // namespace qb
