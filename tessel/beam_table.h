#pragma once

#include "tessel/AFile.h"
#include "tessel/map_header.h"

namespace pavane
{

/// Takes the beam of the plane that `header` is of from the table "BEAMS" of a cube whose planes
/// have one each. Non-zero on success; 0, and the header as it was, without such a table or a row
/// for the plane. Private to tessel's sources.
int readTableBeam(AFile& file, MapHeader& header);

}  // namespace pavane
