// The exports, the report command and the report designer, driven as a user
// would: confirm the criteria sheet, answer the file chooser and the name
// prompt, read the messages, the written files and the saved layouts.

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "app/settings.h"
#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/dialogs/criteria_sheet.h"
#include "gui/dialogs/options_dialog.h"
#include "gui/main_window.h"
#include "gui/reports/layout_dialogs.h"
#include "gui/reports/report_commands.h"
#include "gui/reports/report_designer.h"
#include "gui_test_registry.h"
#include "gui_test_support.h"
#include "platform/calendar.h"
#include "report/saved_layouts.h"
#include "store/time_entry.h"

namespace qb {

using namespace guitest;

namespace {

const QString kExportFailed =
    QStringLiteral("Export failed. Please make sure there is enough storage space and try agin.");

void addOn(AppState& state, int day, const char16_t* client) {
    TimeEntry e;
    systemTimeToFileTime(makeDate(2026, 11, day), &e.date);
    e.client = client;
    e.task = u"Work";
    e.duration = 150;
    e.billable = true;
    addEntry(state.entries(), e);
}

std::unique_ptr<AppState> makeState() {
    auto state = std::make_unique<AppState>(Platform::inMemory());
    if (!state->open()) return nullptr;
    // The week of the 21st holds the 20th; the 2nd lies outside it.
    addOn(*state, 20, u"Acme");
    addOn(*state, 2, u"Early");
    return state;
}

bool sameDay(const SYSTEMTIME& a, const SYSTEMTIME& b) {
    return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDay == b.wDay;
}

QByteArray contents(const QString& file) {
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Confirms the next criteria sheet as preset, keeping what it was preset with.
void confirmCriteria(EntryFilter* preset) {
    whenModal<CriteriaSheet>([preset](CriteriaSheet* sheet) {
        *preset = sheet->criteria();
        pressOk(*sheet);
    });
}

// Answers the next name prompts in turn, an empty answer with Cancel, and
// keeps the name each prompt offered.
void answerPrompts(QStringList answers, QStringList* offered) {
    if (answers.isEmpty()) return;
    whenModal<NamePrompt>([answers, offered](NamePrompt* prompt) mutable {
        auto* edit = child<QLineEdit>(*prompt, "name");
        offered->append(edit->text());
        const QString answer = answers.takeFirst();
        answerPrompts(answers, offered);
        if (answer.isEmpty()) {
            prompt->reject();
        } else {
            edit->setText(answer);
            pressOk(*prompt);
        }
    });
}

ReportLayout titled(const char16_t* title) {
    ReportLayout l = dateLayout();
    l.setTitle(title);
    return l;
}

}  // namespace

class ReportTests : public QObject {
    Q_OBJECT
  private slots:
    void init() { qputenv("QUILLARBOR_NOW", "2026-11-21T10:00:00"); }
    void cleanup() {
        setSaveFileChooser(nullptr);
        setReportOpener(nullptr);
        qunsetenv("QUILLARBOR_NOW");
    }

    void exportsWriteThePeriodToTheChosenFile() {
        auto state = makeState();
        QVERIFY(state);
        MainWindow window(*state);
        QTemporaryDir dir;
        SYSTEMTIME first{};
        SYSTEMTIME last{};
        window.periodView().getPeriod(&first, &last);
        const struct {
            int command;
            const char* typed;
            QString written;
            QString filter;
        } cases[] = {
            {kCmdExportCsv, "hours", dir.filePath("hours.csv"),
             QStringLiteral("CSV Files (*.csv)")},
            {kCmdExportXml, "hours.xml", dir.filePath("hours.xml"),
             QStringLiteral("XML Files (*.xml)")},
        };
        for (const auto& c : cases) {
            SaveFileRequest asked;
            setSaveFileChooser([&](QWidget*, const SaveFileRequest& r) {
                asked = r;
                return dir.filePath(QString::fromLatin1(c.typed));
            });
            Messages messages;
            EntryFilter preset;
            confirmCriteria(&preset);
            window.runCommand(c.command);
            QCOMPARE(asked.filter, c.filter);
            QVERIFY(sameDay(preset.start, first));
            QVERIFY(sameDay(preset.end, last));
            const QByteArray text = contents(c.written);
            QVERIFY2(text.contains("Acme"), c.typed);
            QVERIFY(!text.contains("Early"));
            QVERIFY(messages.shown.empty());
        }
        QVERIFY(contents(dir.filePath("hours.csv")).startsWith("\"Date\",\"Client\""));
        QVERIFY(contents(dir.filePath("hours.xml")).startsWith("<?xml"));
    }

    void unwritableFilesShowTheStopMessage() {
        auto state = makeState();
        QVERIFY(state);
        MainWindow window(*state);
        QTemporaryDir dir;
        const QString missing = dir.filePath("missing/out");
        setSaveFileChooser([&](QWidget*, const SaveFileRequest&) { return missing; });
        int opened = 0;
        setReportOpener([&](const QUrl&) { return ++opened > 0; });
        const struct {
            int command;
            QString message;
        } cases[] = {
            {kCmdExportCsv, kExportFailed},
            {kCmdExportXml, kExportFailed},
            {kCmdReport, QStringLiteral("Report generation has failed.")},
        };
        for (const auto& c : cases) {
            Messages messages;
            EntryFilter preset;
            confirmCriteria(&preset);
            window.runCommand(c.command);
            QCOMPARE(messages.texts(), QStringList{c.message});
            QCOMPARE(messages.shown[0].icon, MessageIcon::kStop);
        }
        QCOMPARE(opened, 0);
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    void cancelEndsTheCommandSilently() {
        auto state = makeState();
        QVERIFY(state);
        MainWindow window(*state);
        int chooserAsked = 0;
        setSaveFileChooser([&](QWidget*, const SaveFileRequest&) {
            ++chooserAsked;
            return QString();
        });
        Messages messages;
        whenModal<CriteriaSheet>([](CriteriaSheet* sheet) { sheet->reject(); });
        window.runCommand(kCmdExportCsv);
        QCOMPARE(chooserAsked, 0);
        EntryFilter preset;
        confirmCriteria(&preset);
        window.runCommand(kCmdReport);
        QCOMPARE(chooserAsked, 1);
        QVERIFY(messages.shown.empty());
    }

    void reportOfTheDefaultLayoutIsOpenedAfterWriting() {
        auto state = makeState();
        QVERIFY(state);
        const CEOID oid = writeSavedLayout(state->platform(), 0, u"Mine", titled(u"Mine title"));
        QVERIFY(oid != 0);
        state->settings().defaultReport = u"Mine";
        MainWindow window(*state);
        QTemporaryDir dir;
        SaveFileRequest asked;
        setSaveFileChooser([&](QWidget*, const SaveFileRequest& r) {
            asked = r;
            return dir.filePath("week");
        });
        QList<QUrl> opened;
        setReportOpener([&](const QUrl& url) {
            opened << url;
            return true;
        });
        Messages messages;
        EntryFilter preset;
        confirmCriteria(&preset);
        window.runCommand(kCmdReport);
        QCOMPARE(asked.filter, QStringLiteral("HTML Files (*.html)"));
        QCOMPARE(opened, QList<QUrl>{QUrl::fromLocalFile(dir.filePath("week.html"))});
        const QByteArray page = contents(dir.filePath("week.html"));
        QVERIFY(page.contains("<h1>Mine title</h1>"));
        QVERIFY(page.contains("Acme"));
        QVERIFY(messages.shown.empty());

        // No program to view it: the file stays and the user is told.
        setReportOpener([](const QUrl&) { return false; });
        confirmCriteria(&preset);
        window.runCommand(kCmdReport);
        QCOMPARE(messages.shown.size(), std::size_t{1});
        QVERIFY(messages.last().startsWith(QStringLiteral("The report was saved to ")));
        QVERIFY(messages.last().contains(QStringLiteral("no program could open it for viewing")));
        QCOMPARE(messages.shown[0].icon, MessageIcon::kExclamation);
    }

    void savingAsksBeforeOverwritingAndNoAsksForTheNameAgain() {
        auto state = makeState();
        QVERIFY(state);
        Platform& platform = state->platform();
        ReportDesigner designer(*state);
        Messages messages(QMessageBox::No);
        QStringList offered;

        child<QLineEdit>(designer, "title")->setText(QStringLiteral("First"));
        answerPrompts({QStringLiteral("Weekly")}, &offered);
        designer.save();
        const CEOID oid = findSavedLayout(platform, u"Weekly");
        QVERIFY(oid != 0);
        QVERIFY(messages.shown.empty());

        // Same name: the question; No brings the prompt back with the name.
        child<QLineEdit>(designer, "title")->setText(QStringLiteral("Second"));
        offered.clear();
        answerPrompts({QStringLiteral("Weekly"), QString()}, &offered);
        designer.save();
        QCOMPARE(offered, (QStringList{QStringLiteral("Weekly"), QStringLiteral("Weekly")}));
        QCOMPARE(
            messages.texts(),
            QStringList{QStringLiteral("The report already exists. Do you want to overwrite it?")});
        QCOMPARE(messages.shown[0].icon, MessageIcon::kQuestion);
        QCOMPARE(messages.shown[0].defaultButton, QMessageBox::No);
        ReportLayout stored;
        QVERIFY(loadSavedLayout(platform, oid, &stored));
        QCOMPARE(stored.title(), u"First");

        // Yes replaces that record in place.
        messages.answer(QMessageBox::Yes);
        answerPrompts({QStringLiteral("Weekly")}, &offered);
        designer.save();
        QCOMPARE(savedLayouts(platform).size(), std::size_t{1});
        QVERIFY(loadSavedLayout(platform, oid, &stored));
        QCOMPARE(stored.title(), u"Second");

        // Another letter case is another name: a second layout, no question.
        messages.shown.clear();
        answerPrompts({QStringLiteral("weekly")}, &offered);
        designer.save();
        QCOMPARE(savedLayouts(platform).size(), std::size_t{2});
        QVERIFY(messages.shown.empty());
        QCOMPARE(designer.working().name, u"weekly");

        // The built-ins' names are refused in any case, and the prompt
        // comes back.
        offered.clear();
        answerPrompts({QStringLiteral("Client"), QStringLiteral("DATE"), QString()}, &offered);
        designer.save();
        QCOMPARE(offered.size(), 3);
        QCOMPARE(messages.texts(), QStringList(2, toQt(std::u16string(kReservedLayoutNameText))));
        QCOMPARE(savedLayouts(platform).size(), std::size_t{2});
        QCOMPARE(designer.working().name, u"weekly");
    }

    void organizeDeletesWithoutAskingAndRenamesInPlace() {
        auto state = makeState();
        QVERIFY(state);
        Platform& platform = state->platform();
        const CEOID alpha = writeSavedLayout(platform, 0, u"Alpha", titled(u"A"));
        const CEOID beta = writeSavedLayout(platform, 0, u"Beta", titled(u"B"));
        ReportDesigner designer(*state);
        Messages messages;

        // The designer works on Beta, which gets renamed under it.
        whenModal<LayoutPicker>([](LayoutPicker* picker) {
            child<QListWidget>(*picker, "reports")->setCurrentRow(1);
            pressOk(*picker);
        });
        designer.loadCustom();
        QCOMPARE(designer.working().oid, beta);
        QCOMPARE(child<QLineEdit>(designer, "title")->text(), QStringLiteral("B"));

        whenModal<OrganizeReports>([&](OrganizeReports* dialog) {
            auto* list = child<QListWidget>(*dialog, "reports");
            auto* remove = child<QPushButton>(*dialog, "delete");
            auto* rename = child<QPushButton>(*dialog, "rename");
            QVERIFY(!remove->isEnabled() && !rename->isEnabled());
            list->setCurrentRow(0);
            QVERIFY(remove->isEnabled() && rename->isEnabled());
            QTest::mouseClick(remove, Qt::LeftButton);
            QCOMPARE(list->count(), 1);
            list->setCurrentRow(0);
            QTest::mouseClick(rename, Qt::LeftButton);
            auto* editor = list->findChild<QLineEdit*>();
            QVERIFY(editor);
            editor->setText(QStringLiteral("Gamma"));
            QTest::keyClick(editor, Qt::Key_Return);
            // The view commits an edit closed with Enter from its event
            // loop, as it would between the user's key and next click.
            QTRY_COMPARE(list->item(0)->text(), QStringLiteral("Gamma"));
            dialog->reject();
        });
        designer.organize();
        QVERIFY(messages.shown.empty());
        ReportLayout unused;
        QVERIFY(!loadSavedLayout(platform, alpha, &unused));
        QCOMPARE(findSavedLayout(platform, u"Gamma"), beta);
        QCOMPARE(designer.working().name, u"Gamma");

        // Default: the working name, saved; a built-in layout clears it.
        designer.setAsDefault();
        Settings reloaded;
        loadSettings(state->registry(), reloaded);
        QCOMPARE(reloaded.defaultReport, u"Gamma");
        QCOMPARE(ReportDesigner(*state).working().oid, beta);
        designer.loadBuiltIn(clientLayout());
        designer.setAsDefault();
        loadSettings(state->registry(), reloaded);
        QVERIFY(reloaded.defaultReport.empty());

        // With the last one deleted, both lists tell that nothing is saved.
        QVERIFY(deleteSavedLayout(platform, beta));
        designer.organize();
        designer.loadCustom();
        QCOMPARE(messages.texts(), QStringList(2, QStringLiteral("There is no saved report.")));
        QCOMPARE(designer.working().oid, CEOID{0});
    }

    void rowsFollowTheTypeAndTheFieldOrder() {
        auto state = makeState();
        QVERIFY(state);
        ReportDesigner designer(*state);
        designer.loadBuiltIn(dateLayout());
        auto* groupBy = child<QComboBox>(designer, "groupBy");
        QVERIFY(!groupBy->isEnabled());
        QVERIFY(!child<QComboBox>(designer, "groupTitle")->isEnabled());
        choose(child<QComboBox>(designer, "type"), QStringLiteral("Group By Field"));
        QVERIFY(groupBy->isEnabled());
        choose(groupBy, QStringLiteral("Project"));

        // Client moves below Project and is hidden; Duration is the third column.
        auto* fields = child<QListWidget>(designer, "fields");
        QCOMPARE(fields->count(), 18);
        fields->setCurrentRow(1);
        QTest::mouseClick(child<QPushButton>(designer, "moveDown"), Qt::LeftButton);
        QCOMPARE(fields->currentRow(), 2);
        fields->item(2)->setCheckState(Qt::Unchecked);
        fields->setCurrentRow(0);
        QVERIFY(!child<QPushButton>(designer, "moveUp")->isEnabled());

        const ReportLayout layout = designer.working().layout;
        QCOMPARE(layout.type(), std::uint16_t{kGroupedReport});
        QCOMPARE(layout.groupBy(), std::uint32_t{0x03EB001F});
        QVERIFY(layout.fieldOrder().starts_with(u"02134a95"));
        QCOMPARE(shownFields(layout), (std::vector<int>{0, 2, 3, 4, 10, 9, 5}));
    }

    void exportPageStoresTheThreeChoices() {
        Settings settings = defaultSettings();
        settings.breakSub = 7;  // from an older program; kept unless changed
        OptionsDialog dialog(settings);
        addExportPage(dialog, settings);
        auto* encoding = child<QComboBox>(dialog, "encoding");
        QCOMPARE(encoding->count(), 6);
        QCOMPARE(child<QComboBox>(dialog, "breakSub")->currentText(), QStringLiteral("7"));
        choose(encoding, QStringLiteral("UTF-16"));
        choose(child<QComboBox>(dialog, "hourSymbol"), QStringLiteral("hrs"));
        pressOk(dialog);
        QCOMPARE(settings.encoding, std::uint16_t{2});
        QCOMPARE(settings.breakSub, std::uint16_t{7});
        QCOMPARE(settings.hourSymbol, std::uint32_t{3});
    }
};

QB_GUI_TEST(ReportTests);

}  // namespace qb

#include "report_tests.moc"
