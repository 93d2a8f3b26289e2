#pragma once

#include "tessel/AFile.h"
#include "tessel/fits_scan.h"
#include "tessel/HeaderCards.h"
#include "tessel/PlaneReader.h"

#include <memory>

namespace pavane
{

/// The reader of `plane`, from 0 over all further axes, of the image with that header; `file`
/// outlives it. Null with `error` when there can be none.
std::unique_ptr<PlaneReader> planeReader(AFile& file, const HeaderCards& header,
                                         const FitsImage& image, int plane, std::string& error);

}  // namespace pavane
