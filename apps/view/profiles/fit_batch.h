#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/measures/fits/fit_table.h"

#include <string>
#include <vector>

namespace pavane
{

/// Fits the Gaussians that the options ask for to each of the areas, or to the whole map, with the
/// noise of the map or of the empty area. Non-zero on success; else 0 and one line in `error`, that
/// of the first fit that found none. With options.partial those are told in `notes`, and one that
/// found some is enough.
int fitAreas(const ViewOptions& options, const ViewInputs& inputs, std::vector<NamedFit>& fits,
             std::vector<std::string>& notes, std::string& error);

/// "key value unit" lines of all fits: with "area2_" in front of the keys where there are areas,
/// with "gaussian2_" where there are several of them in a fit.
std::string fitText(const ViewInputs& inputs, const std::vector<NamedFit>& fits);

/// Writes the map without the Gaussians of all fits, and inside their areas without the
/// backgrounds. 0 and one line in `error` that names the file.
int writeResidual(const ViewOptions& options, const ViewInputs& inputs,
                  const std::vector<NamedFit>& fits, std::string& error);

}  // namespace pavane
