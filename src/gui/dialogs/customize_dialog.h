#pragma once

// "Customize...": what the default list style shows of an entry and the
// text colour of each entry status. OK writes into the display options; the
// caller stores them in the settings and redraws.

#include <QDialog>

#include "views/entry_rows.h"

class QCheckBox;
class QComboBox;

namespace qb {

class CustomizeDialog : public QDialog {
    Q_OBJECT

  public:
    CustomizeDialog(ListDisplay& display, QWidget* parent = nullptr);

    void accept() override;

  private:
    ListDisplay& display_;
    QCheckBox* clientName_;
    QComboBox* entryTime_;
    QCheckBox* statusIcon_;
    QComboBox* colours_[3];
};

// A drop-down of the palette's swatches; the item index is the palette
// index, item 0 the system's text colour.
QComboBox* makeColourPicker(std::uint32_t current, QWidget* parent);

}  // namespace qb
