#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/trackers/areas/area_file.h"
#include "python/src/map.h"
#include "tessel/SkyCoordinates.h"

#include <memory>

namespace pavane::python
{

/// The map that areas or components lie on: where its cells are, without these.
class Place
{
public:
    explicit Place(const Map& map);
    /// Of FITS cards; without rows and columns only positions on the sky are known. Throws
    /// FormatError.
    Place(const std::string& cards, int rows, int columns, int plane);
    /// Of a FITS file, of which only the header is read. Throws OSError or FormatError.
    explicit Place(const CString& file);
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    const MapFrame& frame() const { return frame_; }
    AreaPlace areaPlace(int skyRegions) const;

private:
    void init(const MapHeader& header);

    MapFrame frame_;
    SkyCoordinates sky_;
    int rows_ = 0, columns_ = 0;
};

}  // namespace pavane::python
