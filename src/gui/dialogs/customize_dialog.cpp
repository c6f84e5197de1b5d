#include "gui/dialogs/customize_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "gui/app_state.h"
#include "gui/colours.h"

namespace qb {
namespace {

constexpr std::uint32_t kClientNameBit = 0x01;
constexpr std::uint32_t kStatusIconBit = 0x02;

const char* const kColourLabels[3] = {"Non-Billable Item:", "Billable Item:", "Paid Item:"};
const char* const kColourNames[3] = {"nonBillableColour", "billableColour", "paidColour"};

// A swatch drawn at twice its size, so that it stays sharp on a scaled
// screen.
QIcon swatch(const QColor& colour, const QColor& frame, const QSize& size) {
    QPixmap pixmap(size * 2);
    pixmap.setDevicePixelRatio(2);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(frame, 1));
    p.setBrush(colour);
    p.drawRoundedRect(QRectF(0.5, 0.5, size.width() - 1, size.height() - 1), 2, 2);
    return QIcon(pixmap);
}

}  // namespace

QComboBox* makeColourPicker(std::uint32_t current, QWidget* parent) {
    auto* box = new QComboBox(parent);
    const QSize size(48, 16);
    box->setIconSize(size);
    box->setMaxVisibleItems(6);
    // Without this the style pops the whole palette up as a menu, ignoring
    // the six visible rows.
    box->setStyleSheet(QStringLiteral("QComboBox { combobox-popup: 0; }"));
    const QColor text = box->palette().color(QPalette::Text);
    const QColor frame = box->palette().color(QPalette::Mid);
    for (std::uint32_t i = 0; i < kPaletteSize; ++i) {
        const QColor colour = paletteColour(i, text);
        box->addItem(swatch(colour, frame, size), QString());
        const QString name =
            i == 0 ? QStringLiteral("System text colour") : colour.name(QColor::HexRgb);
        box->setItemData(static_cast<int>(i), name, Qt::ToolTipRole);
        box->setItemData(static_cast<int>(i), name, Qt::AccessibleTextRole);
    }
    box->setCurrentIndex(current < kPaletteSize ? static_cast<int>(current) : 0);
    return box;
}

CustomizeDialog::CustomizeDialog(ListDisplay& display, QWidget* parent)
    : QDialog(parent),
      display_(display),
      clientName_(new QCheckBox(QStringLiteral("Show Client Name"), this)),
      entryTime_(new QComboBox(this)),
      statusIcon_(new QCheckBox(QStringLiteral("Show Status Icon"), this)) {
    setWindowTitle(QStringLiteral("Customize"));
    clientName_->setObjectName(QStringLiteral("showClientName"));
    clientName_->setChecked(display.showClientName());
    entryTime_->setObjectName(QStringLiteral("entryTime"));
    for (std::u16string_view name : kEntryTimeModeNames) {
        entryTime_->addItem(toQt(std::u16string(name)));
    }
    entryTime_->setCurrentIndex(
        display.entryTimeMode < std::size(kEntryTimeModeNames) ? display.entryTimeMode : 0);
    statusIcon_->setObjectName(QStringLiteral("showStatusIcon"));
    statusIcon_->setChecked(display.showStatusIcon());

    auto* form = new QFormLayout;
    form->addRow(clientName_);
    form->addRow(QStringLiteral("Entry Time:"), entryTime_);
    form->addRow(statusIcon_);
    for (int i = 0; i < 3; ++i) {
        colours_[i] = makeColourPicker(display.colour[i], this);
        colours_[i]->setObjectName(QString::fromLatin1(kColourNames[i]));
        form->addRow(QString::fromLatin1(kColourLabels[i]), colours_[i]);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

void CustomizeDialog::accept() {
    display_.entryTimeMode = static_cast<std::uint32_t>(entryTime_->currentIndex());
    display_.displayFlags &= ~(kClientNameBit | kStatusIconBit);
    if (clientName_->isChecked()) display_.displayFlags |= kClientNameBit;
    if (statusIcon_->isChecked()) display_.displayFlags |= kStatusIconBit;
    for (int i = 0; i < 3; ++i) {
        display_.colour[i] = static_cast<std::uint32_t>(colours_[i]->currentIndex());
    }
    QDialog::accept();
}

}  // namespace qb
