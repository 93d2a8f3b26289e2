#pragma once

#include "platform/api.h"

#include <memory>

namespace pavane
{

class CWnd;

/// Expires when the object goes; also that of one without a native window, which no handle tells
/// of.
PAVANE_API std::weak_ptr<const void> LifeOf(const CWnd& window);

}  // namespace pavane
