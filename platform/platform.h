#pragma once

#include "platform/types.h"

namespace pavane
{

/// What the program needs of the window system.
enum class PlatformUse {
    pictures,  ///< fonts, pictures and pages; no display is asked for
    windows    ///< windows as well
};

/// Starts the platform; call once, before the first font or picture, from the main thread. A host
/// that runs the toolkit already keeps its own application object. Non-zero on success.
PAVANE_API int InitPlatform(int argc, char** argv, PlatformUse use);
/// Ends it; also safe when it was never started.
PAVANE_API void ShutdownPlatform();

}  // namespace pavane
