#include "gui/tools/replace_dialog.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "entry/done_texts.h"
#include "gui/app_state.h"
#include "gui/dialogs/dialog_support.h"
#include "gui/message_box.h"
#include "gui/tools/tool_support.h"
#include "platform/data_file.h"
#include "platform/platform.h"

namespace qb {

// The dialog's bar as the core's progress: it repaints at a pace the eye
// can follow rather than once per entry.
class ReplaceDialog::Bar : public ReplaceProgress {
  public:
    explicit Bar(QProgressBar* bar) : bar_(bar) {}
    void setRange(long maximum) override {
        bar_->setRange(0, static_cast<int>(maximum));
        bar_->setValue(0);
        paint();
    }
    void step() override {
        bar_->setValue(bar_->value() + 1);
        if (bar_->value() >= bar_->maximum() || clock_.elapsed() >= 40) paint();
    }

  private:
    void paint() {
        clock_.start();
        bar_->window()->repaint();
    }
    QProgressBar* bar_;
    QElapsedTimer clock_;
};

ReplaceDialog::ReplaceDialog(AppState& state, QWidget* parent)
    : QDialog(parent),
      state_(state),
      type_(new QComboBox(this)),
      find_(makeTextBox("find", 0, this)),
      replacement_(new QLineEdit(this)),
      status_(new QLabel(qtText(kUpdatingRecordsText), this)),
      bar_(new QProgressBar(this)),
      cancel_(nullptr) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    type_->setObjectName(QStringLiteral("type"));
    for (int i = 0; i < kReplaceFieldCount; ++i) {
        type_->addItem(qtText(replaceFieldText(static_cast<ReplaceField>(i))));
    }
    find_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    find_->setMinimumContentsLength(24);
    replacement_->setObjectName(QStringLiteral("replacement"));
    replacement_->setMaxLength(static_cast<int>(kReplacementLimit));
    status_->setObjectName(QStringLiteral("status"));
    status_->hide();
    bar_->setObjectName(QStringLiteral("progressBar"));
    bar_->setTextVisible(false);
    bar_->hide();

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Type:"), type_);
    form->addRow(QStringLiteral("Find:"), find_);
    form->addRow(QStringLiteral("Replace With:"), replacement_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    cancel_ = buttons->button(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &ReplaceDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(status_);
    layout->addWidget(bar_);
    layout->addStretch(1);
    layout->addWidget(buttons);

    connect(type_, &QComboBox::currentIndexChanged, this, &ReplaceDialog::refillFind);
    refillFind();
}

void ReplaceDialog::refillFind() {
    const QSignalBlocker quiet(find_);
    find_->clear();
    const auto field = static_cast<ReplaceField>(type_->currentIndex());
    for (const std::u16string& text : findChoices(state_.masters(), field)) {
        find_->addItem(toQt(text));
    }
    find_->setCurrentIndex(-1);
    find_->setEditText(QString());
}

int ReplaceDialog::findIndex() const {
    // Text typed over an item has no item index. (Qt chooses the item a
    // typed text equals when the box loses the focus, so typing an item's
    // text is choosing it.)
    const int index = find_->currentIndex();
    return index >= 0 && find_->itemText(index) == find_->currentText() ? index : -1;
}

void ReplaceDialog::accept() {
    const std::u16string replacement = fromQt(replacement_->text());
    switch (checkReplace(findIndex(), replacement)) {
        case ReplaceCheck::kFirstFindItem:
            warn(this, qtText(kReplaceRefusalText));
            find_->setFocus();
            return;
        case ReplaceCheck::kEmptyReplacement:
            warn(this, qtText(kReplaceRefusalText));
            replacement_->setFocus();
            return;
        case ReplaceCheck::kOk:
            break;
    }
    if (!confirm(this, qtText(kReplaceQuestion), MessageIcon::kQuestion)) return;

    WaitCursor wait;
    status_->show();
    bar_->show();
    for (QWidget* w : {static_cast<QWidget*>(find_), static_cast<QWidget*>(replacement_),
                       static_cast<QWidget*>(type_), static_cast<QWidget*>(cancel_)}) {
        w->setEnabled(false);
    }
    Bar progress(bar_);
    result_ = replaceFieldText(state_.platform().file(), state_.entries(), state_.masters(),
                               static_cast<ReplaceField>(type_->currentIndex()),
                               fromQt(find_->currentText()), replacement, &progress);
    if (!result_.ok) {
        fail(this, QStringLiteral("The text could not be replaced in %1.")
                       .arg(QString::fromStdString(state_.platform().file().path())));
    } else {
        showMessage(this, {qtText(replaceDoneText(result_.entriesChanged, result_.masterRenamed,
                                                  result_.masterMerged)),
                           MessageIcon::kInformation, QMessageBox::Ok, QMessageBox::Ok});
    }
    QDialog::accept();
}

}  // namespace qb
