#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "export/xml_export.h"
#include "gui/app_state.h"
#include "gui/dialogs/options_dialog.h"
#include "gui/reports/report_commands.h"

namespace qb {
namespace {

constexpr int kEncodingChoices = 6;

// Selects `index`; an index the list does not offer is added as its number,
// so that OK without a change keeps it.
QComboBox* indexBox(const QStringList& texts, std::uint32_t index, const char* name,
                    QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QString::fromLatin1(name));
    for (int i = 0; i < texts.size(); ++i) box->addItem(texts[i], i);
    int at = box->findData(static_cast<int>(index));
    if (at < 0) {
        box->addItem(QString::number(index), static_cast<int>(index));
        at = box->count() - 1;
    }
    box->setCurrentIndex(at);
    return box;
}

std::uint32_t chosenIndex(const QComboBox* box) {
    return static_cast<std::uint32_t>(box->currentData().toInt());
}

}  // namespace

void addExportPage(OptionsDialog& dialog, const Settings& settings) {
    auto* page = new QWidget;

    auto* xml = new QGroupBox(QStringLiteral("XML Export"), page);
    QStringList encodings;
    for (int i = 0; i < kEncodingChoices; ++i) {
        encodings << toQt(std::u16string(encodingLabel(static_cast<std::uint16_t>(i))));
    }
    auto* encoding = indexBox(encodings, settings.encoding, "encoding", xml);
    auto* xmlForm = new QFormLayout(xml);
    xmlForm->addRow(QStringLiteral("Encoding:"), encoding);

    auto* csv = new QGroupBox(QStringLiteral("CSV Export"), page);
    auto* note = new QLabel(QStringLiteral("Since one record can only occupy one line, line "
                                           "breaks in notes must be substituted with some "
                                           "special character(s)."),
                            csv);
    note->setWordWrap(true);
    auto* breakSub = indexBox({QStringLiteral("1 space"), QStringLiteral("2 space"),
                               QStringLiteral("~`"), QStringLiteral("|")},
                              settings.breakSub, "breakSub", csv);
    auto* csvForm = new QFormLayout(csv);
    csvForm->addRow(note);
    csvForm->addRow(QStringLiteral("Replace Line Break with:"), breakSub);

    // Nothing prints the symbol yet; the page keeps the stored choice.
    auto* hourSymbol = indexBox({QStringLiteral("(None)"), QStringLiteral("h"),
                                 QStringLiteral("hr"), QStringLiteral("hrs")},
                                settings.hourSymbol, "hourSymbol", page);
    auto* hourForm = new QFormLayout;
    // In line with the rows inside the group boxes above.
    hourForm->setContentsMargins(10, 0, 10, 0);
    hourForm->addRow(QStringLiteral("Hour Symbol:"), hourSymbol);

    auto* column = new QVBoxLayout(page);
    column->addWidget(xml);
    column->addWidget(csv);
    column->addLayout(hourForm);
    column->addStretch(1);

    dialog.addPage(page, QStringLiteral("Export"), [encoding, breakSub, hourSymbol](Settings& s) {
        s.encoding = static_cast<std::uint16_t>(chosenIndex(encoding));
        s.breakSub = static_cast<std::uint16_t>(chosenIndex(breakSub));
        s.hourSymbol = chosenIndex(hourSymbol);
    });
}

}  // namespace qb
