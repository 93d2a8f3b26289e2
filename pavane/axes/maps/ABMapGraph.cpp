#include "pavane/axes/maps/ABMapGraph.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/cells/StoppableCells.h"
#include "platform/CDC.h"

#include <cmath>

namespace pavane
{

namespace
{

double spacing(double first, double last, int count)
{
    const double step = count > 1 ? (last - first) / (count - 1) : 0;
    return std::isfinite(step) ? step : 0;
}

/// The data value at the fraction `wp` of a direction.
double valueAt(double wp, int direct, double min, double max, TMnMx logarithms)
{
    if (direct == 0 && logarithms.min < logarithms.max)
        return std::pow(10.0, logarithms.min + wp * (logarithms.max - logarithms.min));
    return min + wp * (max - min);
}

}  // namespace

ABMapGraph::ABMapGraph(ABAxis* axis, const AMatrixAccess& cells, const TMinMax& centres, int asItem)
    : AGraph(axis, asItem), cells_(&cells), centres_(centres)
{
}

void ABMapGraph::cellsChanged() { hasRange_ = hasNoise_ = 0; }

void ABMapGraph::setNames(const CString& x, const CString& y, const CString& z)
{
    nameX_ = x;
    nameY_ = y;
    nameZ_ = z;
}

void ABMapGraph::setHeaderText(int index, const CString& text)
{
    if (index < 0)
        return;
    if (static_cast<std::size_t>(index) >= headerTexts_.size())
        headerTexts_.resize(static_cast<std::size_t>(index) + 1);
    headerTexts_[static_cast<std::size_t>(index)] = text;
    hasOwnHeader_ = hasOwnHeader_ || index == 0;
}

const MapRange& ABMapGraph::cellRange() const
{
    if (!hasRange_) {
        const StoppableCells cells(*cells_, stop_);
        cellRange_ = mapRange(cells);
        hasRange_ = !cells.isStopped();
        if (!hasRange_)
            cellRange_ = {};
    }
    return cellRange_;
}

const MapNoise& ABMapGraph::noise() const
{
    if (!hasNoise_) {
        const StoppableCells cells(*cells_, stop_);
        noise_ = mapNoise(cells);
        hasNoise_ = !cells.isStopped();
        if (!hasNoise_)
            noise_ = {};
    }
    return noise_;
}

void ABMapGraph::setStatistics(const MapRange& range, const MapNoise& noise)
{
    cellRange_ = range;
    noise_ = noise;
    hasRange_ = hasNoise_ = 1;
}

TMnMx ABMapGraph::zRange() const
{
    if (cellRange().isEmpty())
        return {};
    if (centres_.zMin < centres_.zMax)
        return {centres_.zMin, centres_.zMax};
    return {cellRange().least, cellRange().greatest};
}

double ABMapGraph::stepX() const
{
    const double x = spacing(centres_.xMin, centres_.xMax, cells_->columns());
    const double y = spacing(centres_.yMin, centres_.yMax, cells_->rows());
    return x != 0 ? x : y != 0 ? std::fabs(y) : 1;
}

double ABMapGraph::stepY() const
{
    const double x = spacing(centres_.xMin, centres_.xMax, cells_->columns());
    const double y = spacing(centres_.yMin, centres_.yMax, cells_->rows());
    return y != 0 ? y : x != 0 ? std::fabs(x) : 1;
}

PixelCells ABMapGraph::columnsOfPixels(int first, int pixels, int ratio) const
{
    const CRect& rect = axis()->getGraphRect();
    const TMinMax& range = axis()->getMinMax();
    std::vector<double> borders;
    for (int i = 0; i <= pixels * ratio; ++i) {
        const double distance = first + static_cast<double>(i) / ratio - 0.5 - rect.left;
        double wp = distance / rect.Width();
        if (axis()->getXDirect() < 0)
            wp = 1 - wp;
        borders.push_back(
            RPXtoMPX(valueAt(wp, axis()->getXDirect(), range.xMin, range.xMax, axis()->logX())));
    }
    PixelCells shown;
    shown.set(borders, cells_->columns());
    return shown;
}

PixelCells ABMapGraph::rowsOfPixels(int first, int pixels, int ratio) const
{
    const CRect& rect = axis()->getGraphRect();
    const TMinMax& range = axis()->getMinMax();
    std::vector<double> borders;
    for (int i = 0; i <= pixels * ratio; ++i) {
        const double distance = first + static_cast<double>(i) / ratio - 0.5 - rect.top;
        double wp = distance / rect.Height();
        if (axis()->getYDirect() >= 0)
            wp = 1 - wp;
        borders.push_back(
            RPYtoMPY(valueAt(wp, axis()->getYDirect(), range.yMin, range.yMax, axis()->logY())));
    }
    PixelCells shown;
    shown.set(borders, cells_->rows());
    return shown;
}

CString& ABMapGraph::getOY(CString& name) const
{
    if (!nameY_.empty())
        name = nameY_;
    return name;
}

int ABMapGraph::hasHeaderText(int index) const { return !getHeaderText(index).empty(); }

CString ABMapGraph::getHeaderText(int index) const
{
    if (index == 0 && !hasOwnHeader_)
        return usualHeader_;
    const bool isGiven = index >= 0 && static_cast<std::size_t>(index) < headerTexts_.size();
    return isGiven ? headerTexts_[static_cast<std::size_t>(index)] : CString();
}

void ABMapGraph::getMinMax(TMinMax& range) const
{
    range = TMinMax();
    if (!cells_->isEmpty()) {
        range.xMin = MPXtoRPX(-0.5);
        range.xMax = MPXtoRPX(cells_->columns() - 0.5);
        range.yMin = MPYtoRPY(-0.5);
        range.yMax = MPYtoRPY(cells_->rows() - 0.5);
    }
    const TMnMx z = zRange();
    range.zMin = z.min;
    range.zMax = z.max;
}

void ABMapGraph::draw(CDC& dc, CRect& /*rect*/, TMinMax& /*range*/)
{
    if (!axis() || axis()->getGraphRect().IsRectEmpty())
        return;
    const MapStop stop(*this, dc);
    if (cellRange().isEmpty())
        drawNoData(dc);
    else
        drawBeam(dc, *axis(), beam_, beamLook_);
}

MapStop::MapStop(const ABMapGraph& graph, const CDC& dc) : graph_(graph), before_(graph.stop())
{
    if (dc.stopFlag())
        graph.setStop(dc.stopFlag());
}

void ABMapGraph::drawNoData(CDC& dc) const
{
    if (axis()->isFlagSet(axisBitmapMode))
        return;  // a raster holds no text
    CFont font;
    if (!ABAxis::CreateAxisFont(font, axis()->getFHeight() * 3 / 2, 0, 0.0))
        return;
    CFont* const old = dc.SelectObject(&font);
    const int oldMode = dc.SetBkMode(TRANSPARENT);
    const COLORREF oldColor = dc.SetTextColor(RGB(128, 128, 128));
    const CSize size = dc.GetTextExtent(noDataText);
    const CPoint centre = axis()->getGraphRect().CenterPoint();
    dc.TextOut(centre.x - size.cx / 2, centre.y - size.cy / 2, noDataText);
    dc.SetTextColor(oldColor);
    dc.SetBkMode(oldMode);
    dc.SelectObject(old);
}

}  // namespace pavane
