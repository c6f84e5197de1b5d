#pragma once

// "Options...": the user's preferences in pages. OK writes the choices into
// the settings object, which the caller then saves; Cancel changes nothing.

#include <QDialog>
#include <functional>
#include <vector>

#include "app/settings.h"

class QTabWidget;

namespace qb {

class OptionsDialog : public QDialog {
    Q_OBJECT

  public:
    OptionsDialog(Settings& settings, QWidget* parent = nullptr);

    // Appends a page; `apply` writes the page's choices into the settings
    // when the dialog is accepted. The pages "General" and "Defaults" come
    // first; further ones (an "Export" page) are added through here.
    void addPage(QWidget* page, const QString& title, std::function<void(Settings&)> apply);

    void accept() override;

  private:
    void addGeneralPage();
    void addDefaultsPage();

    Settings& settings_;
    QTabWidget* tabs_;
    std::vector<std::function<void(Settings&)>> appliers_;
};

}  // namespace qb
