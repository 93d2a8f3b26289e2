#include "platform/platform.h"

#include "platform/qt/look.h"
#include "platform/qt/platform_choice.h"
#include "platform/qt/QtGraphics.h"
#include "platform/qt/WindowPeer.h"
#include "posix/ForkGate.h"

#include <cstdio>
#include <cstdlib>
#include <QApplication>
#include <QPixmapCache>
#include <QThreadPool>

namespace pavane
{

namespace
{

// Plain pointers: a host that ends without ShutdownPlatform has them until the very end.
QGuiApplication* ownApplication = nullptr;
QtGraphics* graphics = nullptr;
QtMessageHandler handlerBefore = nullptr;
// The toolkit keeps looking at these, and takes out what it has read.
int argumentCount = 0;
char programName[] = "pavane";
char platformOption[] = "-platform";
QByteArray platformName;
char* arguments[] = {nullptr, nullptr, nullptr, nullptr};

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

/// The toolkit fills large areas with threads of its own and waits for them; those that it keeps
/// would not be there in a copy of the process. Tasks of the host's there may take long.
int endFillingThreads()
{
    constexpr int longest = 200;  // milliseconds
    QThreadPool* const pool = QThreadPool::globalInstance();
    return !pool || pool->waitForDone(longest);
}

/// What needs an application object goes before it, also before the host's.
void letGo()
{
    if (!graphics)
        return;
    qRemovePostRoutine(letGo);
    stopMessageBox();
    stopWindows();
    setForkPreparation(nullptr);
    (void)setGraphicsHook(nullptr);
    delete graphics;
    graphics = nullptr;
}

}  // namespace

int InitPlatform(int argc, char** argv, PlatformUse use)
{
    CString why;
    return InitPlatform(argc, argv, use, why);
}

int InitPlatform(int argc, char** argv, PlatformUse use, CString& why)
{
    why.clear();
    if (isForkedMidWork()) {
        why = forkedText;
        return 0;
    }
    if (!graphics && !QCoreApplication::instance()) {
        platformName = choosePlatform(use, why);
        if (platformName.isEmpty())
            return 0;
        // options are the program's own; the toolkit sees the name, and its platform, which is not
        // told through the environment because that goes on to children
        arguments[0] = argc > 0 && argv && argv[0] ? argv[0] : programName;
        arguments[1] = platformOption;
        arguments[2] = platformName.data();
        argumentCount = 3;
        handlerBefore = qInstallMessageHandler(keepQuiet);
        ownApplication = makeApplication(use);
    }
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        why = "The program's application object is a QCoreApplication, which has no fonts";
        return 0;
    }
    if (use == PlatformUse::windows && !canShowWindows()) {
        why = ownApplication
                  ? "The platform runs for pictures: end it with ShutdownPlatform before windows"
                  : "The program's application object is a QGuiApplication, which has no windows";
        return 0;
    }
    if (!graphics) {
        graphics = new QtGraphics;
        setGraphicsHook(graphics);
        setForkPreparation(endFillingThreads);
        qAddPostRoutine(letGo);
        if (use == PlatformUse::windows && ownApplication)
            applyLook();
    }
    if (use == PlatformUse::windows)
        startAll();
    return 1;
}

void ShutdownPlatform()
{
    letGo();
    if (ownApplication) {
        delete ownApplication;
        ownApplication = nullptr;
        qInstallMessageHandler(handlerBefore);
    }
}

}  // namespace pavane
