#pragma once

// Every message the application shows goes through here, so that a test can
// read it and answer it.

#include <QMessageBox>
#include <QString>
#include <functional>
#include <utility>
#include <vector>

class QWidget;

namespace qb {

enum class MessageIcon { kInformation, kExclamation, kStop, kQuestion };

struct MessageRequest {
    QString text;
    MessageIcon icon = MessageIcon::kInformation;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::StandardButton defaultButton = QMessageBox::Ok;
    // Words of the question's own, in place of a button's standard text.
    std::vector<std::pair<QMessageBox::StandardButton, QString>> buttonTexts = {};
};

// Shows the message with the caption "Quillarbor" and answers the button
// pressed.
QMessageBox::StandardButton showMessage(QWidget* parent, const MessageRequest& request);

// The validation message: exclamation icon, OK.
void warn(QWidget* parent, const QString& text);
// The failure of a file operation: stop icon, OK.
void fail(QWidget* parent, const QString& text);
// A destructive question: Yes/No with No the default; true for Yes.
bool confirm(QWidget* parent, const QString& text, MessageIcon icon = MessageIcon::kExclamation);

// Tests answer messages here instead of a window; null restores the boxes.
using MessageHook = std::function<QMessageBox::StandardButton(const MessageRequest&)>;
void setMessageHook(MessageHook hook);

}  // namespace qb
