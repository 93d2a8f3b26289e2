#include "platform/platform.h"

#include "platform/qt/look.h"
#include "platform/qt/QtGraphics.h"
#include "platform/qt/WindowPeer.h"

#include <cstdio>
#include <cstdlib>
#include <QApplication>
#include <QPixmapCache>

namespace pavane
{

namespace
{

// Plain pointers: a host that ends without ShutdownPlatform has them until the very end.
QGuiApplication* ownApplication = nullptr;
QtGraphics* graphics = nullptr;
QtMessageHandler handlerBefore = nullptr;
int argumentCount = 1;
char programName[] = "pavane";
char* arguments[] = {programName, nullptr};

/// The toolkit's warnings mean nothing to a user; what ends the process has to be said.
void keepQuiet(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type != QtFatalMsg)
        return;
    std::fprintf(stderr, "%s\n", text.toUtf8().constData());
    std::abort();
}

/// Windows need the larger application object; its style is the same on every desktop, and none
/// has to be looked for.
QGuiApplication* makeApplication(PlatformUse use)
{
    if (use == PlatformUse::pictures)
        return new QGuiApplication(argumentCount, arguments);
    // factors of the environment pass: whoever sets one means it
    if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR_ROUNDING_POLICY"))
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
            Qt::HighDpiScaleFactorRoundingPolicy::Round);
    QApplication::setStyle(QStringLiteral("fusion"));
    auto* const application = new QApplication(argumentCount, arguments);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // The style keeps a drawn control for every size that it ever had. Those of one window take
    // 50 KB; the toolkit's own limit lets a user who resizes windows fill 10 MB.
    QPixmapCache::setCacheLimit(1024);
    return application;
}

/// What windows need beside the application object, which may be the host's.
void startAll()
{
    startWindows();
    startMessageBox();
}

}  // namespace

int InitPlatform(int argc, char** argv, PlatformUse use)
{
    if (graphics && (use == PlatformUse::pictures || canShowWindows())) {
        if (use == PlatformUse::windows)
            startAll();
        return 1;
    }
    if (graphics)
        return 0;
    if (!QCoreApplication::instance()) {
        handlerBefore = qInstallMessageHandler(keepQuiet);
        const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY") ||
                                !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
        // without a display the toolkit would end the process
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
            (use == PlatformUse::pictures || !hasDisplay))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        // options are the program's own; the toolkit sees the name only
        if (argc > 0 && argv && argv[0])
            arguments[0] = argv[0];
        ownApplication = makeApplication(use);
    }
    if (use == PlatformUse::windows && !canShowWindows())
        return 0;
    graphics = new QtGraphics;
    setGraphicsHook(graphics);
    if (use == PlatformUse::windows) {
        if (ownApplication)
            applyLook();
        startAll();
    }
    return 1;
}

void ShutdownPlatform()
{
    stopMessageBox();
    stopWindows();
    if (graphicsHook() == graphics)
        setGraphicsHook(nullptr);
    // fonts go before the application that they need
    delete graphics;
    graphics = nullptr;
    if (ownApplication) {
        delete ownApplication;
        ownApplication = nullptr;
        qInstallMessageHandler(handlerBefore);
    }
}

}  // namespace pavane
