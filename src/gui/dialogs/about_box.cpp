#include "gui/dialogs/about_box.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "gui/dialogs/dialog_support.h"
#include "gui/icons.h"

namespace qb {

QString AboutBox::versionText() {
    return QStringLiteral("Version ") + QString::fromLatin1(QB_VERSION);
}

AboutBox::AboutBox(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("About Quillarbor"));
    const int iconSide = fontMetrics().height() * 3;
    auto* icon = new QLabel(this);
    icon->setPixmap(applicationIcon().pixmap(QSize(iconSide, iconSide), devicePixelRatioF()));
    auto* name = makeHeading(QStringLiteral("Quillarbor"), this);
    name->setObjectName(QStringLiteral("name"));
    auto* version = new QLabel(versionText(), this);
    version->setObjectName(QStringLiteral("version"));

    auto* texts = new QVBoxLayout;
    texts->addWidget(name);
    texts->addWidget(version);
    texts->addStretch();
    auto* body = new QHBoxLayout;
    body->setSpacing(fontMetrics().height());
    body->addWidget(icon, 0, Qt::AlignTop);
    body->addLayout(texts, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(fontMetrics().height());
    layout->addLayout(body);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 40);
}

}  // namespace qb
