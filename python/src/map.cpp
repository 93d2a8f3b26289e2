#include "python/src/map.h"

#include "python/src/bind.h"
#include "python/src/errors.h"
#include "python/src/header_state.h"
#include "python/src/run.h"
#include "tessel/map_header_cards.h"

#include <cmath>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

namespace pavane::python
{

Map::Map(const CString& file, int plane)
{
    CString error;
    int isRead = 0;
    runFree([&](Interrupts& interrupts) {
        isRead = readMapContent(file, plane, content_, error, progressOf(&interrupts.flag()));
    });
    if (!isRead)
        throwUnread(file, error);
    read_ = std::make_unique<AFloatMatrixAccess>(content_.map.cells);
}

Map::Map(std::unique_ptr<CellsOf> cells, const MapHeader& header) : array_(std::move(cells))
{
    content_.map.header = header;
    const MapContent found = described();
    content_.map.header = found.map.header;
    content_.frame = found.frame;
    take(found);
}

const AMatrixAccess& Map::cells() const
{
    return array_ ? array_->access() : static_cast<const AMatrixAccess&>(*read_);
}

MapContent Map::described() const
{
    check();
    MapContent found;
    CString error;
    runFree([&](Interrupts& interrupts) {
        (void)describeCells(cells(), content_.map.header, found, error,
                            progressOf(&interrupts.flag()));
    });
    return found;
}

void Map::take(const MapContent& found)
{
    content_.range = found.range;
    content_.noise = found.noise;
}

py::object Map::array(const std::shared_ptr<Map>& self)
{
    if (self->array_)
        return self->array_->array();
    const AMatrix<float>& cells = self->content_.map.cells;
    py::array view(py::dtype::of<float>(), {cells.rows(), cells.columns()}, cells.data(),
                   py::cast(self));
    view.attr("flags").attr("writeable") = false;
    return view;
}

py::tuple Map::state(const std::shared_ptr<Map>& self)
{
    const CellsOf* const given = self->given();
    return py::make_tuple(array(self), given ? given->mask() : py::none(),
                          given ? given->blank() : std::nan(""),
                          stateOfHeader(self->content_.map.header));
}

std::shared_ptr<Map> Map::ofState(const py::tuple& state)
{
    if (state.size() != 4)
        throw py::value_error("this is no state of a map");
    return std::make_shared<Map>(
        std::make_unique<CellsOf>(state[0], state[1], state[2].cast<double>()),
        headerOfState(state[3]));
}

namespace
{

std::shared_ptr<Map> mapOfArray(const py::object& array, const py::object& mask,
                                const std::string& cards, int plane, double blank)
{
    auto cells = std::make_unique<CellsOf>(array, mask, blank);
    MapHeader header;
    std::string error;
    const AMatrixAccess& access = cells->access();
    if (cards.empty()) {
        header.axes.resize(2);
        header.axes[0].length = access.columns();
        header.axes[1].length = access.rows();
    } else if (!readMapHeader(cards, access.rows(), access.columns(), header, error, plane)) {
        throwFormat("the header " + error);
    }
    return std::make_shared<Map>(std::move(cells), header);
}

}  // namespace

void bindMap(py::module_& m)
{
    py::class_<Map, std::shared_ptr<Map>>(m, "Map")
        .def(py::init<const CString&, int>(), py::arg("path"), py::arg("plane"))
        .def_static("of_array", &mapOfArray, py::arg("array"), py::arg("mask"), py::arg("cards"),
                    py::arg("plane"), py::arg("blank"))
        .def("state", &Map::state)
        .def_static("of_state", &Map::ofState)
        .def_property_readonly("rows", [](const Map& map) { return map.cells().rows(); })
        .def_property_readonly("columns", [](const Map& map) { return map.cells().columns(); })
        .def_property_readonly("array", &Map::array)
        .def_property_readonly(
            "mask", [](const Map& map) { return map.given() ? map.given()->mask() : py::none(); });
}

}  // namespace pavane::python
