#include "gui/entry/choice_boxes.h"

#include <QComboBox>
#include <QSignalBlocker>

#include "entry/editor_choices.h"
#include "entry/entry_form.h"
#include "gui/app_state.h"
#include "gui/dialogs/dialog_support.h"

namespace qb {

QComboBox* choiceBox(const char* name, std::size_t limit, QWidget* parent) {
    QComboBox* box = makeTextBox(name, static_cast<int>(limit), parent);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(12);
    return box;
}

void refillChoices(QComboBox* box, const std::vector<std::u16string>& items) {
    const QSignalBlocker quiet(box);
    const QString typed = box->currentText();
    box->clear();
    for (const std::u16string& item : items) box->addItem(toQt(item));
    box->setEditText(typed);
}

WorkChoices::WorkChoices(AppState& state, QWidget* parent)
    : QObject(parent),
      state_(state),
      client_(choiceBox("client", kNameLimit, parent)),
      project_(choiceBox("project", kNameLimit, parent)),
      task_(choiceBox("task", kNameLimit, parent)) {
    for (const std::u16string& c : clientChoices(state_.masters())) client_->addItem(toQt(c));
    connect(client_, &QComboBox::currentTextChanged, this, [this] {
        refillProjects();
        emit edited();
    });
    connect(project_, &QComboBox::currentTextChanged, this, [this] {
        refillTasks();
        emit edited();
    });
    connect(task_, &QComboBox::currentTextChanged, this, &WorkChoices::edited);
}

void WorkChoices::show(const std::u16string& client, const std::u16string& project,
                       const std::u16string& task) {
    const QSignalBlocker quietClient(client_);
    const QSignalBlocker quietProject(project_);
    const QSignalBlocker quietTask(task_);
    client_->setEditText(toQt(client));
    refillProjects();
    project_->setEditText(toQt(project));
    refillTasks();
    task_->setEditText(toQt(task));
}

std::u16string WorkChoices::clientText() const {
    return fromQt(client_->currentText());
}
std::u16string WorkChoices::projectText() const {
    return fromQt(project_->currentText());
}
std::u16string WorkChoices::taskText() const {
    return fromQt(task_->currentText());
}

void WorkChoices::refillProjects() {
    refillChoices(project_, projectChoices(state_.masters(), clientText()));
    refillTasks();
}

void WorkChoices::refillTasks() {
    refillChoices(task_, taskChoices(state_.masters(), clientText(), projectText()));
}

}  // namespace qb
