#pragma once

#include "platform/platform.h"

#include <QByteArray>

namespace pavane
{

/// The platform that the toolkit shall start, as after its option "-platform"; empty when none is
/// sure to start, and `why` says in one line what is missing. The toolkit ends the process when its
/// platform does not start, so what a start needs is asked here first.
QByteArray choosePlatform(PlatformUse use, CString& why);

}  // namespace pavane
