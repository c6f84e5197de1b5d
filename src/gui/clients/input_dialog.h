#pragma once

// The one-line "Input:" dialog in which the client setup names a new client,
// project, task or contact.

#include <QDialog>
#include <optional>
#include <string>

class QLineEdit;

namespace qb {

class InputDialog : public QDialog {
    Q_OBJECT

  public:
    InputDialog(const QString& prompt, int maxChars, QWidget* parent = nullptr);

    QLineEdit* field() const { return field_; }

    // The text typed, or nothing when the user cancelled.
    static std::optional<std::u16string> ask(QWidget* parent, const QString& prompt, int maxChars);

  private:
    QLineEdit* field_;
};

}  // namespace qb
