#pragma once

#include "apps/view/inputs.h"

#include <string>

namespace pavane
{

/// Peak, its place, noise, and what is inside the mask, as "key value unit" lines.
std::string statisticsText(const ViewInputs& inputs);

/// "u,v,re,im" lines of the model's visibilities, 17 digits, in the order of the points.
std::string visibilitiesText(const AComponents& model, const UvPoints& points);

}  // namespace pavane
