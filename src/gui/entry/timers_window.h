#pragma once

// "Entry Timers": one of the four stopwatches at a time, with its clock,
// its buttons, the client, project and task it is for, and its note. The
// window is not modal: the main window stays usable beside it, and the
// timers (TimerWork) keep running after it closes.

#include <QDialog>

class QComboBox;
class QLabel;
class QPushButton;
class QTimer;

namespace qb {

class AppState;
class NoteEditor;
class TimerWork;
class WorkChoices;

class TimersWindow : public QDialog {
    Q_OBJECT
  public:
    TimersWindow(AppState& state, TimerWork& work, QWidget* parent = nullptr);

    int shownTimer() const { return shown_; }
    void showTimer(int index);

  protected:
    void done(int result) override;

  private:
    void record();
    void pause();
    void complete();
    void resetTimer();
    // Writes what the note and the boxes hold into the shown timer.
    void storeDetails();
    void showDetails();
    void timersChanged();
    void updateClock();
    void updateButtons();
    void updateSelector();

    AppState& state_;
    TimerWork& work_;
    int shown_ = 0;
    QLabel* start_;
    QLabel* duration_;
    QPushButton* record_;
    QPushButton* pause_;
    QPushButton* complete_;
    QPushButton* reset_;
    QComboBox* selector_;
    WorkChoices* choices_;
    NoteEditor* note_;
    // Typing is written a moment after the last key, not at every key.
    QTimer* storeDelay_;
};

}  // namespace qb
