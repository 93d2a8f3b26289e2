#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/axes/maps/MapNumbers.h"
#include "pavane/axes/windows/AxisStatus.h"
#include "pavane/trackers/areas/VertexTable.h"
#include "tessel/SkyCoordinates.h"

#include <array>
#include <string>

namespace pavane
{

/// The texts of the status line, in order; empty where there is nothing to tell.
enum StatusPane { statusValue, statusOffset, statusSky, statusCell, statusMask, statusPanes };
using StatusTexts = std::array<std::string, statusPanes>;
using StatusWidths = std::array<int, statusPanes>;

/// The widths that panes get in a line of so many pixels: their own, or 0. Where there is not room
/// for all, whole panes give way, first those whose text can be read from the others.
StatusWidths fittingPanes(StatusWidths wanted, int room);

/// What of a map the status line needs to turn numbers into text.
class StatusFormat
{
public:
    StatusFormat() = default;
    StatusFormat(const MapHeader& header, const MapFrame& frame, int rows, int columns);

    /// Value, offsets as the axes show them, position, cell and what the areas hold. Offsets and
    /// positions have digits for a tenth of a cell.
    StatusTexts texts(const AxisStatus& status, const SkyCoordinates& sky) const;

    /// How offsets are shown: from data values (RP) to a unit with its prefix.
    ValueUnit offsetUnit() const { return {offsetFactor_, offsetUnit_}; }

private:
    std::string offsetText(double value, int decimals) const;
    std::string skyText(const SkyCoordinates& sky, double column, double row) const;

    MapFrame frame_;
    FluxUnit flux_;
    double valueFactor_ = 1;   ///< from a value of the map to one in `valueUnit_`
    std::string valueUnit_;    ///< without prefix
    double offsetFactor_ = 1;  ///< from RP to what is shown
    std::string offsetUnit_;
    int xDecimals_ = 0, yDecimals_ = 0;     ///< of an offset
    int raDecimals_ = 0, decDecimals_ = 0;  ///< of seconds of time and of arc
    int degreeDecimals_ = 0;                ///< of galactic and ecliptic positions
};

/// "pixel 257, 258" of a cell: as in FITS x, the column, comes first and both count from 1.
std::string pixelText(int row, int column);

/// "3 110": groups of three digits with a narrow blank between them.
std::string groupedText(long long count);

/// "Jy/beam" values and fluxes with a prefix that leaves one to three digits before the point.
std::string prefixedText(double value, const std::string& unit, int digits);

}  // namespace pavane
