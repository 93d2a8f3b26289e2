#pragma once

#include "platform/core/DeviceBackend.h"
#include "platform/core/PdfFile.h"

namespace pavane
{

/// Writes a picture as an object of its own, whose number is returned; of up to 256 colours as
/// indices to them, as maps are. Where `goesOn` answers false its rest is left out.
int writeImage(PdfFile& file, const ImageView& image, const std::function<bool()>& goesOn);

}  // namespace pavane
