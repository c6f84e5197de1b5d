#pragma once

// "Entry Timers": one of the four stopwatches at a time, with its clock,
// its buttons and its note. The timers themselves live in EntryTimerSet and
// keep running after the window closes.

#include <QDialog>

class QComboBox;
class QLabel;
class QPushButton;

namespace qb {

class AppState;
class EntryTimerSet;
class NoteEditor;

class TimersWindow : public QDialog {
    Q_OBJECT
  public:
    TimersWindow(AppState& state, EntryTimerSet& timers, QWidget* parent = nullptr);

    int shownTimer() const { return shown_; }
    void showTimer(int index);
    // The timer whose "Task Complete" closed the window, or -1.
    int completedTimer() const { return completed_; }

  public slots:
    // A second of a recording timer has passed.
    void timerTicked(int index);

  protected:
    void done(int result) override;

  private:
    void record();
    void pause();
    void complete();
    void resetTimer();
    void storeNote();
    void updateClock();
    void updateButtons();
    void updateSelector();

    AppState& state_;
    EntryTimerSet& timers_;
    int shown_ = 0;
    int completed_ = -1;
    QLabel* start_;
    QLabel* duration_;
    QPushButton* record_;
    QPushButton* pause_;
    QPushButton* complete_;
    QPushButton* reset_;
    QComboBox* selector_;
    NoteEditor* note_;
};

}  // namespace qb
