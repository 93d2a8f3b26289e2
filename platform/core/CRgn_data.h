#pragma once

#include "platform/core/Region.h"
#include "platform/gdi_objects.h"

#include <vector>

namespace pavane
{

/// A region's rows. A polygon's vertices are kept too, while nothing was combined with it: points
/// are tested against them exactly wherever they lie, and a page clips to the true outline.
struct CRgn::Data {
    Region region;
    std::vector<CPoint> polygon;
    bool winding = false;
};

}  // namespace pavane
