#pragma once

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/AGraph.h"
#include "pavane/calibration/uv_colours.h"
#include "pavane/tables/components/AComponents.h"
#include "tessel/uvfits/UvPlotPoints.h"

#include <functional>
#include <vector>

namespace pavane
{

class PointPixels;

/// Dots in a plot, smaller the more there are.
class UvDotsGraph : public AGraph
{
public:
    UvDotsGraph(ABAxis* axis, COLORREF color) : AGraph(axis, 0), color_(color) {}
    void setColor(COLORREF color) { color_ = color; }
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
    int overhang(const ABAxis& axis) const override;
    virtual std::int64_t count() const = 0;

protected:
    /// Sets the pixels of all points.
    virtual void addTo(PointPixels& pixels) const = 0;
    /// Draws sets of dots, one after another; `add` sets the pixels of each.
    void drawDots(CDC& dc, const std::vector<COLORREF>& colors,
                  const std::function<void(std::vector<PointPixels>& pixels)>& add) const;

private:
    int dotSize() const;
    COLORREF color_;
};

/// Visibilities in their view, which may still be read.
class UvPlotGraph : public UvDotsGraph
{
public:
    explicit UvPlotGraph(ABAxis* axis);
    /// Not owned; null for none.
    void SetPoints(const UvPlotPoints* points) { points_ = points; }
    void SetHeader(const CString& header) { header_ = header; }
    /// A point with a frame about it; null for none.
    void SetChosen(const UvPlotPoint* point);

    void getMinMax(TMinMax& range) const override;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
    int hasHeaderText(int index) const override { return index == 0 && !header_.empty(); }
    CString getHeaderText(int) const override { return header_; }

    std::int64_t count() const override;
    int isCoverage() const;
    const UvPlotPoints* points() const { return points_; }
    /// What the colours are of; of points without colours nothing.
    const UvColourKey& key() const { return key_; }
    /// Looks which classes there are, of the points of a file; null for no colours.
    void SetKeyOf(const AUVXFile* file);

protected:
    void addTo(PointPixels& pixels) const override;

private:
    void drawColoured(CDC& dc) const;

    const UvPlotPoints* points_ = nullptr;
    CString header_;
    UvColourKey key_;
    UvPlotPoint chosen_;
    int hasChosen_ = 0;
};

/// The amplitudes of a model where the visibilities of a plot lie.
class UvModelGraph : public UvDotsGraph
{
public:
    explicit UvModelGraph(ABAxis* axis);
    /// `view` is no coverage, where a model has no place.
    void compute(const AComponents& model, const std::vector<UvPlotPoints::Place>& places,
                 const UvView& view);
    void getMinMax(TMinMax& range) const override;

    std::int64_t count() const override { return static_cast<std::int64_t>(x_.size()); }

protected:
    void addTo(PointPixels& pixels) const override;

private:
    std::vector<double> x_, y_;
};

/// The axis of such a plot with its titles; the caller owns it.
A2DAxis* newUvAxis(const UvView& view);

/// What the plot shows in a line: object, frequency, date, hands, and how much is left out.
CString uvPlotHeader(const AUVXFile& file, const UvPlotPoints& points);

}  // namespace pavane
