#pragma once

// "Preview...": every field of an entry, read only, in the user's formats.

#include <QDialog>

namespace qb {

class AppState;
struct TimeEntry;

class PreviewWindow : public QDialog {
    Q_OBJECT

  public:
    PreviewWindow(AppState& state, const TimeEntry& entry, QWidget* parent = nullptr);
};

}  // namespace qb
