#pragma once

// One rate: its type, description and value. OK checks the boxes and puts
// the focus back on the one that is wrong.

#include <QDialog>
#include <cstdint>
#include <optional>
#include <string>

class QComboBox;
class QLineEdit;

namespace qb {

struct RateRecord;

class RateDialog : public QDialog {
    Q_OBJECT

  public:
    // Shows `initial` when given, else an empty normal rate.
    explicit RateDialog(const RateRecord* initial, QWidget* parent = nullptr);

    // Valid after OK.
    std::uint16_t rateType() const { return rateType_; }
    const std::u16string& description() const { return description_; }
    // The hundredths the rate table stores; an untouched box keeps the rate.
    std::uint32_t rate() const { return rate_; }

    void accept() override;

  private:
    QComboBox* type_;
    QLineEdit* descriptionBox_;
    QLineEdit* rateBox_;
    std::uint16_t rateType_ = 0;
    std::u16string description_;
    std::uint32_t rate_ = 0;
    std::optional<std::uint32_t> storedRate_;  // of the rate being modified
};

}  // namespace qb
