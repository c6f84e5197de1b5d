#pragma once

// The bundled HTML help, opened in the desktop's browser at a topic.

#include <QUrl>
#include <functional>

class QWidget;

namespace qb {

// Opens docs/help/quillarbor.html at #topic ("Main_Contents", "ratesetup",
// ...): the installed copy first, else the one in the source tree.
void openHelp(QWidget* parent, const char* topic);

// The address openHelp would open; empty when no help file is found.
QUrl helpUrl(const char* topic);

// Tests receive the address here instead of a browser; null restores the
// desktop's opener. The opener answers whether the address could be opened.
using HelpOpener = std::function<bool(const QUrl&)>;
void setHelpOpener(HelpOpener opener);

}  // namespace qb
