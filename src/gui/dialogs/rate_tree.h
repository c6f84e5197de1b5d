#pragma once

// The tree of rates the entry editor's Billing page offers.

#include <QString>
#include <Qt>

#include "store/property_table.h"

class QTreeWidget;
class QTreeWidgetItem;

namespace qb {

class AppState;
struct RateRecord;

// What a rate node carries in column 0. The "(Custom Rate)" node and the
// groups carry record id 0.
enum RateTreeRole : int {
    kRateTypeRole = Qt::UserRole,  // the rate type
    kRateOidRole,                  // the RateRecord's id
    kRateValueRole,                // the rate in hundredths
    kRateClientRole,               // the ClientId of the group
};

// Clears the tree and fills it: "(Custom Rate)", then "(Default Rates)" with
// every rate of ClientId 0, then, when `client` names a client (neither
// kNoClient nor the default rates), a group titled `clientName` with that
// client's rates. Rate nodes read "<description> (<rate>)"; groups are
// expanded.
void fillRateTree(QTreeWidget* tree, AppState& state, ClientId client, const QString& clientName);

// The pieces of the tree, shared with the Rate Setup window: an expanded
// group node and a rate node under it.
QTreeWidgetItem* addRateGroup(QTreeWidget* tree, const QString& title, ClientId client);
QTreeWidgetItem* addRateNode(QTreeWidgetItem* group, const RateRecord& rate);

}  // namespace qb
