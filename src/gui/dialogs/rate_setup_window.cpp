#include "gui/dialogs/rate_setup_window.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "entry/rate_setup.h"
#include "gui/app_state.h"
#include "gui/dialogs/rate_dialog.h"
#include "gui/dialogs/rate_tree.h"
#include "gui/help.h"
#include "store/tables.h"

namespace qb {
namespace {

CEOID oidOf(const QTreeWidgetItem* item) {
    return item ? item->data(0, kRateOidRole).toUInt() : 0;
}

ClientId clientOf(const QTreeWidgetItem* item) {
    return item->data(0, kRateClientRole).toUInt();
}

}  // namespace

RateSetupWindow::RateSetupWindow(AppState& state, QWidget* parent)
    : QDialog(parent),
      state_(state),
      tree_(new QTreeWidget(this)),
      new_(new QPushButton(QStringLiteral("New..."), this)),
      modify_(new QPushButton(QStringLiteral("Modify..."), this)),
      delete_(new QPushButton(QStringLiteral("Delete"), this)) {
    setWindowTitle(QStringLiteral("Rate Setup"));
    tree_->setHeaderHidden(true);
    tree_->setRootIsDecorated(true);
    tree_->setMinimumSize(fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 16);
    new_->setObjectName(QStringLiteral("new"));
    modify_->setObjectName(QStringLiteral("modify"));
    delete_->setObjectName(QStringLiteral("delete"));

    for (const RateGroup& g : rateSetupGroups(state.masters())) {
        QTreeWidgetItem* group = addRateGroup(tree_, toQt(g.title), g.clientId);
        for (const RateRecord& r : g.rates) addRateNode(group, r);
        group->setExpanded(true);
    }
    tree_->setCurrentItem(tree_->topLevelItem(0));

    connect(tree_, &QTreeWidget::currentItemChanged, this, [this] { updateCommands(); });
    connect(tree_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        if (oidOf(item) != 0) modifyRate();
    });
    connect(new_, &QPushButton::clicked, this, [this] { newRate(); });
    connect(modify_, &QPushButton::clicked, this, [this] { modifyRate(); });
    connect(delete_, &QPushButton::clicked, this, [this] { deleteRate(); });

    auto* commands = new QVBoxLayout;
    commands->addWidget(new_);
    commands->addWidget(modify_);
    commands->addWidget(delete_);
    commands->addStretch();
    auto* body = new QHBoxLayout;
    body->addWidget(tree_, 1);
    body->addLayout(commands);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this,
            [this] { openHelp(this, "ratesetup"); });
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body);
    layout->addWidget(buttons);
    updateCommands();
}

void RateSetupWindow::updateCommands() {
    const bool onRate = oidOf(tree_->currentItem()) != 0;
    new_->setEnabled(tree_->currentItem() != nullptr);
    modify_->setEnabled(onRate);
    delete_->setEnabled(onRate);
}

QTreeWidgetItem* RateSetupWindow::selectedGroup() const {
    QTreeWidgetItem* item = tree_->currentItem();
    if (item && item->parent()) item = item->parent();
    return item;
}

void RateSetupWindow::refillGroup(QTreeWidgetItem* group, CEOID select) {
    qDeleteAll(group->takeChildren());
    std::vector<RateRecord> rates = ratesOf(state_.masters().rates, clientOf(group));
    sortRateGroup(rates);
    for (const RateRecord& r : rates) {
        QTreeWidgetItem* node = addRateNode(group, r);
        if (r.oid == select) tree_->setCurrentItem(node);
    }
    group->setExpanded(true);
    updateCommands();
}

void RateSetupWindow::newRate() {
    QTreeWidgetItem* group = selectedGroup();
    if (!group) return;
    RateDialog dialog(nullptr, this);
    if (dialog.exec() != QDialog::Accepted) return;
    const CEOID oid = addRateRecord(
        state_.masters().rates,
        {0, clientOf(group), dialog.description(), dialog.rateType(), dialog.rate(), false});
    refillGroup(group, oid);
}

void RateSetupWindow::modifyRate() {
    const CEOID oid = oidOf(tree_->currentItem());
    RateTable& rates = state_.masters().rates;
    RateRecord record;
    if (oid == 0 || !rates.seekOid(oid) || !readRate(rates, &record)) return;
    RateDialog dialog(&record, this);
    if (dialog.exec() != QDialog::Accepted) return;
    record.rateType = dialog.rateType();
    record.description = dialog.description();
    record.rate = dialog.rate();
    if (rates.seekOid(oid)) updateRateRecord(rates, record);
    refillGroup(tree_->currentItem()->parent(), oid);
}

void RateSetupWindow::deleteRate() {
    QTreeWidgetItem* item = tree_->currentItem();
    const CEOID oid = oidOf(item);
    RateTable& rates = state_.masters().rates;
    if (oid == 0 || !rates.seekOid(oid) || !rates.remove(oid)) return;
    delete item;
    updateCommands();
}

}  // namespace qb
