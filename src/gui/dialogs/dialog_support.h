#pragma once

// Small pieces the dialogs share: calendar dates in date pickers and the
// combo boxes with an "(All)" item in front.

#include <QDate>
#include <string>
#include <vector>

#include "platform/win_types.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QWidget;

namespace qb {

QDate toQDate(const SYSTEMTIME& date);
// The day at midnight, its day of week filled in.
SYSTEMTIME fromQDate(const QDate& date);

// The user's date picture in a date picker's terms: the same letters, but
// a year of one or two letters becomes "yy" and a longer one "yyyy".
QString qtDatePicture(const std::u16string& picture);

// An editable drop-down whose text is only ever what the user typed or
// picked: nothing completes a typed text, and Enter never swaps the text
// for an item that matches it ignoring case (Qt's defaults do both). Enter
// goes on to the dialog, which takes it as OK. A `maxLength` of 0 leaves
// the line's own limit.
QComboBox* makeTextBox(const char* name, int maxLength, QWidget* parent);

// "(All)" as item 0, then the items.
void fillChoices(QComboBox* box, const std::vector<std::u16string>& items);
// "(All)" then the five rate type names, so that item k is type k - 1.
void fillRateTypeChoices(QComboBox* box);
// Selects the item equal to `text` ignoring case, as the device's exact
// search did, or "(All)" when there is none or the text is empty.
void selectChoice(QComboBox* box, const std::u16string& text);
// The chosen text cut to a buffer of `bufferChars` characters with its NUL;
// empty while "(All)" is chosen.
std::u16string chosenText(const QComboBox* box, int bufferChars);

// A bold heading for the top of a dialog.
QLabel* makeHeading(const QString& text, QWidget* parent);

// The row of the three flag boxes ("Unpaid", "Paid", "Non Billable").
void addFlagRow(QFormLayout* form, QCheckBox* unpaid, QCheckBox* paid, QCheckBox* nonBillable);

}  // namespace qb
