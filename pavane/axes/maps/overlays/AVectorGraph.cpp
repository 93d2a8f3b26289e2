#include "pavane/axes/maps/overlays/AVectorGraph.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/outline_stroke.h"
#include "pavane/axes/SelectedObject.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>

namespace pavane
{

namespace
{

/// Nearly all strokes are at most as long, in distances between strokes.
constexpr double usualPart = 1.1;
/// The bar, in the same measure, is the greatest round value below this.
constexpr double longestBar = 2.6;

/// The greatest of 1, 2, 5 times a power of ten that is not above a value.
double roundBelow(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double digit : {5.0, 2.0})
        if (digit * power <= value)
            return digit * power;
    return power;
}

/// The length that all but a few strokes have at most: noise at the edge of a source makes giants,
/// which would leave the others short. 0 without strokes.
double mostLengths(const AMatrix<float>& lengths)
{
    constexpr double few = 0.05;
    constexpr std::int64_t enough = 100000;
    const auto count = std::int64_t{lengths.rows()} * lengths.columns();
    const std::int64_t stride = std::max<std::int64_t>(count / enough, 1);
    double greatest = 0;
    try {
        std::vector<float> known;
        for (std::int64_t i = 0; i < count; ++i)
            if (const float length = lengths.data()[i]; length > 0 && std::isfinite(length)) {
                greatest = std::max(greatest, static_cast<double>(length));
                if (i % stride == 0)
                    known.push_back(length);
            }
        if (known.empty())
            return greatest;
        const auto at = known.begin() + static_cast<std::ptrdiff_t>(
                                            (1 - few) * static_cast<double>(known.size() - 1));
        std::nth_element(known.begin(), at, known.end());
        return static_cast<double>(*at);
    } catch (const std::bad_alloc&) {
        return greatest;
    }
}

}  // namespace

AVectorGraph::AVectorGraph(ABAxis* axis, const ABMapGraph& map, const AMatrix<float>& lengths,
                           const AMatrix<float>& angles, const SkyCoordinates& sky)
    : AGraph(axis, 0), map_(map), lengths_(lengths), angles_(angles), sky_(sky)
{
    usual_ = mostLengths(lengths);
}

void AVectorGraph::valuesChanged() { usual_ = mostLengths(lengths_); }

void AVectorGraph::setScale(double scale)
{
    constexpr double most = 100;
    scale_ = scale > 0 ? std::clamp(scale, 1 / most, most) : 1;
}

void AVectorGraph::setUnit(const CString& unit, double factor)
{
    unit_ = unit;
    factor_ = factor;
}

void AVectorGraph::setColors(COLORREF line, COLORREF edge)
{
    line_ = line;
    edge_ = edge;
}

/// Cells from one stroke to the next, the same both ways.
int AVectorGraph::stepFor(double unitsPerPixel) const
{
    const ABAxis& a = *axis();
    const CPointF origin = a.RPtoGPF(map_.MPXtoRPX(0), map_.MPYtoRPY(0));
    const CPointF next = a.RPtoGPF(map_.MPXtoRPX(1), map_.MPYtoRPY(1));
    const double cell = std::min(std::fabs(next.x - origin.x), std::fabs(next.y - origin.y));
    const double steps = cell > 0 ? std::ceil(spacing_ * unitsPerPixel / cell) : 1;
    return static_cast<int>(
        std::clamp(steps, 1.0, static_cast<double>(std::max(lengths_.rows(), 1))));
}

/// Device units for a value of 1.
double AVectorGraph::unitLength(double unitsPerPixel) const
{
    const ABAxis& a = *axis();
    const CPointF origin = a.RPtoGPF(map_.MPXtoRPX(0), map_.MPYtoRPY(0));
    const CPointF next = a.RPtoGPF(map_.MPXtoRPX(1), map_.MPYtoRPY(1));
    const double cell = std::min(std::fabs(next.x - origin.x), std::fabs(next.y - origin.y));
    const double distance = std::max(cell * stepFor(unitsPerPixel), spacing_ * unitsPerPixel);
    // of few strokes far apart none is a giant
    constexpr double most = 4;
    return std::min(distance, most * spacing_ * unitsPerPixel) * usualPart / usual_ * scale_;
}

/// The direction of an angle at a cell, as device units of length 1.
int AVectorGraph::directionAt(int row, int column, double angle, CPointF& to) const
{
    LocalSky local;
    if (!sky_.localSky(column, row, local))
        return 0;
    const double(&m)[2][2] = local.toSky;
    const double det = m[0][0] * m[1][1] - m[0][1] * m[1][0];
    const double radians = angle * std::numbers::pi / 180;
    const double east = std::sin(radians), north = std::cos(radians);
    const double columns = (m[1][1] * east - m[0][1] * north) / det;
    const double rows = (m[0][0] * north - m[1][0] * east) / det;
    const double size = std::hypot(columns, rows);
    const ABAxis& a = *axis();
    const CPointF here = a.RPtoGPF(map_.MPXtoRPX(column), map_.MPYtoRPY(row));
    const CPointF there =
        a.RPtoGPF(map_.MPXtoRPX(column + columns / size), map_.MPYtoRPY(row + rows / size));
    const double way = std::hypot(there.x - here.x, there.y - here.y);
    to = {(there.x - here.x) / way, (there.y - here.y) / way};
    return std::isfinite(to.x) && std::isfinite(to.y);
}

std::vector<AVectorGraph::Stroke> AVectorGraph::strokes(double unitsPerPixel) const
{
    std::vector<Stroke> strokes;
    if (!axis() || !(usual_ > 0) || lengths_.rows() != map_.cells().rows() ||
        lengths_.columns() != map_.cells().columns())
        return strokes;
    const int step = stepFor(unitsPerPixel);
    const double unit = unitLength(unitsPerPixel);
    CRect plot = axis()->getGraphRect();
    const int beyond = static_cast<int>(std::min(unit * usual_, 1e6));  // of nearly all
    plot.InflateRect(beyond, beyond);
    for (int r = step / 2; r < lengths_.rows(); r += step)
        for (int c = step / 2; c < lengths_.columns(); c += step) {
            const auto length = static_cast<double>(lengths_(r, c));
            const auto angle = static_cast<double>(angles_(r, c));
            if (!(length > 0) || !std::isfinite(angle))
                continue;
            const CPointF middle = axis()->RPtoGPF(map_.MPXtoRPX(c), map_.MPYtoRPY(r));
            CPointF to;
            if (middle.x < plot.left || middle.x > plot.right || middle.y < plot.top ||
                middle.y > plot.bottom || !directionAt(r, c, angle, to))
                continue;
            const double half = length * unit / 2;
            strokes.push_back({middle, to.x * half, to.y * half});
        }
    return strokes;
}

void AVectorGraph::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    (void)rect;
    (void)range;
    if (!axis() || axis()->getGraphRect().IsRectEmpty() || axis()->isFlagSet(axisBitmapMode))
        return;
    const double perPixel = FigureUnits(dc).perPixel();
    OutlineCurves curves;
    for (const Stroke& s : strokes(perPixel))
        curves.push_back(
            {{s.middle.x - s.dx, s.middle.y - s.dy}, {s.middle.x + s.dx, s.middle.y + s.dy}});
    if (curves.empty())
        return;
    strokeOutlines(dc, *axis(), curves, {line_, edge_, 1, 3});
    drawBar(dc, perPixel);
}

/// The bar with its value in the upper right corner, on a white ground.
void AVectorGraph::drawBar(CDC& dc, double unitsPerPixel) const
{
    const ABAxis& a = *axis();
    const double unit = unitLength(unitsPerPixel);
    const double most = usual_ * longestBar / usualPart / scale_ * factor_;
    const double value = roundBelow(most);
    CFont font;
    if (!(value > 0) || !std::isfinite(value) ||
        !ABAxis::CreateAxisFont(font, a.getFHeight(), 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    constexpr int digits = 3;
    const CString text =
        valToStr(value, digits) + (unit_.empty() || unit_ == "%" ? "" : " ") + unit_;
    const CSize size = dc.GetTextExtent(text);
    const int air =
        FigureUnits(dc).ofFont(a.getFHeight(), [](int height) { return std::max(2, height / 3); });
    const int length = static_cast<int>(std::lround(value / factor_ * unit));
    const int width = std::max(length, static_cast<int>(size.cx)) + 2 * air;
    const CRect& plot = a.getGraphRect();
    const CRect box(plot.right - air - width, plot.top + air, plot.right - air,
                    plot.top + air + size.cy + 3 * air);
    if (box.left < plot.left || box.bottom > plot.bottom)
        return;
    dc.FillSolidRect(box, RGB(255, 255, 255));
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(RGB(0, 0, 0));
    dc.TextOut(box.left + (box.Width() - size.cx) / 2, box.top + 2 * air, text);
    const double y = box.top + air, x = box.left + (box.Width() - length) / 2.0;
    strokeOutlines(dc, a, {{{x, y}, {x + length, y}}}, {RGB(0, 0, 0), RGB(255, 255, 255), 2, 2});
}

}  // namespace pavane
