#include "gui/tools/progress_dialog.h"

#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

#include "gui/tools/tool_support.h"

namespace qb {
namespace {

// A repaint per record would cost more than the record; the eye needs far
// fewer.
constexpr qint64 kPaintIntervalMs = 40;

std::function<void(ProgressDialog&)>& observer() {
    static std::function<void(ProgressDialog&)> o;
    return o;
}

}  // namespace

ProgressDialog::ProgressDialog(std::u16string_view firstLine, bool showBar, QWidget* parent)
    : QDialog(parent), second_(new QLabel(this)), bar_(new QProgressBar(this)) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    setModal(true);
    setWindowFlag(Qt::WindowCloseButtonHint, false);
    auto* first = new QLabel(qtText(firstLine), this);
    first->setObjectName(QStringLiteral("progressText"));
    first->setWordWrap(true);
    second_->setObjectName(QStringLiteral("recordText"));
    bar_->setObjectName(QStringLiteral("progressBar"));
    bar_->setTextVisible(false);
    bar_->setRange(0, 0);
    bar_->setVisible(showBar);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(first);
    layout->addWidget(second_);
    layout->addWidget(bar_);
    layout->addStretch(1);
    setMinimumWidth(fontMetrics().averageCharWidth() * 48);
}

int ProgressDialog::run(const std::function<int(BackupProgress*)>& work) {
    int result = 0;
    // Queued, as the start message was: the dialog is drawn before the work.
    QTimer::singleShot(0, this, [&] {
        if (observer()) observer()(*this);
        WaitCursor wait;
        result = work(this);
        done(QDialog::Accepted);
    });
    exec();
    return result;
}

void ProgressDialog::setObserver(std::function<void(ProgressDialog&)> o) {
    observer() = std::move(o);
}

void ProgressDialog::changed() {
    const bool last = position() >= total();
    if (sincePaint_.isValid() && !last && sincePaint_.elapsed() < kPaintIntervalMs) return;
    sincePaint_.start();
    // QProgressBar holds an int; a store beyond that is not a thing.
    bar_->setRange(0, static_cast<int>(total()));
    bar_->setValue(static_cast<int>(position()));
    second_->setText(qtText(line()));
    repaint();
    if (observer()) observer()(*this);
}

}  // namespace qb
