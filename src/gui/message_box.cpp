#include "gui/message_box.h"

#include <QAbstractButton>

namespace qb {
namespace {

MessageHook& hook() {
    static MessageHook h;
    return h;
}

QMessageBox::Icon qtIcon(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::kExclamation:
            return QMessageBox::Warning;
        case MessageIcon::kStop:
            return QMessageBox::Critical;
        case MessageIcon::kQuestion:
            return QMessageBox::Question;
        case MessageIcon::kInformation:
            break;
    }
    return QMessageBox::Information;
}

}  // namespace

QMessageBox::StandardButton showMessage(QWidget* parent, const MessageRequest& request) {
    if (hook()) return hook()(request);
    QMessageBox box(qtIcon(request.icon), QStringLiteral("Quillarbor"), request.text,
                    request.buttons, parent);
    box.setDefaultButton(request.defaultButton);
    for (const auto& [button, text] : request.buttonTexts) {
        if (QAbstractButton* b = box.button(button)) b->setText(text);
    }
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

void warn(QWidget* parent, const QString& text) {
    showMessage(parent, {text, MessageIcon::kExclamation, QMessageBox::Ok, QMessageBox::Ok});
}

void fail(QWidget* parent, const QString& text) {
    showMessage(parent, {text, MessageIcon::kStop, QMessageBox::Ok, QMessageBox::Ok});
}

bool confirm(QWidget* parent, const QString& text, MessageIcon icon) {
    return showMessage(parent, {text, icon, QMessageBox::Yes | QMessageBox::No, QMessageBox::No}) ==
           QMessageBox::Yes;
}

void setMessageHook(MessageHook h) {
    hook() = std::move(h);
}

}  // namespace qb
