// Areas as tuples: kind, column and row of the centre, width, height, angle (radians), vertices or
// None, never clean, reversed, name, colour (0xRRGGBB, -1 for none). The Python layer makes objects
// of them.

#include "pavane/trackers/areas/area_mask.h"
#include "pavane/trackers/masks/mask_bytes.h"
#include "pavane/trackers/shapes/area_geometry.h"
#include "pavane/trackers/shapes/area_values.h"
#include "pavane/trackers/shapes/shape_outline.h"
#include "python/src/bind.h"
#include "python/src/errors.h"
#include "python/src/place.h"
#include "python/src/run.h"

#include <climits>
#include <new>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

namespace pavane::python
{

namespace
{

using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;

py::array pointsOf(const std::vector<APoint<double>>& points)
{
    py::array_t<double> made({static_cast<py::ssize_t>(points.size()), py::ssize_t{2}});
    auto at = made.mutable_unchecked<2>();
    for (py::ssize_t i = 0; i < at.shape(0); ++i) {
        at(i, 0) = points[static_cast<std::size_t>(i)].x;
        at(i, 1) = points[static_cast<std::size_t>(i)].y;
    }
    return made;
}

py::tuple stateOf(const AreaShape& s)
{
    const bool isPolygon = s.kind == AreaShape::Kind::polygon;
    return py::make_tuple(static_cast<int>(s.kind), s.centre.x, s.centre.y, s.width, s.height,
                          s.angle, isPolygon ? py::object(pointsOf(s.vertices)) : py::none(),
                          s.isNeverClean != 0, s.isReversed != 0, s.label.name, s.label.colour);
}

AreaShape shapeOfState(const py::tuple& state)
{
    AreaShape s;
    s.kind = static_cast<AreaShape::Kind>(state[0].cast<int>());
    s.centre = {state[1].cast<double>(), state[2].cast<double>()};
    s.width = state[3].cast<double>();
    s.height = state[4].cast<double>();
    s.angle = state[5].cast<double>();
    s.isNeverClean = state[7].cast<bool>();
    s.isReversed = state[8].cast<bool>();
    s.label = {fittingName(state[9].cast<std::string>()), state[10].cast<std::int32_t>()};
    if (s.kind != AreaShape::Kind::polygon)
        return s;
    const auto vertices = state[6].cast<Doubles>();
    const auto at = vertices.unchecked<2>();
    s.vertices.reserve(static_cast<std::size_t>(at.shape(0)));
    for (py::ssize_t i = 0; i < at.shape(0); ++i)
        s.vertices.push_back({at(i, 0), at(i, 1)});
    return s;
}

py::list statesOf(const AreaList& areas)
{
    py::list states;
    for (const AreaShape& shape : areas)
        states.append(stateOf(shape));
    return states;
}

AreaList areasOf(const py::list& states)
{
    AreaList areas;
    areas.reserve(states.size());
    for (const py::handle state : states)
        areas.push_back(shapeOfState(py::reinterpret_borrow<py::tuple>(state)));
    return areas;
}

AreaPlace placeOf(const Place* place, int skyRegions = 0)
{
    return place ? place->areaPlace(skyRegions) : AreaPlace();
}

[[noreturn]] void refuse(const CString& error)
{
    if (error.find("no memory") != CString::npos)
        throw std::bad_alloc();
    throw py::value_error(error);
}

py::tuple readAreas(const CString& file, const Place* place)
{
    AreaList areas;
    AreaNotes notes;
    std::string error;
    int isRead = 0;
    runFree([&](Interrupts&) { isRead = readAreaFile(file, placeOf(place), areas, notes, error); });
    if (!isRead) {
        const CString named = file + ": ";
        throwUnread(file, error.starts_with(named) ? error.substr(named.size()) : error);
    }
    // nothing at all would pass for the whole map
    if (areas.empty() && !notes.loss.empty())
        throwFormat(file + ": " + notes.lossText());
    return py::make_tuple(statesOf(areas), notes.lines);
}

std::vector<std::string> writeAreas(const CString& file, const Place* place, const py::list& states,
                                    bool sky, bool partial)
{
    const AreaList areas = areasOf(states);
    AreaNotes notes;
    std::string error;
    int isWritten = 0;
    runFree([&](Interrupts&) {
        isWritten = writeAreaFile(file, placeOf(place, sky), areas, partial, notes, error);
    });
    if (isWritten)
        return notes.lines;
    if (!notes.loss.empty() || error.find("map must be told") != std::string::npos ||
        error.find("are written as") != std::string::npos)
        throw py::value_error(error);
    throwUnwritten(file, error);
}

std::unique_ptr<ABitMatrix> maskOf(const py::list& states, int rows, int columns, bool centres)
{
    const AreaList areas = areasOf(states);
    auto mask = std::make_unique<ABitMatrix>();
    CString error;
    runFree([&](Interrupts& interrupts) {
        (void)maskOfAreas(areas, rows, columns, centres ? MaskRule::centres : MaskRule::outline,
                          *mask, error, &interrupts.flag());
    });
    if (!error.empty())
        refuse(error);
    return mask;
}

py::array_t<bool> boolMask(const py::list& states, int rows, int columns, bool centres)
{
    py::array_t<bool> made({rows, columns});  // first: it is what memory runs out for
    const std::unique_ptr<ABitMatrix> mask = maskOf(states, rows, columns, centres);
    static_assert(sizeof(bool) == 1);
    auto* const bytes = reinterpret_cast<unsigned char*>(made.mutable_data());
    {
        const Unlocked unlocked;
        unpackMask(*mask, bytes, columns);
    }
    return made;
}

/// A view of the bits themselves, which it keeps.
py::array packedMask(const py::list& states, int rows, int columns, bool centres)
{
    std::unique_ptr<ABitMatrix> mask = maskOf(states, rows, columns, centres);
    const auto bytes = static_cast<py::ssize_t>(mask->rowWords()) *
                       static_cast<py::ssize_t>(sizeof(ABitMatrix::Word));
    const void* const first = mask->row(0);
    const py::capsule owner(mask.get(), [](void* kept) { delete static_cast<ABitMatrix*>(kept); });
    (void)mask.release();  // the capsule owns it now
    return py::array(py::dtype("u1"), {py::ssize_t{rows}, py::ssize_t{(columns + 7) / 8}},
                     {bytes, py::ssize_t{1}}, first, owner);
}

/// Of an array of bytes of two axes, which the layer has checked.
ABitMatrix bitsOf(const py::array& array)
{
    ABitMatrix mask(static_cast<int>(array.shape(0)), static_cast<int>(array.shape(1)));
    if (!mask.rows())
        throw std::bad_alloc();
    const auto* const first = static_cast<const unsigned char*>(array.data());
    const std::int64_t rowBytes = array.strides(0), columnBytes = array.strides(1);
    const Unlocked unlocked;
    packMask(first, rowBytes, columnBytes, mask);
    return mask;
}

py::list areasFromMask(const py::array& array)
{
    const ABitMatrix mask = bitsOf(array);
    AreaList areas;
    CString error;
    runFree(
        [&](Interrupts& interrupts) { (void)areasOfMask(mask, areas, error, &interrupts.flag()); });
    if (!error.empty())
        refuse(error);
    return statesOf(areas);
}

/// Closed outlines in values of the map's axes, as `pavane-view` draws areas of a file.
py::list outlinesOn(const Map& map, const py::list& states)
{
    const AMnMxMCTransform transform(map.content().frame.centres(), map.cells().rows(),
                                     map.cells().columns());
    py::list outlines;
    std::size_t number = 0;
    for (const AreaShape& shape : areasOf(states)) {
        ShapeValues values;
        ++number;
        if (!valuesOf(shape, transform, values))
            throw py::value_error("area " + std::to_string(number) +
                                  " has no size, lies too far away, or the map has one row or "
                                  "column alone");
        AArray<APoint<double>> points;
        outlineOf(values, 0, points);
        outlines.append(
            py::make_tuple(pointsOf({points.lpArray(), points.lpArray() + points.count()}),
                           shape.isNeverClean, shape.label.colour));
    }
    return outlines;
}

}  // namespace

void bindAreas(py::module_& m)
{
    py::class_<Place>(m, "Place")
        .def(py::init<const Map&>(), py::arg("map"))
        .def(py::init<const CString&>(), py::arg("path"))
        .def(py::init<const std::string&, int, int, int>(), py::arg("cards"), py::arg("rows"),
             py::arg("columns"), py::arg("plane"))
        .def_property_readonly("shape", [](const Place& place) {
            const AreaPlace known = place.areaPlace(0);
            return py::make_tuple(known.rows, known.columns);
        });
    m.def("read_areas", &readAreas);
    m.def("write_areas", &writeAreas);
    m.def("area_mask", &boolMask);
    m.def("area_bits", &packedMask);
    m.def("areas_of_mask", &areasFromMask);
    m.def("area_outline",
          [](const py::tuple& state) { return pointsOf(outlineOf(shapeOfState(state))); });
    m.def("area_outlines_on", &outlinesOn);
    m.def("area_colour", [](const std::string& text) {
        std::int32_t colour = AreaLabel::noColour;
        return areaColourOf(text, colour) ? py::object(py::int_(colour)) : py::none();
    });
    m.def("area_name", [](const std::string& text) { return fittingName(text); });
}

}  // namespace pavane::python
