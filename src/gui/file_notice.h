#pragma once

#include <QFrame>
#include <QString>
#include <QUrl>
#include <functional>

class QLabel;
class QPushButton;

namespace qb {

class Registry;

// The folder save dialogs open in: the one the last file was saved to,
// kept between runs. `useRegistry` reads it once and writes each change.
void useRegistryForFolders(Registry* registry);
// The path a save dialog starts with: the last folder (else the home
// folder) and the suggested name.
QString suggestedSavePath(const QString& suggestedName);
void rememberSaveFolder(const QString& savedFile);

// Opens a file or folder with the desktop's handler; tests answer here.
using UrlOpener = std::function<void(const QUrl&)>;
void setUrlOpener(UrlOpener opener);
void openUrl(const QUrl& url);

// The strip that says where a saved export, report, backup or archive went,
// with "Open", "Open Folder" and a close button. It stays until closed or
// replaced, so it never interrupts.
class FileNotice : public QFrame {
    Q_OBJECT
  public:
    explicit FileNotice(QWidget* parent = nullptr);

    // "CSV export saved to /home/me/quillarbor-2026-11.csv".
    void announce(const QString& what, const QString& path);
    QString text() const;
    QString path() const { return path_; }
    QPushButton* openButton() const { return open_; }
    QPushButton* openFolderButton() const { return openFolder_; }

  private:
    QLabel* text_;
    QPushButton* open_;
    QPushButton* openFolder_;
    QString path_;
};

}  // namespace qb
