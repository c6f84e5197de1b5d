#include "gui/entry/idle_source.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QGuiApplication>

#ifdef QB_HAVE_XSS
#include <X11/Xlib.h>
#include <X11/extensions/scrnsaver.h>
#endif

namespace qb {
namespace {

// A screen-saver service that hangs must not stall the one-second clock.
constexpr int kBusTimeoutMs = 250;

class ScreenSaverService : public IdleSource {
  public:
    ScreenSaverService()
        : bus_(QStringLiteral("org.freedesktop.ScreenSaver"),
               QStringLiteral("/org/freedesktop/ScreenSaver"),
               QStringLiteral("org.freedesktop.ScreenSaver"), QDBusConnection::sessionBus()) {
        bus_.setTimeout(kBusTimeoutMs);
    }

    std::optional<std::uint32_t> idleSeconds() override {
        QDBusReply<uint> reply = bus_.call(QStringLiteral("GetSessionIdleTime"));
        if (!reply.isValid()) return std::nullopt;
        return reply.value() / 1000;
    }

    QString name() const override { return QStringLiteral("the desktop's screen-saver service"); }

  private:
    QDBusInterface bus_;
};

#ifdef QB_HAVE_XSS
class ScreenSaverExtension : public IdleSource {
  public:
    explicit ScreenSaverExtension(Display* display)
        : display_(display), info_(XScreenSaverAllocInfo()) {}
    ~ScreenSaverExtension() override {
        if (info_) XFree(info_);
    }

    std::optional<std::uint32_t> idleSeconds() override {
        if (!info_ || !XScreenSaverQueryInfo(display_, DefaultRootWindow(display_), info_)) {
            return std::nullopt;
        }
        return static_cast<std::uint32_t>(info_->idle / 1000);
    }

    QString name() const override { return QStringLiteral("the X screen-saver extension"); }

  private:
    Display* display_;
    XScreenSaverInfo* info_;
};

Display* xDisplay() {
#if QT_CONFIG(xcb)
    if (auto* x11 =
            qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr) {
        return x11->display();
    }
#endif
    return nullptr;
}
#endif

}  // namespace

std::unique_ptr<IdleSource> desktopIdleSource() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected() && bus.interface() &&
        bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.ScreenSaver"))) {
        auto service = std::make_unique<ScreenSaverService>();
        // Some desktops register the service without this method.
        if (service->idleSeconds()) return service;
    }
#ifdef QB_HAVE_XSS
    if (Display* display = xDisplay()) {
        int event = 0;
        int error = 0;
        if (XScreenSaverQueryExtension(display, &event, &error)) {
            auto extension = std::make_unique<ScreenSaverExtension>(display);
            if (extension->idleSeconds()) return extension;
        }
    }
#endif
    return nullptr;
}

QString idleUnavailableText() {
    return QStringLiteral(
        "This desktop does not report idle time (neither the screen-saver service "
        "nor the X screen-saver extension answers), so idle time is not detected.");
}

}  // namespace qb
