#pragma once

#include "pavane/axes/maps/MapContent.h"
#include "pavane/containers/AArray.h"
#include "pavane/measures/areas/area_cells.h"
#include "pavane/measures/areas/cell_numbers.h"
#include "platform/api.h"
#include "platform/geometry.h"
#include "tessel/StopFlag.h"

#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// How sums of cells become fluxes, and what their errors are.
struct PAVANE_API FluxScale {
    double factor = 1;                     ///< from a sum to a flux (fluxUnit)
    std::string unit;                      ///< of fluxes
    std::string valueUnit;                 ///< of the cells
    double beamCells = CellNumbers::none;  ///< area of the beam in cells; NaN without one
    int perCell = 0;                       ///< the unit is per cell

    static FluxScale of(const MapHeader& header, const MapFrame& frame);

    double flux(double sum) const { return sum * factor; }
    /// How many beams so many cells are; NaN without a beam.
    double beams(std::int64_t cells) const;
    /// Error of the flux of so many cells with a value, from the noise of a cell: noise times the
    /// number n of beams below 1, times its root above. That is the customary form, for noise that
    /// is correlated as the beam is; where it is white noise convolved with the beam, fluxes of
    /// large areas scatter up to 1.41 times more. In a unit per cell the noise times the root of
    /// the cells; NaN without a beam.
    double error(double noise, std::int64_t cells) const;
};

/// Tells the outline of area i in cells (x = column, y = row; no point for an area that sets
/// nothing) and whether it is never clean. It replaces `points`; 0 without memory.
using AreaSource = std::function<int(int i, AArray<CPoint>& points, int& isNeverClean)>;

/// The numbers of all areas on a map, kept while areas change: those of areas that did not change
/// are not found again. A plain value but for the cells, which it reads when it is told of a
/// change.
class PAVANE_API AreaMeasures
{
public:
    /// The cells, not owned, and the header, frame and noise that belong to them; null for none.
    /// All numbers are found anew with the next `update`.
    void setMap(const AMatrixAccess* cells, const MapContent* content);
    /// Takes the areas as they are; what has changed is found out. 0 without memory and when
    /// stopped, where some of the numbers stay unknown until the next time.
    int update(int count, const AreaSource& source, const StopFlag* stop = nullptr);

    int count() const { return static_cast<int>(areas_.size()); }
    /// Of the cells of one area, whether others have them too or not; those of a never-clean area
    /// too.
    const CellNumbers& numbers(int i) const { return at(i).numbers; }
    int isNeverClean(int i) const { return at(i).isNeverClean; }
    /// Of the cells that the mask of all areas sets: those of never-clean areas are taken off, and
    /// without another area it is the whole map without them.
    const CellNumbers& allNumbers() const { return all_; }

    /// The noise of a cell: the robust one of the map, or of the cells of an area that holds no
    /// source.
    double noise() const;
    /// That area; -1, as at first, for none.
    void setNoiseArea(int i);
    int noiseArea() const { return noiseArea_; }
    const FluxScale& scale() const { return scale_; }

private:
    struct Area {
        std::vector<CPoint> points;
        int isNeverClean = 0;
        int isKnown = 0;
        CellNumbers numbers;
        double deviation = CellNumbers::none;
    };
    const Area& at(int i) const { return areas_[static_cast<std::size_t>(i)]; }
    void take(Area& area, const AArray<CPoint>& points, int isNeverClean);
    int measure(Area& area, int isNoise, const StopFlag* stop);
    int measureAll(const StopFlag* stop);

    const AMatrixAccess* cells_ = nullptr;
    double mapNoise_ = CellNumbers::none;
    FluxScale scale_;
    std::vector<Area> areas_;
    CellNumbers all_;
    int isAllKnown_ = 0;
    int noiseArea_ = -1;
    CellCounter counter_;
};

}  // namespace pavane
