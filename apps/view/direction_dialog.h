#pragma once

#include "platform/CDialog.h"

namespace pavane
{

/// Asks for a direction in the plane of u and v, degrees from north through east, until it is one.
/// Non-zero when the user gave one.
int askDirection(CWnd* parent, double& degrees);

}  // namespace pavane
