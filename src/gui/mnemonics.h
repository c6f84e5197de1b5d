#pragma once

class QMenu;

namespace qb {

// Gives every item of the menu (sub-menus by their titles) an underlined
// access key that no other item of the menu uses: the first letter of a
// word where it is free, else any free letter. Items that have one keep it.
void giveMnemonics(QMenu* menu);

}  // namespace qb
