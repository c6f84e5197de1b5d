// Runs every registered test class. Arguments go to each class (so -o and
// -v2 work); QB_GUI_TEST_CLASS=Name runs one class only.

#include <QApplication>
#include <QByteArray>
#include <QTest>

#include "gui/gui_test_registry.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QByteArray only = qgetenv("QB_GUI_TEST_CLASS");
    int failed = 0;
    for (const auto& make : qb::guitest::registeredTests()) {
        std::unique_ptr<QObject> test = make();
        const QByteArray name = test->metaObject()->className();
        if (!only.isEmpty() && name != only && !name.endsWith("::" + only)) continue;
        failed += QTest::qExec(test.get(), argc, argv) != 0 ? 1 : 0;
    }
    return failed == 0 ? 0 : 1;
}
