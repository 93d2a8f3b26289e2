#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/types.h"

#include <functional>

namespace pavane
{

class AMatrixAccess;

/// A dirty beam: its cells, where their centres lie, and how many arcseconds a unit of these has,
/// 0 when it is not on the sky.
struct DirtyBeam {
    const AMatrixAccess* cells = nullptr;
    TMinMax centres;
    double arcseconds = 0;
};
/// Fetches a dirty beam, which has to stay until the next call; 0 when there is none, and then a
/// line in `error` says why, unless the user gave up. May ask the user for a file.
using DirtyBeamFinder = std::function<int(DirtyBeam& beam, CString& error)>;

}  // namespace pavane
