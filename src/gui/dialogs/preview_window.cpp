#include "gui/dialogs/preview_window.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "gui/app_state.h"
#include "views/entry_preview.h"

namespace qb {

PreviewWindow::PreviewWindow(AppState& state, const TimeEntry& entry, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(QStringLiteral("Preview"));
    std::vector<PreviewField> fields = entryPreviewFields(entry, state.settings(), state.locale());
    // The note is last and may run to many lines: it gets a box of its own.
    const PreviewField note = fields.back();
    fields.pop_back();

    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    for (const PreviewField& f : fields) {
        auto* value = new QLabel(toQt(f.value), this);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        value->setTextFormat(Qt::PlainText);
        value->setWordWrap(true);
        form->addRow(toQt(f.label), value);
    }
    auto* noteBox = new QPlainTextEdit(toQt(note.value), this);
    noteBox->setObjectName(QStringLiteral("note"));
    noteBox->setReadOnly(true);
    noteBox->setMinimumHeight(fontMetrics().height() * 5);
    form->addRow(toQt(note.label), noteBox);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 48);
}

}  // namespace qb
