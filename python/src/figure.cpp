#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/cells/contour_lines.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/axes/maps/MapLook.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/maps/sky/sky_grid_wish.h"
#include "pavane/images/palette_choice.h"
#include "pavane/images/palettes.h"
#include "pavane/tables/components/ModelLayer.h"
#include "pavane/trackers/shapes/AreaLayer.h"
#include "python/src/bind.h"
#include "python/src/drawing.h"
#include "python/src/errors.h"
#include "python/src/map.h"
#include "tessel/SkyCoordinates.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <optional>
#include <pybind11/stl.h>
#include <variant>

namespace pavane::python
{

namespace
{

using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;

/// A page holds each cell of its map: of more it would swell a notebook.
constexpr std::int64_t mostCellsInline = std::int64_t{1} << 18;

/// What a user asks of the figure of a map, checked.
struct FigureWish {
    MapLook look;
    AArray<COLORREF> colours;
    std::optional<CString> title;  ///< instead of the usual header line
    SkyGridWish grid;
};

/// The figure of a map with what lies over it, as pavane-view draws it.
class MapDrawing : public Drawing
{
public:
    MapDrawing(std::shared_ptr<Map> map, int width, int height, FigureWish wish)
        : Drawing(width, height), map_(std::move(map)), wish_(std::move(wish)),
          model_(components_, map_->content().frame)
    {
        setUp();
    }

    void setAreas(const std::vector<std::tuple<Doubles, int, std::int32_t>>& outlines)
    {
        std::vector<AreaOutline> areas;
        for (const auto& [points, isNeverClean, colour] : outlines) {
            if (points.ndim() != 2 || points.shape(1) != 2)
                throw py::value_error("an outline has two columns, x and y");
            AreaOutline& area = areas.emplace_back();
            area.isNeverClean = isNeverClean;
            area.label.colour = colour;
            for (py::ssize_t i = 0; i < points.shape(0); ++i)
                area.points.push_back({points.at(i, 0), points.at(i, 1)});
        }
        areas_.setOutlines(std::move(areas));
    }
    void setModel(const Doubles& rows)
    {
        if (rows.ndim() != 2 || rows.shape(1) != 8)
            throw py::value_error("components have eight columns");
        components_ = componentsOf(rows);
    }
    /// After cells have changed in place.
    void refresh()
    {
        const MapContent found = map_->described();
        runFree([&](Interrupts& interrupts) {
            const DrawingLock::Hold hold(lock_, interrupts.flag());
            map_->take(found);
            setUp();
            forget();
        });
    }
    std::vector<CString> notes() override
    {
        std::vector<CString> notes;
        runFree([&](Interrupts& interrupts) {
            const DrawingLock::Hold hold(lock_, interrupts.flag());
            for (const CString& note : {noiseNoteOf(wish_.look.levels, map_->content()),
                                        levelNoteOf(wish_.look.levels, map_->content()),
                                        CString(picture_->graph().contours().leftOutText())})
                if (!note.empty())
                    notes.push_back(note);
        });
        return notes;
    }
    /// Positions in degrees, or values of the axes where the map is not on the sky or with
    /// `offsets`, to pixels of the picture and back, in place; NaN where there is none.
    void worldToPixels(double* x, double* y, std::size_t count)
    {
        SkyCoordinates sky;
        useSky(sky);
        const MapFrame& frame = map_->content().frame;
        for (std::size_t i = 0; i < count; ++i) {
            double column = std::nan(""), row = std::nan("");
            (void)sky.toPixel(x[i], y[i], column, row);
            x[i] = frame.xFirst + frame.xStep * column;
            y[i] = frame.yFirst + frame.yStep * row;
        }
        toPixels(x, y, count);
    }
    void pixelsToWorld(double* x, double* y, std::size_t count)
    {
        SkyCoordinates sky;
        useSky(sky);
        toValues(x, y, count);
        const MapFrame& frame = map_->content().frame;
        for (std::size_t i = 0; i < count; ++i) {
            double longitude = std::nan(""), latitude = std::nan("");
            (void)sky.toSky((x[i] - frame.xFirst) / frame.xStep,
                            (y[i] - frame.yFirst) / frame.yStep, longitude, latitude);
            x[i] = longitude;
            y[i] = latitude;
        }
    }
    int isOnSky() const { return map_->content().frame.onSky; }
    int isSmall() const override
    {
        const AMatrixAccess& cells = map_->cells();
        return std::int64_t{cells.rows()} * cells.columns() <= mostCellsInline;
    }
    CString title() const override
    {
        return wish_.title.value_or("").empty() ? mapTitle(map_->content().map.header)
                                                : *wish_.title;
    }

protected:
    void check() const override { map_->check(); }
    void draw(CDC& dc, const CRect& rect) override { picture_->draw(dc, rect); }
    void layOut(CDC& dc, const CRect& rect) override { (void)picture_->figure().layOut(dc, rect); }
    ABAxis& axis() override { return picture_->axis(); }

private:
    static AComponents componentsOf(const Doubles& rows);

    void useSky(SkyCoordinates& sky) const
    {
        std::string error;
        if (!sky.init(map_->content().map.header, error))
            throw py::value_error("the map has no place on the sky: " + error);
    }
    void setUp()
    {
        picture_ = std::make_unique<MapPicture>();
        picture_->show(map_->content(), map_->cells());
        picture_->graph().setColors(wish_.colours);
        applyWholeLook(*picture_, wish_.look);
        if (wish_.title)
            picture_->graph().setHeaderText(0, *wish_.title);
        if (wish_.grid.shown != SkyGridShown::none) {
            useSky(sky_);
            applySkyGrid(*addSkyGrid(*picture_, sky_), wish_.grid, sky_);
        }
        picture_->figure().addLayer(&areas_);
        picture_->figure().addLayer(&model_);
    }

    std::shared_ptr<Map> map_;
    FigureWish wish_;
    AComponents components_;
    AreaLayer areas_;
    ModelLayer model_;
    SkyCoordinates sky_;  ///< of the grid; not set without one
    std::unique_ptr<MapPicture> picture_;
};

AComponents MapDrawing::componentsOf(const Doubles& rows)
{
    AComponents components;
    components.GrowBy(static_cast<int>(rows.shape(0)));
    if (components.count() != rows.shape(0))
        throw std::bad_alloc();
    for (py::ssize_t i = 0; i < rows.shape(0); ++i) {
        ACompItem item;
        const double kind = rows.at(i, 0);
        if (!(kind >= double{pointComponent} && kind <= double{wideRingComponent}))
            throw py::value_error("component " + std::to_string(i) + " has no kind from 1 to 7");
        item.type = static_cast<std::int32_t>(kind);
        item.PeakFlux() = rows.at(i, 1);
        item.LargeAxis() = rows.at(i, 2);
        item.AxisRatio() = rows.at(i, 3);
        item.Inclination() = rows.at(i, 4);
        item.Angle() = rows.at(i, 5);
        item.Distance() = rows.at(i, 6);
        item.Width() = rows.at(i, 7);
        components(static_cast<int>(i)) = item;
    }
    return components;
}

LevelChoice levelsOf(const py::object& levels)
{
    LevelChoice choice;
    if (levels.is_none())
        return choice;
    CString error;
    if (py::isinstance<py::str>(levels)) {
        if (!parseLevels(levels.cast<std::string>(), choice, error))
            throw py::value_error("levels " + error);
        return choice;
    }
    choice.list.unit = LevelUnit::absolute;
    for (const double level : levels.cast<std::vector<double>>()) {
        if (!std::isfinite(level))
            throw py::value_error("levels have to be finite numbers");
        choice.list.factors.push_back(level);
    }
    choice.none = choice.list.factors.empty();
    if (choice.list.factors.size() > ContourLines::mostLevels)
        throw py::value_error("there are more than " + std::to_string(ContourLines::mostLevels) +
                              " levels");
    return choice;
}

MapScaleKind scaleOf(const std::string& name)
{
    static constexpr const char* names[] = {"linear", "sqrt", "log", "equal"};
    for (int i = 0; i < 4; ++i)
        if (name == names[i])
            return static_cast<MapScaleKind>(i);
    throw py::value_error("scale knows linear, sqrt, log and equal, not '" + name + "'");
}

void takeRange(double low, double high, bool inPerCent, MapLook& look)
{
    if (!std::isfinite(low) || !std::isfinite(high) || !(low < high) ||
        (inPerCent && (low < 0 || high > 100)))
        throw py::value_error("range has to be two numbers, the first below the second, or "
                              "'p:LOW,HIGH' in per cent of the cells");
    look.hasRange = 1;
    look.inPerCent = inPerCent;
    look.low = low;
    look.high = high;
}

std::shared_ptr<MapDrawing>
newFigure(std::shared_ptr<Map> map, int width, int height, const py::object& levels,
          const std::string& scale, const std::optional<std::tuple<double, double, bool>>& range,
          const std::variant<std::string, std::vector<unsigned>>& palette,
          const std::tuple<double, double, double>& contrast, bool isFree,
          const std::optional<std::string>& title, const std::string& grid)
{
    FigureWish wish;
    if (CString why; !readSkyGridWish(grid, wish.grid, why))
        throw py::value_error("sky_grid " + why);
    wish.look.levels = levelsOf(levels);
    wish.look.scale = scaleOf(scale);
    if (range)
        takeRange(std::get<0>(*range), std::get<1>(*range), std::get<2>(*range), wish.look);
    std::tie(wish.look.play.contrast, wish.look.play.bias, wish.look.play.gamma) = contrast;
    if (!wish.look.play.isUsable())
        throw py::value_error("contrast has to be (contrast, bias) or (contrast, bias, gamma) with "
                              "a gamma above 0");
    CString error;
    if (const auto* const name = std::get_if<std::string>(&palette)) {
        if (!paletteColours(*name, wish.colours, error))
            throw py::value_error("palette " + error);
    } else {
        const auto& list = std::get<std::vector<unsigned>>(palette);
        wish.colours.GrowBy(static_cast<int>(list.size()));
        for (int k = 0; k < wish.colours.count(); ++k) {
            const unsigned rgb = list[static_cast<std::size_t>(k)];
            wish.colours(k) = RGB(rgb >> 16 & 0xFF, rgb >> 8 & 0xFF, rgb & 0xFF);
        }
    }
    wish.look.freeAspect = isFree;
    wish.title = title;
    std::shared_ptr<MapDrawing> figure;
    map->check();
    runFree([&](Interrupts&) {
        figure = std::make_shared<MapDrawing>(std::move(map), width, height, std::move(wish));
    });
    return figure;
}

py::tuple convertWorld(MapDrawing& figure, const Doubles& x, const Doubles& y,
                       void (MapDrawing::*conversion)(double*, double*, std::size_t))
{
    Doubles toX(x.size()), toY(y.size());
    std::copy_n(x.data(), x.size(), toX.mutable_data());
    std::copy_n(y.data(), y.size(), toY.mutable_data());
    (figure.*conversion)(toX.mutable_data(), toY.mutable_data(),
                         static_cast<std::size_t>(x.size()));
    return py::make_tuple(toX, toY);
}

}  // namespace

void bindFigure(py::module_& m)
{
    py::class_<MapDrawing, Drawing, std::shared_ptr<MapDrawing>>(m, "MapDrawing")
        .def(py::init(&newFigure), py::arg("map"), py::arg("width"), py::arg("height"),
             py::arg("levels"), py::arg("scale"), py::arg("range"), py::arg("palette"),
             py::arg("contrast"), py::arg("free_aspect"), py::arg("title"), py::arg("sky_grid"))
        .def("set_areas", &MapDrawing::setAreas)
        .def("set_model", &MapDrawing::setModel)
        .def("refresh", &MapDrawing::refresh)
        .def_property_readonly("on_sky", [](const MapDrawing& f) { return f.isOnSky() != 0; })
        .def_property_readonly("title", &MapDrawing::title)
        .def("world_to_pixels",
             [](MapDrawing& f, const Doubles& x, const Doubles& y) {
                 return convertWorld(f, x, y, &MapDrawing::worldToPixels);
             })
        .def("pixels_to_world", [](MapDrawing& f, const Doubles& x, const Doubles& y) {
            return convertWorld(f, x, y, &MapDrawing::pixelsToWorld);
        });
    m.def(
        "palette_names",
        [] {
            std::vector<CString> names;
            const AObjArray<CString> found = PaletteNames();
            for (int i = 0; i < found.count(); ++i)
                names.push_back(found(i));
            return names;
        },
        "The palettes that `palette=` knows.\n\n>>> 'heat' in palette_names()\nTrue");
}

}  // namespace pavane::python
