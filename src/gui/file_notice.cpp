#include "gui/file_notice.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include "platform/registry.h"

namespace qb {
namespace {

constexpr const char* kDesktopKey = "Software\\Quillarbor\\Desktop";
constexpr const char* kFolderValue = "SaveFolder";

struct Folders {
    Registry* registry = nullptr;
    QString last;
    UrlOpener opener;
};

Folders& folders() {
    static Folders f;
    return f;
}

}  // namespace

void useRegistryForFolders(Registry* registry) {
    Folders& f = folders();
    f.registry = registry;
    f.last.clear();
    if (!registry) return;
    auto key = registry->openKey(RegRoot::HKEY_CURRENT_USER, kDesktopKey);
    RegValue value;
    if (key && key->queryValue(kFolderValue, 4096, &value) == ERROR_SUCCESS) {
        f.last = QString::fromUtf8(reinterpret_cast<const char*>(value.data.data()),
                                   static_cast<qsizetype>(value.data.size()));
    }
}

QString suggestedSavePath(const QString& suggestedName) {
    QString folder = folders().last;
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) folder = QDir::homePath();
    return suggestedName.isEmpty() ? folder : QDir(folder).filePath(suggestedName);
}

void rememberSaveFolder(const QString& savedFile) {
    Folders& f = folders();
    f.last = QFileInfo(savedFile).absolutePath();
    if (!f.registry) return;
    auto key = f.registry->createKey(RegRoot::HKEY_CURRENT_USER, kDesktopKey);
    QByteArray bytes = f.last.toUtf8();
    if (key)
        key->setValue(kFolderValue, REG_BINARY,
                      std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

void setUrlOpener(UrlOpener opener) {
    folders().opener = std::move(opener);
}

void openUrl(const QUrl& url) {
    if (folders().opener) {
        folders().opener(url);
    } else {
        QDesktopServices::openUrl(url);
    }
}

FileNotice::FileNotice(QWidget* parent) : QFrame(parent) {
    setObjectName(QStringLiteral("fileNotice"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 3, 4, 3);
    auto* icon = new QLabel(this);
    int size = fontMetrics().height();
    icon->setPixmap(style()->standardIcon(QStyle::SP_DialogApplyButton).pixmap(size, size));
    text_ = new QLabel(this);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text_->setForegroundRole(QPalette::ToolTipText);
    open_ = new QPushButton(tr("&Open"), this);
    openFolder_ = new QPushButton(tr("Open &Folder"), this);
    auto* close = new QToolButton(this);
    close->setAutoRaise(true);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setToolTip(tr("Close"));
    row->addWidget(icon);
    row->addWidget(text_, 1);
    row->addWidget(open_);
    row->addWidget(openFolder_);
    row->addWidget(close);
    connect(open_, &QPushButton::clicked, this, [this] { openUrl(QUrl::fromLocalFile(path_)); });
    connect(openFolder_, &QPushButton::clicked, this,
            [this] { openUrl(QUrl::fromLocalFile(QFileInfo(path_).absolutePath())); });
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    setVisible(false);
}

void FileNotice::announce(const QString& what, const QString& path) {
    path_ = QFileInfo(path).absoluteFilePath();
    text_->setText(tr("%1 saved to %2").arg(what, QDir::toNativeSeparators(path_)));
    rememberSaveFolder(path_);
    show();
}

QString FileNotice::text() const {
    return isVisibleTo(parentWidget()) ? text_->text() : QString();
}

}  // namespace qb
