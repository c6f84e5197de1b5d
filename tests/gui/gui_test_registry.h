#pragma once

// Every Qt Test class of the GUI tests registers itself here, and one main
// runs them all in one QApplication:
//
//     class DialogTests : public QObject { Q_OBJECT ... };
//     QB_GUI_TEST(DialogTests)

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

namespace qb::guitest {

using TestFactory = std::function<std::unique_ptr<QObject>()>;

inline std::vector<TestFactory>& registeredTests() {
    static std::vector<TestFactory> tests;
    return tests;
}

inline bool registerTest(TestFactory factory) {
    registeredTests().push_back(std::move(factory));
    return true;
}

}  // namespace qb::guitest

#define QB_GUI_TEST(Class)                                           \
    [[maybe_unused]] static const bool qbGuiTestRegistered_##Class = \
        ::qb::guitest::registerTest([] { return std::unique_ptr<QObject>(new Class); })
