#pragma once

// Helpers that drive windows as a user would: answer messages, press OK,
// act on a dialog that a window opens modally.

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "gui/app_state.h"
#include "gui/message_box.h"
#include "store/master_data.h"

namespace qb::guitest {

// Captures every message instead of showing it, answering with `answer`.
class Messages {
  public:
    explicit Messages(QMessageBox::StandardButton answer = QMessageBox::Ok) : answer_(answer) {
        setMessageHook([this](const MessageRequest& r) {
            shown.push_back(r);
            return answer_;
        });
    }
    ~Messages() { setMessageHook(nullptr); }
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    void answer(QMessageBox::StandardButton a) { answer_ = a; }
    QString last() const { return shown.empty() ? QString() : shown.back().text; }
    QStringList texts() const {
        QStringList t;
        for (const MessageRequest& r : shown) t << r.text;
        return t;
    }

    std::vector<MessageRequest> shown;

  private:
    QMessageBox::StandardButton answer_;
};

inline void pressOk(QDialog& dialog) {
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    QVERIFY(buttons);
    QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

// Runs `act` on the dialog of type D once it is shown modally: how a test
// answers a dialog that a window opens with exec().
template <typename D>
void whenModal(std::function<void(D*)> act) {
    auto* timer = new QTimer;
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        if (auto* dialog = qobject_cast<D*>(QApplication::activeModalWidget())) {
            timer->stop();
            timer->deleteLater();
            act(dialog);
        }
    });
    timer->start();
}

// An in-memory store with the default settings and two clients: Acme with
// the pair Web/Design and the contact Alice, Bolt with App/Build and the task
// Support.
inline std::unique_ptr<AppState> twoClientState() {
    auto state = std::make_unique<AppState>(Platform::inMemory());
    if (!state->open()) return nullptr;
    state->settings() = defaultSettings();
    MasterTables& m = state->masters();
    ClientId acme = 0;
    ClientId bolt = 0;
    addClient(m.clients, u"Acme", &acme);
    addClient(m.clients, u"Bolt", &bolt);
    addProjectTask(m.projects, acme, u"Web", u"Design");
    addProjectTask(m.projects, bolt, u"App", u"Build");
    addTask(m.tasks, bolt, u"Support");
    addContact(m.contacts, acme, u"Alice");
    return state;
}

template <typename W>
W* child(QWidget& parent, const char* name) {
    W* w = parent.findChild<W*>(QString::fromLatin1(name));
    if (!w) qWarning("no child %s", name);
    return w;
}

inline void choose(QComboBox* box, const QString& text) {
    const int i = box->findText(text);
    QVERIFY2(i >= 0, qPrintable(text));
    box->setCurrentIndex(i);
}

}  // namespace qb::guitest
