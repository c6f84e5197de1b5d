#pragma once

// The time entry editor: the sheet of pages "General", "Billing", "Custom"
// and "Notes" on one in-memory entry. OK checks every page through the
// core's form rules and saves the entry with what the master data learns.
// As the user types, the hours beside the Duration box and the Billing
// page's Total show what OK would store; leaving with changed boxes asks
// first.

#include <QDialog>
#include <memory>

#include "entry/entry_form.h"
#include "store/time_entry.h"

namespace qb {

class AppState;

class EntryEditor : public QDialog {
    Q_OBJECT
  public:
    // `entry` is what prepareEntry made: a new entry or a copy of a stored one.
    EntryEditor(AppState& state, const TimeEntry& entry, QWidget* parent = nullptr);
    ~EntryEditor() override;

    // Opens the editor modally; true when the entry was saved.
    static bool edit(AppState& state, const TimeEntry& entry, QWidget* parent);

    // The entry as the pages have stored it so far (after a save: as saved,
    // with its record id).
    const TimeEntry& entry() const { return entry_; }
    bool saved() const { return saved_; }

    // The boxes as they stand, in the form the core checks.
    EntryForm form() const;

    void accept() override;
    // Escape, Cancel and closing the window: boxes that differ from how the
    // editor opened are discarded only after the user says so.
    void reject() override;

  private:
    struct Pages;

    void buildGeneral();
    void buildBilling();
    void buildCustom();
    void buildNotes();
    void showEntry();
    void pageChanged(int index);
    void refillProjects();
    void refillTasks();
    void showBilling();
    void updateBillingState();
    void rateNodeChosen();
    void calculate();
    void showWhatSaves();
    void setTimes();
    void refuse(const FormResult& result);

    AppState& state_;
    TimeEntry entry_;
    std::unique_ptr<Pages> p_;
    EntryForm opened_;
    int shownPage_ = 0;
    bool saved_ = false;
};

}  // namespace qb
