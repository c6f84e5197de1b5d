// A desktop process for the tests that kill one: it opens the data directory
// as the application does, with the main window and its timers, then
//   timer_app DIR record N   presses Record on timer N, prints the clock and
//                            runs until it is killed;
//   timer_app DIR show N     prints the timer's state and clock and exits;
//   timer_app DIR screenshot FILE
//                            shows the main window filling the screen with
//                            the timer window open beside it, saves a
//                            picture of the whole screen and exits.

#include <QApplication>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "entry/entry_timers.h"
#include "gui/app_state.h"
#include "gui/entry/entry_work.h"
#include "gui/entry/timer_work.h"
#include "gui/main_window.h"
#include "platform/platform.h"
#include "platform/text.h"

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr,
                     "usage: timer_app DIR record|show N | timer_app DIR screenshot FILE\n");
        return 2;
    }
    QApplication app(argc, argv);
    std::unique_ptr<qb::Platform> platform;
    if (!qb::Platform::open(argv[1], &platform).isOk()) return 1;
    qb::AppState state(std::move(platform));
    if (!state.open()) return 1;
    qb::MainWindow window(state);
    auto* work = window.findChild<qb::EntryWork*>();
    if (std::strcmp(argv[2], "screenshot") == 0) {
        QScreen* screen = QGuiApplication::primaryScreen();
        window.setGeometry(screen->availableGeometry());
        window.show();
        work->openTimers();
        const QString file = QString::fromLocal8Bit(argv[3]);
        QTimer::singleShot(1500, [screen, file] {
            if (!screen->grabWindow(0).save(file))
                std::fprintf(stderr, "cannot save the picture\n");
            QApplication::quit();
        });
        return app.exec();
    }
    const int index = std::atoi(argv[3]) - 1;
    qb::TimerWork& timers = work->timers();
    if (std::strcmp(argv[2], "record") == 0) timers.record(index);
    std::printf("%s %s\n", qb::utf16ToUtf8(qb::timerStateName(timers.timer(index).state)).c_str(),
                qb::utf16ToUtf8(qb::timerClockText(timers.elapsed(index))).c_str());
    std::fflush(stdout);
    return std::strcmp(argv[2], "record") == 0 ? app.exec() : 0;
}
