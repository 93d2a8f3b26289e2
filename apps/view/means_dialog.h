#pragma once

#include "platform/CDialog.h"

namespace pavane
{

/// Asks over how many seconds visibilities are averaged, 0 for not, until it is such a number.
/// Non-zero when the user gave one.
int askMeans(CWnd* parent, double& seconds);

}  // namespace pavane
