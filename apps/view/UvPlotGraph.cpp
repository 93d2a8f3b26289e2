#include "apps/view/UvPlotGraph.h"

#include "pavane/axes/axis_curve.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/marker_blocks.h"
#include "pavane/axes/point_range.h"
#include "pavane/calibration/visibility_charts.h"
#include "pavane/images/PointPixels.h"
#include "platform/CDC.h"
#include "tessel/plain_text.h"
#include "tessel/stokes_name.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace pavane
{

namespace
{

constexpr COLORREF pointColor = RGB(0, 70, 150);
constexpr COLORREF modelColor = RGB(225, 90, 0);
/// Of a model over data of many colours.
constexpr COLORREF plainModelColor = RGB(0, 0, 0);
constexpr COLORREF chosenColor = RGB(200, 0, 60);
/// Size of a dot in pixels while there are at most so many of them.
constexpr struct {
    std::int64_t most;
    int size;
} dotSizes[] = {{300, 5}, {3000, 4}, {30000, 3}, {1000000, 2}};
/// More dots than this are drawn on a grid, of parts of a pixel, where a device is finer.
constexpr std::int64_t mostExactDots = 20000;
constexpr int partsOfPixel = 2;
/// Half the frame about the chosen point, in pixels.
constexpr int frameReach = 6;
/// What is left free above and right of the points, of their range.
constexpr double air = 0.03;
constexpr double hertzPerGigahertz = 1e9;
constexpr int frequencyDigits = 5;
constexpr int angleDigits = 4;

/// A scale in steps of so many units, from its start on.
CurveScale coarser(CurveScale scale, int units)
{
    scale.length /= units;
    scale.base = 0;
    scale.sign = 1;
    return scale;
}

/// A range that begins at 0, with some air above; from 0 to 1 while there is nothing.
void widen(double least, double greatest, double& from, double& to)
{
    from = 0;
    to = least <= greatest && greatest > 0 ? greatest * (1 + air) : 1;
}

/// Says that there are no points over ranges that can be read.
class UvAxis : public A2DAxis
{
public:
    UvAxis() : A2DAxis(1, 1, nullptr, 0) {}
    int isWithoutData() const override
    {
        for (int i = 0; i < childs().count(); ++i)
            if (const auto* const dots = dynamic_cast<const UvDotsGraph*>(childs()(i)))
                if (dots->count() > 0)
                    return 0;
        return 1;
    }
};

}  // namespace

int UvDotsGraph::dotSize() const
{
    for (const auto& size : dotSizes)
        if (count() <= size.most)
            return size.size;
    return 1;
}

int UvDotsGraph::overhang(const ABAxis& axis) const
{
    return axis.dc() ? unitsOf(*axis.dc(), dotSize()) : dotSize();
}

void UvDotsGraph::draw(CDC& dc, CRect&, TMinMax&)
{
    if (!axis() || count() == 0)
        return;
    drawDots(dc, {color_}, [this](std::vector<PointPixels>& pixels) { addTo(pixels.front()); });
}

void UvDotsGraph::drawDots(CDC& dc, const std::vector<COLORREF>& colors,
                           const std::function<void(std::vector<PointPixels>& pixels)>& add) const
{
    const FigureUnits units(dc);
    const int pixel = std::max(1, units.units(1));
    const int grid = count() > mostExactDots ? std::max(1, pixel / partsOfPixel) : 1;
    const CurveScale x = curveScaleX(*axis());
    const CurveScale y = curveScaleY(*axis());
    std::vector<PointPixels> pixels;
    for (std::size_t i = 0; i < colors.size(); ++i)
        pixels.emplace_back(coarser(x, grid), coarser(y, grid));
    add(pixels);
    const int size = unitsOf(dc, dotSize());
    for (std::size_t i = 0; i < colors.size(); ++i)
        pixels[i].forRuns([&](int first, int last, int row) {
            const int from = x.base + x.sign * (x.sign > 0 ? first : last) * grid;
            const int to = x.base + x.sign * (x.sign > 0 ? last : first) * grid;
            const CRect dots = dotBlocks(from, to, y.base + y.sign * row * grid, size);
            dc.FillSolidRect({dots.left, dots.top, dots.right + 1, dots.bottom + 1}, colors[i]);
        });
}

UvPlotGraph::UvPlotGraph(ABAxis* axis) : UvDotsGraph(axis, pointColor) {}

void UvPlotGraph::SetChosen(const UvPlotPoint* point)
{
    hasChosen_ = point != nullptr;
    if (point)
        chosen_ = *point;
}

void UvPlotGraph::getMinMax(TMinMax& range) const
{
    range = TMinMax();
    const UvRange all = points_ ? points_->range() : UvRange();
    if (!isCoverage()) {
        widen(all.leastX, all.greatestX, range.xMin, range.xMax);
        widen(all.leastY, all.greatestY, range.yMin, range.yMax);
        return;
    }
    // a circle about the middle: each point has a mirror image there
    const double reach = std::max({std::fabs(all.leastX), std::fabs(all.greatestX),
                                   std::fabs(all.leastY), std::fabs(all.greatestY)});
    range.xMax = range.yMax = all.leastX <= all.greatestX && reach > 0 ? reach * (1 + air) : 1;
    range.xMin = range.yMin = -range.xMax;
}

std::int64_t UvPlotGraph::count() const
{
    std::int64_t count = 0;
    if (points_)
        for (const UvPointBlock& block : points_->blocks())
            count += static_cast<std::int64_t>(block.x.size()) * (isCoverage() ? 2 : 1);
    return count;
}

int UvPlotGraph::isCoverage() const
{
    return points_ && points_->view().kind == UvView::Kind::coverage;
}

void UvPlotGraph::addTo(PointPixels& pixels) const
{
    constexpr std::size_t piece = 4096;
    double x[piece];
    double y[piece];
    for (const UvPointBlock& block : points_->blocks())
        for (std::size_t i = 0; i < block.x.size(); i += piece) {
            const std::size_t n = std::min(piece, block.x.size() - i);
            for (const double sign : {1., -1.}) {
                for (std::size_t k = 0; k < n; ++k) {
                    x[k] = sign * double{block.x[i + k]};
                    y[k] = sign * double{block.y[i + k]};
                }
                pixels.add({x, y, static_cast<std::int64_t>(n), 0, 1});
                if (!isCoverage())
                    break;
            }
        }
}

void UvPlotGraph::SetKeyOf(const AUVXFile* file)
{
    key_ = file && points_ ? uvColours(*file, points_->view().colour, points_->classes())
                           : UvColourKey();
}

/// Colour by colour, in one pass over the points.
void UvPlotGraph::drawColoured(CDC& dc) const
{
    const std::vector<std::size_t> order = key_.drawingOrder();
    std::vector<COLORREF> colors;
    std::vector<std::size_t> placeOf(order.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
        colors.push_back(key_.entries[order[k]].color);
        placeOf[order[k]] = k;
    }
    struct Piece {
        std::vector<double> x, y;
    };
    constexpr std::size_t most = 1024;
    drawDots(dc, colors, [&](std::vector<PointPixels>& pixels) {
        std::vector<Piece> pieces(colors.size());
        const auto put = [&](std::size_t k) {
            Piece& piece = pieces[k];
            pixels[k].add(
                {piece.x.data(), piece.y.data(), static_cast<std::int64_t>(piece.x.size()), 0, 1});
            piece.x.clear();
            piece.y.clear();
        };
        for (const UvPointBlock& block : points_->blocks())
            for (std::size_t i = 0; i < std::min(block.x.size(), block.colour.size()); ++i) {
                // classes that were met since the key was made wait for the next one
                if (block.colour[i] >= key_.entryOfClass.size())
                    continue;
                const std::size_t k = placeOf[key_.entryOfClass[block.colour[i]]];
                Piece& piece = pieces[k];
                piece.x.push_back(double{block.x[i]});
                piece.y.push_back(double{block.y[i]});
                if (isCoverage()) {
                    piece.x.push_back(-double{block.x[i]});
                    piece.y.push_back(-double{block.y[i]});
                }
                if (piece.x.size() >= most)
                    put(k);
            }
        for (std::size_t k = 0; k < pieces.size(); ++k)
            put(k);
    });
}

void UvPlotGraph::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    if (axis() && count() > 0 && !key_.isEmpty())
        drawColoured(dc);
    else
        UvDotsGraph::draw(dc, rect, range);
    if (!hasChosen_ || !axis() || isPage(dc))  // paper has no selection
        return;
    const double x = double{chosen_.x};
    const double y = double{chosen_.y};
    const int reach = unitsOf(dc, frameReach);
    const int line = unitsOf(dc, 2);
    const int gx = axis()->RPXtoGPX(x);
    const int gy = axis()->RPYtoGPY(y);
    const CRect outer(gx - reach, gy - reach, gx + reach + 1, gy + reach + 1);
    for (const CRect& side : {CRect(outer.left, outer.top, outer.right, outer.top + line),
                              CRect(outer.left, outer.bottom - line, outer.right, outer.bottom),
                              CRect(outer.left, outer.top, outer.left + line, outer.bottom),
                              CRect(outer.right - line, outer.top, outer.right, outer.bottom)})
        dc.FillSolidRect(side, chosenColor);
}

UvModelGraph::UvModelGraph(ABAxis* axis) : UvDotsGraph(axis, modelColor) {}

void UvModelGraph::compute(const AComponents& model, const std::vector<UvPlotPoints::Place>& places,
                           const UvView& view)
{
    std::vector<double> u;
    std::vector<double> v;
    for (const UvPlotPoints::Place& place : places) {
        u.push_back(place.u);
        v.push_back(place.v);
    }
    std::vector<std::complex<double>> values(u.size());
    model.VfromUV(u.data(), v.data(), static_cast<int>(u.size()), values.data());
    const UvPlacing placing(view);
    setColor(view.colour == UvColour::none ? modelColor : plainModelColor);
    x_.clear();
    y_.clear();
    for (std::size_t i = 0; i < values.size() && !placing.isCoverage(); ++i) {
        x_.push_back(placing.x(u[i], v[i]));
        y_.push_back(placing.y(v[i], std::abs(values[i])));
    }
}

void UvModelGraph::getMinMax(TMinMax& range) const
{
    TMinMax points;
    rangeOfPoints({x_.data(), y_.data(), count(), 0, 1}, points);
    range = TMinMax();
    if (count() == 0)
        return;
    widen(points.xMin, points.xMax, range.xMin, range.xMax);
    widen(points.yMin, points.yMax, range.yMin, range.yMax);
}

void UvModelGraph::addTo(PointPixels& pixels) const
{
    pixels.add({x_.data(), y_.data(), count(), 0, 1});
}

A2DAxis* newUvAxis(const UvView& view)
{
    auto* const axis = new UvAxis;
    const int isCoverage = view.kind == UvView::Kind::coverage;
    if (isCoverage)
        axis->setNameOX("u [%sλ]");
    else if (view.kind == UvView::Kind::projected)
        axis->setNameOX("uv distance along " + valToStr(view.angle, angleDigits) + "° [%sλ]");
    else
        axis->setNameOX("uv distance [%sλ]");
    axis->setNameOY(isCoverage ? "v [%sλ]" : "Amplitude [%sJy]");
    return axis;
}

CString uvPlotHeader(const AUVXFile& file, const UvPlotPoints& points)
{
    const UvHeader& header = file.header();
    CString text;
    const auto append = [&text](const std::string& part) {
        if (!part.empty())
            text += (text.empty() ? "" : "   ") + part;
    };
    append(plainText(header.object));
    if (header.frequency > 0)
        append(valToStr(header.frequency / hertzPerGigahertz, frequencyDigits) + "\u00a0GHz");
    append(plainText(header.dateObs.substr(0, header.dateObs.find('T'))));
    std::string hands;
    for (int i = 0; i < points.marks().stokes.count(); ++i)
        if (points.marks().stokes.get(i))
            hands += (hands.empty() ? "" : "\u00a0") +
                     stokesName(header.stokes[static_cast<std::size_t>(i)]);
    append(hands);
    if (points.view().seconds > 0)
        append(meansText(points.view().seconds));
    if (points.thinning() > 1)
        append("1\u00a0of\u00a0" + std::to_string(points.thinning()) + "\u00a0points");
    return text;
}

}  // namespace pavane
