#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFile>
#include <QTest>

#include "gui/app_state.h"
#include "gui/clients/client_setup_window.h"
#include "gui/commands.h"
#include "gui/dialogs/rate_setup_window.h"
#include "gui/entry/timer_work.h"
#include "gui/entry/timers_window.h"
#include "gui/help.h"
#include "gui/main_window.h"
#include "gui/reports/report_designer.h"
#include "gui/tools/archive_dialog.h"
#include "gui/tools/copy_dialog.h"
#include "gui_test_registry.h"
#include "gui_test_support.h"
#include "platform/calendar.h"
#include "store/time_entry.h"

namespace qb {

namespace {

// The window's Help button: the button box's, or one titled Help.
QAbstractButton* helpButton(QWidget& window) {
    for (auto* box : window.findChildren<QDialogButtonBox*>()) {
        if (QAbstractButton* b = box->button(QDialogButtonBox::Help)) return b;
    }
    for (auto* b : window.findChildren<QAbstractButton*>()) {
        if (b->text().remove(QLatin1Char('&')) == QStringLiteral("Help")) return b;
    }
    return nullptr;
}

// The help file holds a section for the topic an address points at.
bool landsOnSection(const QUrl& url) {
    QFile file(url.toLocalFile());
    if (url.fragment().isEmpty() || !file.open(QIODevice::ReadOnly)) return false;
    QByteArray html = file.readAll();
    return html.contains("id=\"" + url.fragment().toUtf8() + "\"");
}

}  // namespace

class HelpTests : public QObject {
    Q_OBJECT
  private slots:
    void init() {
        opened_.clear();
        setHelpOpener([this](const QUrl& url) {
            opened_.push_back(url);
            return true;
        });
    }
    void cleanup() { setHelpOpener(nullptr); }

    void everyWindowOpensItsTopic() {
        AppState state(Platform::inMemory());
        QVERIFY(state.open());
        TimeEntry entry;
        systemTimeToFileTime(makeDate(2026, 11, 17), &entry.date);
        entry.client = u"Acme";
        entry.task = u"Work";
        QWidget owner;
        TimerWork timers(state, &owner, nullptr);
        SYSTEMTIME day = makeDate(2026, 11, 17);

        RateSetupWindow rates(state);
        ClientSetupWindow clients(state);
        TimersWindow timersWindow(state, timers);
        ArchiveDialog archive(state, day, day);
        CopyDialog copy(state, entry);
        ReportDesigner designer(state);
        const std::pair<QWidget*, QString> windows[] = {
            {&rates, QStringLiteral("ratesetup")},
            {&clients, QStringLiteral("clientsetup")},
            {&timersWindow, QStringLiteral("rectime")},
            {&archive, QStringLiteral("deldata")},
            {&copy, QStringLiteral("copy")},
            {&designer, QStringLiteral("reports")},
        };
        for (const auto& [window, topic] : windows) {
            QAbstractButton* help = helpButton(*window);
            QVERIFY2(help, qPrintable(topic));
            opened_.clear();
            help->click();
            QCOMPARE(opened_.size(), std::size_t(1));
            QCOMPARE(opened_[0].fragment(), topic);
            QVERIFY2(landsOnSection(opened_[0]), qPrintable(opened_[0].toString()));
        }

        MainWindow main(state);
        opened_.clear();
        main.runCommand(kCmdHelp);
        QCOMPARE(opened_.size(), std::size_t(1));
        QCOMPARE(opened_[0].fragment(), QStringLiteral("Main_Contents"));
        QVERIFY(landsOnSection(opened_[0]));
    }

  private:
    std::vector<QUrl> opened_;
};

QB_GUI_TEST(HelpTests);

}  // namespace qb

#include "help_tests.moc"
