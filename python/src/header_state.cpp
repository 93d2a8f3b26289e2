#include "python/src/header_state.h"

#include <array>
#include <pybind11/stl.h>
#include <tuple>

namespace pavane::python
{

namespace py = pybind11;

namespace
{

constexpr std::size_t axisParts = 7;

/// The members that are kept, in the one order that both ways share; the matrix is apart.
auto membersOf(MapHeader& h)
{
    return std::tie(h.hasCelestialAxes, h.bunit, h.object, h.dateObs, h.telescope, h.stokes,
                    h.frequency, h.equinox, h.hasBeam, h.bmaj, h.bmin, h.bpa, h.plane, h.planes,
                    h.coordinateCards, h.longitudeAxis);
}

}  // namespace

py::tuple stateOfHeader(const MapHeader& header)
{
    MapHeader copy = header;
    py::list axes;
    for (const MapAxis& axis : copy.axes)
        axes.append(py::make_tuple(axis.length, axis.ctype, axis.cunit, axis.crval, axis.crpix,
                                   axis.cdelt, axis.crota));
    const std::array<double, 4> matrix{copy.cd[0][0], copy.cd[0][1], copy.cd[1][0], copy.cd[1][1]};
    return py::make_tuple(axes, matrix, py::cast(membersOf(copy)));
}

MapHeader headerOfState(const py::tuple& state)
{
    MapHeader header;
    if (state.size() != 3)
        throw py::value_error("this is no header of a map");
    for (const py::handle item : state[0]) {
        const auto axis = item.cast<py::tuple>();
        if (axis.size() != axisParts)
            throw py::value_error("this is no axis of a map");
        header.axes.push_back({axis[0].cast<int>(), axis[1].cast<std::string>(),
                               axis[2].cast<std::string>(), axis[3].cast<double>(),
                               axis[4].cast<double>(), axis[5].cast<double>(),
                               axis[6].cast<double>()});
    }
    if (header.axes.size() < 2)
        throw py::value_error("a map has two axes or more");
    const auto matrix = state[1].cast<std::array<double, 4>>();
    for (std::size_t i = 0; i < matrix.size(); ++i)
        header.cd[i / 2][i % 2] = matrix[i];
    auto members = membersOf(header);
    using Values =
        std::tuple<int, std::string, std::string, std::string, std::string, std::string, double,
                   double, int, double, double, double, int, int, std::vector<std::string>, int>;
    members = state[2].cast<Values>();
    return header;
}

}  // namespace pavane::python
