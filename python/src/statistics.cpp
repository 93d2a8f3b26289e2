#include "pavane/axes/maps/MapNumbers.h"
#include "pavane/trackers/masks/mask_bytes.h"
#include "python/src/bind.h"
#include "python/src/map.h"
#include "python/src/run.h"

#include <new>
#include <pybind11/numpy.h>

namespace pavane::python
{

namespace
{

/// `inside`: None, or an array of bytes of the map's shape, which the layer has checked.
py::dict statistics(const Map& map, const py::object& inside)
{
    map.check();
    const AMatrixAccess& cells = map.cells();
    ABitMatrix mask;
    const unsigned char* first = nullptr;
    std::int64_t rowBytes = 0, columnBytes = 0;
    if (!inside.is_none()) {
        const auto array = inside.cast<py::array>();
        mask = ABitMatrix(cells.rows(), cells.columns());
        if (!mask.rows())
            throw std::bad_alloc();
        first = static_cast<const unsigned char*>(array.data());
        rowBytes = array.strides(0);
        columnBytes = array.strides(1);
    }
    MapNumbers n;
    runFree([&](Interrupts& interrupts) {
        if (first)
            packMask(first, rowBytes, columnBytes, mask);
        n = mapNumbers(cells, map.content(), first ? &mask : nullptr, &interrupts.flag());
    });
    using namespace py::literals;
    return py::dict("least"_a = n.least, "peak"_a = n.peak, "peak_column"_a = n.peakColumn,
                    "peak_row"_a = n.peakRow, "peak_x"_a = n.peakOffset.x,
                    "peak_y"_a = n.peakOffset.y, "noise"_a = n.noise, "beam_cells"_a = n.beamCells,
                    "cells"_a = n.maskCells, "flux"_a = n.flux, "unit"_a = n.unit,
                    "flux_unit"_a = n.fluxUnit);
}

}  // namespace

void bindStatistics(py::module_& m) { m.def("statistics", &statistics); }

}  // namespace pavane::python
