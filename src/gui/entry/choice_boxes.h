#pragma once

// The editable drop-downs of the entry editor and the timer window, and the
// Client, Project and Task trio that fills its lists from the master data.

#include <QObject>
#include <cstddef>
#include <string>
#include <vector>

class QComboBox;
class QWidget;

namespace qb {

class AppState;

// An editable drop-down that takes `limit` characters and adds nothing to
// its list on Enter.
QComboBox* choiceBox(const char* name, std::size_t limit, QWidget* parent);

// New items under the text the user typed, which stays.
void refillChoices(QComboBox* box, const std::vector<std::u16string>& items);

// Client, Project and Task: the clients of the client table; the projects
// of the client typed or chosen; the tasks of that client (and project).
class WorkChoices : public QObject {
    Q_OBJECT
  public:
    WorkChoices(AppState& state, QWidget* parent);

    QComboBox* client() const { return client_; }
    QComboBox* project() const { return project_; }
    QComboBox* task() const { return task_; }

    // Shows the three texts, the client's lists under them.
    void show(const std::u16string& client, const std::u16string& project,
              const std::u16string& task);
    std::u16string clientText() const;
    std::u16string projectText() const;
    std::u16string taskText() const;

  signals:
    // The user changed one of the texts.
    void edited();

  private:
    void refillProjects();
    void refillTasks();

    AppState& state_;
    QComboBox* client_;
    QComboBox* project_;
    QComboBox* task_;
};

}  // namespace qb
