#include "platform/platform.h"

#include "platform/qt/QtGraphics.h"

#include <cstdio>
#include <cstdlib>
#include <QGuiApplication>

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

}  // namespace

int InitPlatform(int argc, char** argv, PlatformUse use)
{
    if (graphics)
        return 1;
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
        ownApplication = new QGuiApplication(argumentCount, arguments);
    }
    graphics = new QtGraphics;
    setGraphicsHook(graphics);
    return 1;
}

void ShutdownPlatform()
{
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
