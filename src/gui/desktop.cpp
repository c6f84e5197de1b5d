#include "gui/desktop.h"

#include <QApplication>
#include <QDateTime>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <cstring>

#include "gui/app_state.h"
#include "gui/icons.h"
#include "gui/main_window.h"
#include "gui/single_instance.h"

namespace qb {
namespace {

// Quits once the first frame is on screen and prints how long that took,
// for measuring start-up.
class FirstPaintTimer : public QObject {
  public:
    FirstPaintTimer(QWidget* window, qint64 startNs, QString screenshot)
        : window_(window), startNs_(startNs), screenshot_(std::move(screenshot)) {
        window->installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == window_ && event->type() == QEvent::Paint && !done_) {
            done_ = true;
            QTimer::singleShot(0, [this] {
                std::printf("first paint after %.1f ms\n",
                            (QDateTime::currentMSecsSinceEpoch() * 1000000.0 - startNs_) / 1e6);
                if (!screenshot_.isEmpty()) window_->grab().save(screenshot_);
                QApplication::quit();
            });
        }
        return false;
    }

  private:
    QWidget* window_;
    qint64 startNs_;
    QString screenshot_;
    bool done_ = false;
};

}  // namespace

int runDesktop(const std::string& dataDir, int argc, char** argv) {
    qint64 startNs = QDateTime::currentMSecsSinceEpoch() * 1000000;
    bool quitAfterPaint = false;
    QString screenshot;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--quit-after-paint") == 0) quitAfterPaint = true;
        if (std::strcmp(argv[i], "--screenshot") == 0 && i + 1 < argc) {
            screenshot = QString::fromLocal8Bit(argv[++i]);
            quitAfterPaint = true;
        }
    }
    QApplication app(argc, argv);
    // Qt takes the locale from the environment; the system's number texts
    // ("%.2f") always use a point.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(QStringLiteral("Quillarbor"));
    QApplication::setApplicationVersion(QStringLiteral(QB_VERSION));
    QApplication::setWindowIcon(applicationIcon());

    SingleInstance instance(QString::fromStdString(dataDir));
    if (!quitAfterPaint && instance.handOver(QApplication::arguments())) return 0;

    std::unique_ptr<Platform> platform;
    Status status = Platform::open(dataDir, &platform);
    if (!status.isOk()) {
        std::fprintf(stderr, "quillarbor: %s\n", status.message().c_str());
        return 1;
    }
    AppState state(std::move(platform));
    if (!state.open()) return 1;

    MainWindow window(state);
    if (!quitAfterPaint) instance.listen();
    QObject::connect(&instance, &SingleInstance::anotherStart, &window, [&window] {
        window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
        window.show();
        window.raise();
        window.activateWindow();
    });
    FirstPaintTimer* timer =
        quitAfterPaint ? new FirstPaintTimer(&window, startNs, screenshot) : nullptr;
    window.show();
    int code = app.exec();
    delete timer;
    return code;
}

}  // namespace qb
