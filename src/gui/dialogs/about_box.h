#pragma once

// "About...": the application's name and version.

#include <QDialog>

namespace qb {

class AboutBox : public QDialog {
    Q_OBJECT

  public:
    explicit AboutBox(QWidget* parent = nullptr);

    // "Version 0.1.0".
    static QString versionText();
};

}  // namespace qb
