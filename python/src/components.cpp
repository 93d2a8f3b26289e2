#include "pavane/tables/components/component_arrays.h"
#include "pavane/tables/components/component_file.h"
#include "pavane/tables/components/EditedComponents.h"
#include "pavane/tables/components/map_components.h"
#include "python/src/bind.h"
#include "python/src/errors.h"
#include "python/src/place.h"
#include "python/src/run.h"

#include <climits>
#include <memory>
#include <new>
#include <pybind11/complex.h>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

namespace pavane::python
{

namespace
{

/// Columns are arrays of doubles of one axis and one length, as the layer makes them.
AComponents modelOf(const std::vector<py::array>& arrays)
{
    ComponentColumns columns;
    std::int64_t count = 0;
    for (std::size_t f = 0; f < arrays.size() && f < std::size_t{componentFields}; ++f) {
        count = arrays[f].shape(0);
        columns.field[f] = {arrays[f].data(), arrays[f].strides(0)};
    }
    AComponents model;
    CString error;
    if (!componentsFrom(columns, count, model, error)) {
        if (error.find("no memory") != CString::npos)
            throw std::bad_alloc();
        throw py::value_error(error);
    }
    return model;
}

/// Rows of eight doubles.
py::array_t<double> rowsOf(const AComponents& model)
{
    py::array_t<double> rows({py::ssize_t{model.count()}, py::ssize_t{componentFields}});
    ComponentTargets targets;
    constexpr std::int64_t rowBytes = componentFields * std::int64_t{sizeof(double)};
    for (int f = 0; model.count() > 0 && f < componentFields; ++f)
        targets.field[f] = {rows.mutable_data(0, f), rowBytes};
    componentsTo(model, targets);
    return rows;
}

/// Of a text of components, or of the table that a CLEAN leaves in a FITS map.
py::tuple readModel(const CString& file, bool isMap)
{
    AComponents model;
    std::vector<std::string> notes;
    std::string error;
    int isRead = 0, hasTable = 1;
    runFree([&](Interrupts&) {
        isRead = isMap ? readMapComponents(file, model, hasTable, notes, error)
                       : readComponentFile(file, model, error);
    });
    if (isRead && !hasTable)
        throwFormat(file + ": the map has no table of components");
    if (!isRead)
        throwUnread(file, error);
    return py::make_tuple(rowsOf(model), notes);
}

std::vector<std::string> writeModel(const CString& file, const std::vector<py::array>& columns)
{
    const AComponents model = modelOf(columns);
    std::string error;
    int isWritten = 0;
    runFree([&](Interrupts&) { isWritten = writeComponentFile(file, model, error); });
    if (!isWritten)
        throwUnwritten(file, error);
    return lossesOfComponentText(model);
}

/// u and v: doubles of one axis and one length, at any steps.
py::array visibilities(const std::vector<py::array>& columns, const py::array& u,
                       const py::array& v)
{
    const AComponents model = modelOf(columns);
    py::array_t<std::complex<double>> sums(u.shape(0));
    const DoubleColumn us{u.data(), u.strides(0)}, vs{v.data(), v.strides(0)};
    const std::int64_t count = u.shape(0);
    std::complex<double>* const out = sums.mutable_data();
    CString error;
    runFree([&](Interrupts& interrupts) {
        (void)modelVisibilities(model, us, vs, count, out, error, &interrupts.flag());
    });
    if (!error.empty())
        throw std::bad_alloc();
    return sums;
}

/// `range`: offsets to the east at the first and the last column, to the north at the first and the
/// last row, arcseconds. The array keeps the map's cells.
py::array modelCells(const std::vector<py::array>& columns, int rows, int across,
                     const std::array<double, 4>& range)
{
    const AComponents model = modelOf(columns);
    auto map = std::make_unique<AMatrix<float>>();
    CString error;
    runFree([&](Interrupts& interrupts) {
        (void)modelMap(model, rows, across, {range[0], range[1], range[2], range[3]}, *map, error,
                       &interrupts.flag());
    });
    if (error.find("no memory") != CString::npos)
        throw std::bad_alloc();
    if (!error.empty())
        throw py::value_error(error);
    const float* const first = map->data();
    const py::capsule owner(map.get(),
                            [](void* kept) { delete static_cast<AMatrix<float>*>(kept); });
    (void)map.release();  // the capsule owns it now
    return py::array(py::dtype::of<float>(), {py::ssize_t{rows}, py::ssize_t{across}}, first,
                     owner);
}

/// The range of modelCells for a map.
std::array<double, 4> skyRange(const Place& place)
{
    const MapFrame& frame = place.frame();
    if (!frame.onSky)
        throw py::value_error("the map has no place on the sky");
    if (frame.rotated)
        throw py::value_error("the sky is turned in the map: its rows do not run along the sky");
    const double unit = frame.arcseconds;
    return {frame.xFirst * unit, frame.xLast * unit, frame.yFirst * unit, frame.yLast * unit};
}

}  // namespace

void bindComponents(py::module_& m)
{
    m.def("read_model", &readModel);
    m.def("write_model", &writeModel);
    m.def("model_visibilities", &visibilities);
    m.def("model_cells", &modelCells);
    m.def("sky_range", &skyRange);
}

}  // namespace pavane::python
