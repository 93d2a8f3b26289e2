#include "pavane/axes/AStatHistGraph.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"
#include "python/src/bind.h"
#include "python/src/drawing.h"
#include "python/src/errors.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <pybind11/stl.h>

namespace pavane::python
{

namespace
{

using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;
using Ends = std::optional<std::pair<double, double>>;

/// The header line of a plot, which axes take from their graphs.
class HeaderGraph : public AGraph
{
public:
    HeaderGraph(ABAxis* axis, CString text) : AGraph(axis, 0), text_(std::move(text)) {}
    int hasHeaderText(int index) const override { return index == 0; }
    CString getHeaderText(int index) const override { return index ? CString() : text_; }

private:
    CString text_;
};

/// A histogram whose header line is the mean and RMS of its sample. The verdict of the base is for
/// observations that are compared with older ones by it; it does not tell whether numbers are
/// spread as normal ones.
class HistogramGraph : public AStatHistGraph
{
public:
    HistogramGraph(ABAxis* axis, CString text) : AStatHistGraph(axis, 0), text_(std::move(text)) {}
    int hasHeaderText(int index) const override { return index == 0 && !text_.empty(); }
    CString getHeaderText(int index) const override { return index ? CString() : text_; }

private:
    CString text_;
};

/// What a plot is made with.
struct PlotWish {
    int xCode = 1, yCode = 1;
    Ends xRange, yRange;
    CString xTitle, yTitle, header;
    int grid = 0;
};

/// Curves, points and histograms between two axes. Holds the arrays that it draws.
class PlotDrawing : public Drawing
{
public:
    PlotDrawing(int width, int height, const PlotWish& wish)
        : Drawing(width, height), header_(wish.header),
          axis_(wish.xCode, wish.yCode, nullptr, wish.grid ? axisGridX | axisGridY : 0)
    {
        TMinMax range;
        // while an x is not set the graphs give the whole range
        const double open = std::nan("");
        range.xMin = range.xMax = range.yMin = range.yMax = open;
        if (wish.xRange)
            std::tie(range.xMin, range.xMax) = *wish.xRange;
        if (wish.yRange)
            std::tie(range.yMin, range.yMax) = *wish.yRange;
        if (wish.xRange || wish.yRange)
            axis_.setMinMax(range);
        axis_.setNameOX(wish.xTitle);
        axis_.setNameOY(wish.yTitle);
        if (!header_.empty())
            new HeaderGraph(&axis_, header_);  // the axis's
    }

    void addCurve(Doubles x, Doubles y, int style, int width, unsigned rgb, const CString& name)
    {
        hold(x, y);
        add(new AGraphXYLine(&axis_, doublesOf(x), doublesOf(y), countOf(x), nullptr, style, width,
                             colourOf(rgb), 0),
            name);
    }
    void addPoints(Doubles x, Doubles y, int marker, int width, unsigned rgb, const CString& name,
                   const std::optional<Doubles>& xErrors, const std::optional<Doubles>& yErrors)
    {
        hold(x, y);
        auto* const graph = new AGraphXYErrors(&axis_, doublesOf(x), doublesOf(y), countOf(x),
                                               nullptr, marker, width, colourOf(rgb), 0);
        if (xErrors) {
            hold(*xErrors, x);
            graph->setXErrors(xErrors->data());
        }
        if (yErrors) {
            hold(*yErrors, y);
            graph->setYErrors(yErrors->data());
        }
        add(graph, name);
    }
    void addHistogram(const Doubles& heights, double low, double high, double mean, double variance,
                      unsigned rgb, unsigned curve)
    {
        auto bins = std::make_unique<AArray<double>>();
        bins->GrowBy(static_cast<int>(heights.size()));
        if (bins->count() != heights.size())
            throw std::bad_alloc();
        std::copy_n(heights.data(), heights.size(), bins->lpArray());
        TMnMx range{low, high};
        constexpr int digits = 4;
        const CString text =
            "mean " + valToStr(mean, digits) + "   RMS " + valToStr(std::sqrt(variance), digits);
        auto* const graph = new HistogramGraph(&axis_, header_.empty() ? text : CString());
        graph->SetParameters(bins.get(), range, mean, variance, colourOf(rgb), colourOf(curve));
        bins_.push_back(std::move(bins));
        forget();
    }
    CString title() const override { return header_.empty() ? "plot" : header_; }

protected:
    void draw(CDC& dc, const CRect& rect) override
    {
        dc.FillSolidRect(rect, RGB(255, 255, 255));
        const int before = dc.SetSmooth(1);
        CRect all = rect;
        axis_.draw(dc, all);
        (void)dc.SetSmooth(before);
    }
    void layOut(CDC& dc, const CRect& rect) override { (void)axis_.layOut(dc, rect); }
    ABAxis& axis() override { return axis_; }

private:
    static COLORREF colourOf(unsigned rgb)
    {
        return RGB(rgb >> 16 & 0xFF, rgb >> 8 & 0xFF, rgb & 0xFF);
    }
    // graphs read the values, which their constructors do not take as such
    static double* doublesOf(const Doubles& values) { return const_cast<double*>(values.data()); }
    static int countOf(const Doubles& values) { return static_cast<int>(values.size()); }

    void hold(const Doubles& first, const Doubles& second)
    {
        if (first.ndim() != 1 || second.ndim() != 1 || first.size() != second.size())
            throw py::value_error("arrays of one axis and of the same length are wanted");
        if (first.size() > std::numeric_limits<int>::max())
            throw py::value_error("there are more than 2147483647 points");
        arrays_.push_back(first);
        arrays_.push_back(second);
    }
    void add(AGraph* graph, const CString& name)
    {
        graph->setGraphName(name);
        if (!name.empty())
            axis_.setLegend(legendEmptiest);
        forget();
    }

    CString header_;
    std::vector<Doubles> arrays_;
    std::vector<std::unique_ptr<AArray<double>>> bins_;
    A2DAxisMulti axis_;
};

std::shared_ptr<PlotDrawing> newPlot(int width, int height, int xCode, int yCode,
                                     const Ends& xRange, const Ends& yRange,
                                     const std::string& xTitle, const std::string& yTitle,
                                     const std::string& header, bool grid)
{
    return std::make_shared<PlotDrawing>(
        width, height, PlotWish{xCode, yCode, xRange, yRange, xTitle, yTitle, header, grid});
}

}  // namespace

void bindPlot(py::module_& m)
{
    py::class_<PlotDrawing, Drawing, std::shared_ptr<PlotDrawing>>(m, "PlotDrawing")
        .def(py::init(&newPlot), py::arg("width"), py::arg("height"), py::arg("x_code"),
             py::arg("y_code"), py::arg("x_range"), py::arg("y_range"), py::arg("x_title"),
             py::arg("y_title"), py::arg("header"), py::arg("grid"))
        .def("add_curve", &PlotDrawing::addCurve, py::arg("x"), py::arg("y"), py::arg("style"),
             py::arg("width"), py::arg("color"), py::arg("name"))
        .def("add_points", &PlotDrawing::addPoints, py::arg("x"), py::arg("y"), py::arg("marker"),
             py::arg("width"), py::arg("color"), py::arg("name"), py::arg("x_errors"),
             py::arg("y_errors"))
        .def("add_histogram", &PlotDrawing::addHistogram, py::arg("heights"), py::arg("low"),
             py::arg("high"), py::arg("mean"), py::arg("variance"), py::arg("color"),
             py::arg("curve"));
}

}  // namespace pavane::python
