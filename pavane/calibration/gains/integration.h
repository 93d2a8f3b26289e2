#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"

namespace pavane
{

/// Days of an integration: the commonest step from a time of a baseline to its next one in the
/// first 65536 groups, since what files say of it is often another one. 0 where no baseline comes
/// twice. Non-zero on success, 0 when the file has become shorter.
PAVANE_API int measureIntegration(AUVXFile& file, double& days);

}  // namespace pavane
