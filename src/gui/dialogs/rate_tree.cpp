#include "gui/dialogs/rate_tree.h"

#include <QTreeWidget>

#include "entry/rate_setup.h"
#include "gui/app_state.h"
#include "gui/icons.h"
#include "store/tables.h"

namespace qb {

QTreeWidgetItem* addRateGroup(QTreeWidget* tree, const QString& title, ClientId client) {
    auto* group = new QTreeWidgetItem(tree, QStringList(title));
    group->setIcon(0, groupIcon());
    group->setData(0, kRateOidRole, 0u);
    group->setData(0, kRateClientRole, client);
    group->setExpanded(true);
    return group;
}

QTreeWidgetItem* addRateNode(QTreeWidgetItem* group, const RateRecord& rate) {
    auto* node = new QTreeWidgetItem(group, QStringList(toQt(rateNodeText(rate))));
    node->setIcon(0, rateIcon(rate.rateType));
    node->setData(0, kRateTypeRole, rate.rateType);
    node->setData(0, kRateOidRole, rate.oid);
    node->setData(0, kRateValueRole, rate.rate);
    node->setData(0, kRateClientRole, group->data(0, kRateClientRole));
    return node;
}

void fillRateTree(QTreeWidget* tree, AppState& state, ClientId client, const QString& clientName) {
    tree->clear();
    auto* custom = new QTreeWidgetItem(tree, QStringList(QStringLiteral("(Custom Rate)")));
    custom->setData(0, kRateOidRole, 0u);
    RateTable& rates = state.masters().rates;
    QTreeWidgetItem* defaults =
        addRateGroup(tree, toQt(std::u16string(kDefaultRatesTitle)), kDefaultRatesClient);
    for (const RateRecord& r : ratesOf(rates, kDefaultRatesClient)) addRateNode(defaults, r);
    defaults->setExpanded(true);
    if (client != kNoClient && client != kDefaultRatesClient) {
        QTreeWidgetItem* own = addRateGroup(tree, clientName, client);
        for (const RateRecord& r : ratesOf(rates, client)) addRateNode(own, r);
        own->setExpanded(true);
    }
}

}  // namespace qb
