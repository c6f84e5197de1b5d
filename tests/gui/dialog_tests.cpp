// The dialogs of the main window, driven as a user would: choose items,
// type, press OK, read the messages shown.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <functional>
#include <memory>

#include "entry/rate_rules.h"
#include "gui/app_state.h"
#include "gui/dialogs/criteria_sheet.h"
#include "gui/dialogs/custom_period_dialog.h"
#include "gui/dialogs/customize_dialog.h"
#include "gui/dialogs/dialog_support.h"
#include "gui/dialogs/filter_dialog.h"
#include "gui/dialogs/options_dialog.h"
#include "gui/dialogs/rate_dialog.h"
#include "gui/dialogs/rate_setup_window.h"
#include "gui/dialogs/rate_tree.h"
#include "gui/gui_test_registry.h"
#include "gui/gui_test_support.h"
#include "gui/message_box.h"
#include "platform/calendar.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

using namespace guitest;

namespace {

// A store with two clients, their master data and the drop lists.
std::unique_ptr<AppState> makeState() {
    auto state = twoClientState();
    if (!state) return nullptr;
    MasterTables& m = state->masters();
    ClientId bolt = clientIdOf(m.clients, u"Bolt");
    addContact(m.contacts, bolt, u"Bob");
    ListTable lists(state->platform(), ListTable::Order::kByText);
    lists.open();
    lists.addItem(kListPhase, u"Planning");
    lists.addItem(kListCurrency, u"EUR");
    lists.addItem(kListCurrency, u"USD");
    lists.addItem(kListCustom1, u"North");
    return state;
}

ClientId idOf(AppState& state, const char16_t* client) {
    return clientIdOf(state.masters().clients, client);
}

QStringList childTexts(const QTreeWidgetItem* item) {
    QStringList texts;
    for (int i = 0; i < item->childCount(); ++i) texts << item->child(i)->text(0);
    return texts;
}

QTreeWidgetItem* topItem(QTreeWidget* tree, const QString& text) {
    const auto found = tree->findItems(text, Qt::MatchExactly);
    return found.isEmpty() ? nullptr : found.first();
}

}  // namespace

class DialogTests : public QObject {
    Q_OBJECT

  private slots:
    void filterDialogShowsAndKeepsTheFilter();
    void filterDialogAllItemsAndUnknownCriteria();
    void criteriaSheetRangeAndChoices();
    void rateDialogRefusesAndFocuses();
    void rateSetupNewModifyDelete();
    void rateTreeForTheBillingPage();
    void optionsWriteTheChoices();
    void customizeAndCustomPeriod();
};

void DialogTests::filterDialogShowsAndKeepsTheFilter() {
    auto state = makeState();
    QVERIFY(state);
    EntryFilter filter;
    filter.client = u"acme";  // the device's exact search ignores case
    filter.project = u"Web";
    filter.currency = u"EUR";
    filter.rateType = kWeekendRate;
    filter.showPaid = false;
    FilterDialog dialog(*state, filter);
    auto* client = child<QComboBox>(dialog, "client");
    auto* rateType = child<QComboBox>(dialog, "rateType");
    QCOMPARE(client->currentText(), QStringLiteral("Acme"));
    QCOMPARE(child<QComboBox>(dialog, "project")->currentText(), QStringLiteral("Web"));
    QCOMPARE(rateType->currentText(), QStringLiteral("Weekend Rate"));
    QVERIFY(!child<QCheckBox>(dialog, "paid")->isChecked());
    QVERIFY(child<QCheckBox>(dialog, "unpaid")->isChecked());
    // Every contact of every client, sorted, after "(All)".
    auto* billTo = child<QComboBox>(dialog, "billTo");
    QCOMPARE(billTo->count(), 3);
    QCOMPARE(billTo->itemText(1), QStringLiteral("Alice"));

    choose(billTo, QStringLiteral("Bob"));
    choose(rateType, QStringLiteral("Normal Rate"));
    child<QCheckBox>(dialog, "nonBillable")->setChecked(false);
    pressOk(dialog);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(filter.client == u"Acme");  // the list's spelling is what OK copies
    QVERIFY(filter.project == u"Web");
    QVERIFY(filter.currency == u"EUR");
    QVERIFY(filter.billTo == u"Bob");
    QCOMPARE(filter.rateType, kNormalRate);  // item 1 is type 0
    QVERIFY(!filter.showPaid && filter.showUnpaid && !filter.showNonBillable);
    QVERIFY(filter.phase.empty() && filter.custom1.empty());

    // Cancel leaves the filter as it was.
    const EntryFilter before = filter;
    FilterDialog again(*state, filter);
    choose(child<QComboBox>(again, "client"), QStringLiteral("(All)"));
    again.reject();
    QVERIFY(filter.client == before.client);
}

void DialogTests::filterDialogAllItemsAndUnknownCriteria() {
    auto state = makeState();
    QVERIFY(state);
    EntryFilter filter;
    filter.client = u"Gone Ltd";  // no longer in the master data
    filter.custom2 = u"Old";
    FilterDialog dialog(*state, filter);
    for (const char* name : {"client", "project", "phase", "custom1", "custom2", "custom3",
                             "currency", "billTo", "rateType"}) {
        auto* box = child<QComboBox>(dialog, name);
        QVERIFY2(box && box->itemText(0) == QStringLiteral("(All)"), name);
        QVERIFY2(box->currentIndex() == 0, name);
    }
    // Until OK the remembered criterion still filters; OK with everything at
    // "(All)" and every box checked leaves a reset filter.
    QVERIFY(filter.client == u"Gone Ltd");
    pressOk(dialog);
    EntryFilter reset;
    QVERIFY(filter.client.empty() && filter.custom2.empty());
    QCOMPARE(filter.rateType, -1);
    QVERIFY(filter.showPaid && filter.showUnpaid && filter.showNonBillable);
    QCOMPARE(filter.hasDateRange(), reset.hasDateRange());

    // Only the boxes unchecked: the combo boxes still give "any".
    FilterDialog unpaidOnly(*state, filter);
    child<QCheckBox>(unpaidOnly, "paid")->setChecked(false);
    child<QCheckBox>(unpaidOnly, "nonBillable")->setChecked(false);
    pressOk(unpaidOnly);
    QVERIFY(filter.client.empty());
    QCOMPARE(filter.rateType, -1);
    QVERIFY(!filter.showPaid && filter.showUnpaid && !filter.showNonBillable);
}

void DialogTests::criteriaSheetRangeAndChoices() {
    auto state = makeState();
    QVERIFY(state);
    state->settings().custom1Caption = u"Region";
    EntryFilter preset;
    preset.start = makeDate(2026, 3, 1);
    preset.end = makeDate(2026, 3, 31);
    preset.task = u"Ad hoc";  // in no list: kept as a choice of its own
    CriteriaSheet sheet(*state, preset);
    QCOMPARE(sheet.windowTitle(), QStringLiteral("Quillarbor"));
    child<QDateEdit>(sheet, "end")->setDate(QDate(2026, 3, 5));
    choose(child<QComboBox>(sheet, "client"), QStringLiteral("Bolt"));
    choose(child<QComboBox>(sheet, "rateType"), QStringLiteral("Fixed Rate"));
    choose(child<QComboBox>(sheet, "custom1"), QStringLiteral("North"));
    child<QCheckBox>(sheet, "unpaid")->setChecked(false);
    // The custom fields carry the user's names.
    QStringList labels;
    for (QLabel* l : sheet.findChildren<QLabel*>()) labels << l->text();
    QVERIFY(labels.contains(QStringLiteral("Region:")));
    // Tasks come from projects and from loose tasks of every client.
    QCOMPARE(child<QComboBox>(sheet, "task")->findText(QStringLiteral("Support")) > 0, true);
    QCOMPARE(child<QComboBox>(sheet, "task")->findText(QStringLiteral("Design")) > 0, true);

    const EntryFilter f = sheet.criteria();
    QVERIFY(f.hasDateRange());
    FILETIME lastSecond = 0;
    systemTimeToFileTime(makeDate(2026, 3, 5, 23, 59, 59), &lastSecond);
    QCOMPARE(f.rangeEnd(), lastSecond);
    QVERIFY(f.client == u"Bolt" && f.task == u"Ad hoc" && f.custom1 == u"North");
    QCOMPARE(f.rateType, int(kFixedRate));
    QVERIFY(!f.showUnpaid && f.showPaid && f.showNonBillable);

    // An entry late on the end day passes, one at the next midnight does not.
    TimeEntry entry;
    entry.client = u"Bolt";
    entry.task = u"Ad hoc";
    entry.custom1 = u"North";
    entry.rateType = kFixedRate;
    entry.billable = true;
    entry.paid = true;
    entry.date = lastSecond;
    QVERIFY(f.matches(entry));
    entry.date = lastSecond + 10000000ull;
    QVERIFY(!f.matches(entry));

    // The pickers speak the user's short date.
    QCOMPARE(child<QDateEdit>(sheet, "start")->displayFormat(), QStringLiteral("M/d/yyyy"));
    QCOMPARE(qtDatePicture(u"d.M.y 'yy'"), QStringLiteral("d.M.yy 'yy'"));

    // Without a preset range the sheet still hands one back.
    CriteriaSheet fresh(*state, EntryFilter());
    QVERIFY(fresh.criteria().hasDateRange());
    QVERIFY(fresh.criteria().client.empty());
}

void DialogTests::rateDialogRefusesAndFocuses() {
    Messages messages;
    RateDialog dialog(nullptr);
    dialog.show();
    auto* description = child<QLineEdit>(dialog, "description");
    auto* rate = child<QLineEdit>(dialog, "rate");
    QCOMPARE(description->maxLength(), 63);
    QCOMPARE(rate->maxLength(), 16);

    QTest::keyClicks(rate, QStringLiteral("50"));
    pressOk(dialog);
    QCOMPARE(messages.shown.size(), size_t(1));
    QCOMPARE(messages.shown[0].text, QStringLiteral("Please enter a description."));
    QVERIFY(messages.shown[0].icon == MessageIcon::kExclamation);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.focusWidget(), description);

    QTest::keyClicks(description, QStringLiteral("Standard"));
    rate->setText(QStringLiteral("1e2"));  // a letter, though a number to strtod
    pressOk(dialog);
    QCOMPARE(messages.shown.size(), size_t(2));
    QCOMPARE(messages.shown[1].text,
             QStringLiteral("This is not a valid rate. Rate can have up to 2 decimal places."));
    QCOMPARE(dialog.focusWidget(), rate);
    QVERIFY(dialog.isVisible());

    rate->setText(QStringLiteral("12.999"));
    choose(child<QComboBox>(dialog, "rateType"), QStringLiteral("Discount Rate"));
    pressOk(dialog);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.rate(), 1299u);  // the third decimal is cut
    QCOMPARE(dialog.rateType(), std::uint16_t(kDiscountRate));
    QVERIFY(dialog.description() == u"Standard");

    // An existing rate shows two decimals; an empty rate is 0.
    RateRecord record;
    record.rateType = kFixedRate;
    record.description = u"Flat";
    record.rate = 15000;
    RateDialog modify(&record);
    QCOMPARE(child<QLineEdit>(modify, "rate")->text(), QStringLiteral("150.00"));
    QCOMPARE(child<QComboBox>(modify, "rateType")->currentIndex(), int(kFixedRate));
    child<QLineEdit>(modify, "rate")->clear();
    pressOk(modify);
    QCOMPARE(modify.result(), int(QDialog::Accepted));
    QCOMPARE(modify.rate(), 0u);
    QCOMPARE(messages.shown.size(), size_t(2));
}

void DialogTests::rateSetupNewModifyDelete() {
    Messages messages;
    auto state = makeState();
    QVERIFY(state);
    RateTable& rates = state->masters().rates;
    const ClientId acme = idOf(*state, u"Acme");
    addRate(rates, kOvertimeRate, 90, kDefaultRatesClient, u"Late", false);
    addRate(rates, kNormalRate, 60, kDefaultRatesClient, u"Standard", false);
    addRate(rates, kNormalRate, 50, kDefaultRatesClient, u"Junior", false);
    addRate(rates, kFixedRate, 500, acme, u"Retainer", false);

    RateSetupWindow window(*state);
    window.show();
    QTreeWidget* tree = window.tree();
    QCOMPARE(tree->topLevelItemCount(), 3);
    QCOMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("(Default Rates)"));
    QCOMPARE(tree->topLevelItem(1)->text(0), QStringLiteral("Acme"));
    QCOMPARE(tree->topLevelItem(2)->text(0), QStringLiteral("Bolt"));
    QCOMPARE(childTexts(tree->topLevelItem(0)),
             QStringList({"Junior (50.00)", "Standard (60.00)", "Late (90.00)"}));

    auto* newButton = child<QPushButton>(window, "new");
    auto* modify = child<QPushButton>(window, "modify");
    auto* remove = child<QPushButton>(window, "delete");
    QTreeWidgetItem* acmeGroup = topItem(tree, QStringLiteral("Acme"));
    tree->setCurrentItem(acmeGroup->child(0));
    QVERIFY(modify->isEnabled() && remove->isEnabled());
    tree->setCurrentItem(acmeGroup);
    QVERIFY(newButton->isEnabled() && !modify->isEnabled() && !remove->isEnabled());

    // New under a client's group: stored for that client, sorted in.
    whenModal<RateDialog>([](RateDialog* d) {
        choose(child<QComboBox>(*d, "rateType"), QStringLiteral("Normal Rate"));
        child<QLineEdit>(*d, "description")->setText(QStringLiteral("Day"));
        child<QLineEdit>(*d, "rate")->setText(QStringLiteral("75.5"));
        pressOk(*d);
    });
    QTest::mouseClick(newButton, Qt::LeftButton);
    QCOMPARE(childTexts(acmeGroup), QStringList({"Day (75.50)", "Retainer (500.00)"}));
    QCOMPARE(tree->currentItem()->text(0), QStringLiteral("Day (75.50)"));
    std::vector<RateRecord> stored = ratesOf(rates, acme);
    QCOMPARE(stored.size(), size_t(2));

    // New from a rate node goes to that rate's group.
    tree->setCurrentItem(tree->topLevelItem(0)->child(2));
    whenModal<RateDialog>([](RateDialog* d) {
        child<QLineEdit>(*d, "description")->setText(QStringLiteral("Basic"));
        child<QLineEdit>(*d, "rate")->setText(QStringLiteral("40"));
        pressOk(*d);
    });
    QTest::mouseClick(newButton, Qt::LeftButton);
    QCOMPARE(childTexts(tree->topLevelItem(0)),
             QStringList({"Basic (40.00)", "Junior (50.00)", "Standard (60.00)", "Late (90.00)"}));

    // Modify rewrites the same record and keeps the group in order.
    tree->setCurrentItem(tree->topLevelItem(0)->child(0));
    const CEOID basic = tree->currentItem()->data(0, kRateOidRole).toUInt();
    whenModal<RateDialog>([](RateDialog* d) {
        QCOMPARE(child<QLineEdit>(*d, "description")->text(), QStringLiteral("Basic"));
        choose(child<QComboBox>(*d, "rateType"), QStringLiteral("Weekend Rate"));
        child<QLineEdit>(*d, "rate")->setText(QStringLiteral("45"));
        pressOk(*d);
    });
    QTest::mouseClick(modify, Qt::LeftButton);
    QCOMPARE(childTexts(tree->topLevelItem(0)),
             QStringList({"Junior (50.00)", "Standard (60.00)", "Late (90.00)", "Basic (45.00)"}));
    RateRecord record;
    QVERIFY(rates.seekOid(basic) && readRate(rates, &record));
    QCOMPARE(record.rateType, std::uint16_t(kWeekendRate));
    QCOMPARE(record.rate, 4500u);
    QCOMPARE(record.clientId, kDefaultRatesClient);

    // Delete asks nothing.
    QCOMPARE(tree->currentItem()->data(0, kRateOidRole).toUInt(), basic);
    QTest::mouseClick(remove, Qt::LeftButton);
    QVERIFY(!rates.seekOid(basic));
    QCOMPARE(tree->topLevelItem(0)->childCount(), 3);
    QVERIFY(messages.shown.empty());
}

void DialogTests::rateTreeForTheBillingPage() {
    auto state = makeState();
    QVERIFY(state);
    const ClientId acme = idOf(*state, u"Acme");
    addRate(state->masters().rates, kNormalRate, 60, kDefaultRatesClient, u"Standard", false);
    addRate(state->masters().rates, kFixedRate, 12.5, acme, u"Visit", false);
    QTreeWidget tree;
    fillRateTree(&tree, *state, acme, QStringLiteral("Acme"));
    QCOMPARE(tree.topLevelItemCount(), 3);
    QCOMPARE(tree.topLevelItem(0)->text(0), QStringLiteral("(Custom Rate)"));
    QTreeWidgetItem* own = tree.topLevelItem(2);
    QCOMPARE(own->text(0), QStringLiteral("Acme"));
    QVERIFY(own->isExpanded() && tree.topLevelItem(1)->isExpanded());
    QCOMPARE(own->child(0)->text(0), QStringLiteral("Visit (12.50)"));
    QCOMPARE(own->child(0)->data(0, kRateTypeRole).toInt(), int(kFixedRate));
    QCOMPARE(own->child(0)->data(0, kRateValueRole).toUInt(), 1250u);
    QVERIFY(own->child(0)->data(0, kRateOidRole).toUInt() != 0);

    // No client: only the default rates; filling again replaces everything.
    fillRateTree(&tree, *state, kNoClient, QString());
    QCOMPARE(tree.topLevelItemCount(), 2);
    QCOMPARE(childTexts(tree.topLevelItem(1)), QStringList({"Standard (60.00)"}));
}

void DialogTests::optionsWriteTheChoices() {
    Settings settings = defaultSettings();
    settings.optionFlags |= 0x100;  // a bit no page owns survives
    const Settings before = settings;
    {
        OptionsDialog dialog(settings);
        child<QCheckBox>(dialog, "bold")->setChecked(false);
        child<QCheckBox>(dialog, "billable")->setChecked(true);
        dialog.reject();
    }
    QVERIFY(settings == before);

    OptionsDialog dialog(settings);
    QCOMPARE(child<QComboBox>(dialog, "minTime")->currentText(), QStringLiteral("15"));
    QCOMPARE(child<QComboBox>(dialog, "timeInterval")->currentText(), QStringLiteral("30 Minute"));
    QCOMPARE(child<QComboBox>(dialog, "fontSize")->currentIndex(), 1);
    child<QComboBox>(dialog, "weekStart")->setCurrentIndex(1);
    child<QComboBox>(dialog, "itemTap")->setCurrentIndex(1);
    child<QComboBox>(dialog, "fontSize")->setCurrentIndex(3);
    child<QCheckBox>(dialog, "bold")->setChecked(false);
    child<QCheckBox>(dialog, "weekNumber")->setChecked(true);
    child<QCheckBox>(dialog, "precise")->setChecked(true);
    child<QCheckBox>(dialog, "billable")->setChecked(true);
    child<QCheckBox>(dialog, "granularity")->setChecked(true);
    choose(child<QComboBox>(dialog, "minTime"), QStringLiteral("45"));
    choose(child<QComboBox>(dialog, "timeInterval"), QStringLiteral("6 Minutes"));
    child<QLineEdit>(dialog, "currency")->setText(QStringLiteral("EUR"));
    child<QLineEdit>(dialog, "custom2")->setText(QStringLiteral("Ticket"));
    bool extraApplied = false;
    dialog.addPage(new QWidget, QStringLiteral("Export"), [&](Settings& s) {
        extraApplied = true;
        s.breakSub = 3;
    });
    pressOk(dialog);

    QCOMPARE(settings.optionFlags,
             std::uint32_t(0x100 | kBillableDefault | kTapPreview | kWeekStartsMonday |
                           kPreciseCalculation | kDurationGranularity | kShowWeekNumber));
    QCOMPARE(settings.fontSize, std::uint16_t(3));
    QCOMPARE(settings.minTime, std::uint16_t(45));
    QCOMPARE(settings.timeInterval, std::uint16_t(4));
    QVERIFY(settings.defaultCurrency == u"EUR");
    QVERIFY(settings.custom1Caption == u"Custom 1" && settings.custom2Caption == u"Ticket");
    QVERIFY(extraApplied && settings.breakSub == 3);

    // A value the lists do not offer is kept by OK.
    settings.minTime = 7;
    OptionsDialog odd(settings);
    pressOk(odd);
    QCOMPARE(settings.minTime, std::uint16_t(7));
}

void DialogTests::customizeAndCustomPeriod() {
    ListDisplay display;
    display.displayFlags = 0x01;
    display.colour[1] = 5;
    CustomizeDialog dialog(display);
    QVERIFY(child<QCheckBox>(dialog, "showClientName")->isChecked());
    auto* billable = child<QComboBox>(dialog, "billableColour");
    QCOMPARE(billable->count(), int(kPaletteSize));
    QCOMPARE(billable->currentIndex(), 5);
    child<QCheckBox>(dialog, "showClientName")->setChecked(false);
    child<QCheckBox>(dialog, "showStatusIcon")->setChecked(true);
    choose(child<QComboBox>(dialog, "entryTime"), QStringLiteral("Start, End"));
    child<QComboBox>(dialog, "paidColour")->setCurrentIndex(27);
    billable->setCurrentIndex(0);
    pressOk(dialog);
    QCOMPARE(display.displayFlags, 0x02u);
    QCOMPARE(display.entryTimeMode, 2u);
    QCOMPARE(display.colour[0], 0u);
    QCOMPARE(display.colour[1], 0u);
    QCOMPARE(display.colour[2], 27u);

    // An end before the start is taken as given.
    SYSTEMTIME start = makeDate(2026, 5, 10);
    SYSTEMTIME end = makeDate(2026, 5, 20);
    whenModal<CustomPeriodDialog>([](CustomPeriodDialog* d) {
        QCOMPARE(d->windowTitle(), QStringLiteral("Custom Period"));
        child<QDateEdit>(*d, "end")->setDate(QDate(2026, 5, 1));
        pressOk(*d);
    });
    QVERIFY(CustomPeriodDialog::choose(nullptr, &start, &end));
    QVERIFY(start == makeDate(2026, 5, 10));
    QVERIFY(end == makeDate(2026, 5, 1));
}

QB_GUI_TEST(DialogTests);

}  // namespace qb

#include "dialog_tests.moc"
