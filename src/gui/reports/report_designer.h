#pragma once

// The report designer: the rows of a report layout in three areas (header,
// table fields, footer), with loading, saving and organising of saved
// layouts and the default that "Report..." starts from.

#include <QMainWindow>
#include <array>

#include "report/layout_designer.h"
#include "report/saved_layouts.h"

class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace qb {

class AppState;

class ReportDesigner : public QMainWindow {
    Q_OBJECT
  public:
    // Opens on the default layout.
    explicit ReportDesigner(AppState& state, QWidget* parent = nullptr);

    // The working layout with the rows written into it.
    const WorkingLayout& working();

    void loadBuiltIn(const ReportLayout& layout);
    void loadCustom();
    void organize();
    // Asks for a name until the layout is saved or the prompt cancelled.
    void save();
    void setAsDefault();
    // Moves the selected field row up (-1) or down (+1).
    void moveSelected(int step);

  signals:
    void reportRequested(const ReportLayout& layout);

  private:
    void buildMenus();
    QWidget* buildRows();
    void showLayout();
    LayoutDesign readRows() const;
    void updateStates();
    void updateTitle();

    AppState& state_;
    WorkingLayout working_;

    QLineEdit* title_ = nullptr;
    QComboBox* dateSelection_ = nullptr;
    QComboBox* type_ = nullptr;
    QComboBox* groupBy_ = nullptr;
    QComboBox* groupTitle_ = nullptr;
    QComboBox* groupTotal_ = nullptr;
    QListWidget* fields_ = nullptr;
    std::array<QComboBox*, kFooterLineCount> footer_{};
    QPushButton* moveUp_ = nullptr;
    QPushButton* moveDown_ = nullptr;
};

}  // namespace qb
