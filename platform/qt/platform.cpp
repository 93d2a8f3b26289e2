#include "platform/platform.h"

#include <QGuiApplication>

#include <memory>

namespace pavane
{

namespace
{

std::unique_ptr<QGuiApplication> ownApplication;
int argumentCount = 1;

} // namespace

int InitPlatform(int, char** argv, PlatformUse)
{
    if (!QCoreApplication::instance()) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        ownApplication = std::make_unique<QGuiApplication>(argumentCount, argv);
    }
    return 1;
}

void ShutdownPlatform() { ownApplication.reset(); }

} // namespace pavane
