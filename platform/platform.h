#pragma once

#include "platform/types.h"

namespace pavane
{

/// What the program needs of the window system.
enum class PlatformUse {
    pictures,  ///< fonts, pictures and pages; no display is asked for
    windows    ///< windows as well
};

/// Starts the platform; call it before the first font or picture, from the main thread. Non-zero on
/// success, also when it runs already. A host that runs the toolkit keeps its own application
/// object; without one the platform makes one, on the display that the environment names, or for
/// pictures on none. It never ends the process and leaves the environment as it is: where a
/// display is missing, or the host's application has no fonts (QCoreApplication) or no windows
/// (QGuiApplication, with `windows`), it returns 0 and `why` says so in one line.
PAVANE_API int InitPlatform(int argc, char** argv, PlatformUse use);
PAVANE_API int InitPlatform(int argc, char** argv, PlatformUse use, CString& why);
/// Ends it; also safe when it was never started. An application object that the platform made goes
/// with it, so that the host can make its own and start the platform again under that one; pictures
/// stay as they are. A host that ends its own application object ends the platform too.
PAVANE_API void ShutdownPlatform();

}  // namespace pavane
