// File > Import... driven as a user would: the file chosen, the format
// guessed, the preview read, a missing client filled for all rows, the
// import run, the counts told; then the same file again adds nothing.

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include "gui/app_state.h"
#include "gui/clients/file_chooser.h"
#include "gui/commands.h"
#include "gui/gui_test_registry.h"
#include "gui/main_window.h"
#include "gui/tools/tracker_import.h"
#include "gui_test_support.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

using namespace guitest;

namespace {

// Harvest's time report: the second row names no client.
const char kHarvest[] =
    "Date,Client,Project,Task,Notes,Hours\n"
    "2026-11-16,Acme,Web,Design,\"drafts, two\",2.5\n"
    "2026-11-17,,Web,Review,,1\n";

int entryCount(AppState& state) {
    int n = 0;
    for (bool more = state.entries().seekFirst(); more; more = state.entries().seekNext()) ++n;
    return n;
}

class FileAnswer {
  public:
    explicit FileAnswer(const QString& path) {
        setFileChooser([path](const FileRequest&, FileChoice* c) {
            c->path = path;
            return true;
        });
    }
    ~FileAnswer() { setFileChooser(nullptr); }
};

}  // namespace

class TrackerImportTests : public QObject {
    Q_OBJECT

  private slots:
    void previewFillAndImportOnce();
};

void TrackerImportTests::previewFillAndImportOnce() {
    auto state = twoClientState();
    QVERIFY(state);
    MainWindow w(*state);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("harvest.csv"));
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(kHarvest);
    f.close();
    FileAnswer answer(path);
    Messages messages;

    bool checked = false;
    whenModal<TrackerImportDialog>([&](TrackerImportDialog* d) {
        auto* format = child<QComboBox>(*d, "format");
        auto* table = child<QTableWidget>(*d, "preview");
        auto* import = child<QPushButton>(*d, "import");
        QVERIFY(format && table && import);
        QVERIFY(format->currentText().startsWith(QStringLiteral("Harvest")));
        QCOMPARE(table->rowCount(), 2);
        QCOMPARE(table->item(0, 1)->text(), QStringLiteral("Acme"));
        QCOMPARE(table->item(0, 4)->text(), QStringLiteral("2026-11-16"));
        QCOMPARE(table->item(0, 6)->text(), QStringLiteral("2.50"));
        QCOMPARE(table->item(1, 0)->text(), QStringLiteral("line 3"));
        QVERIFY(
            table->item(1, 7)->text().startsWith(QStringLiteral("refused: Please enter a client")));
        QVERIFY(!import->isEnabled());
        // The client for every row that has none.
        auto* client = child<QLineEdit>(*d, "client");
        client->setText(QStringLiteral("Bolt"));
        emit client->editingFinished();
        QCOMPARE(table->item(1, 1)->text(), QStringLiteral("Bolt"));
        QCOMPARE(table->item(1, 7)->text(), QStringLiteral("add"));
        QVERIFY(child<QLabel>(*d, "counts")->text().contains(QStringLiteral("to import 2")));
        QVERIFY(import->isEnabled());
        checked = true;
        QTest::mouseClick(import, Qt::LeftButton);
    });
    w.runCommand(kCmdImport);
    QVERIFY(checked);
    QCOMPARE(entryCount(*state), 2);
    QVERIFY2(messages.last().contains(QStringLiteral("Imported 2 entries")),
             qPrintable(messages.last()));

    // The same file again: every row already imported, nothing to add.
    bool again = false;
    whenModal<TrackerImportDialog>([&](TrackerImportDialog* d) {
        auto* client = child<QLineEdit>(*d, "client");
        client->setText(QStringLiteral("Bolt"));
        emit client->editingFinished();
        QCOMPARE(child<QTableWidget>(*d, "preview")->item(0, 7)->text(),
                 QStringLiteral("already imported"));
        QVERIFY(!child<QPushButton>(*d, "import")->isEnabled());
        again = true;
        d->reject();
    });
    w.runCommand(kCmdImport);
    QVERIFY(again);
    QCOMPARE(entryCount(*state), 2);
}

QB_GUI_TEST(TrackerImportTests);

}  // namespace qb

#include "tracker_import_tests.moc"
