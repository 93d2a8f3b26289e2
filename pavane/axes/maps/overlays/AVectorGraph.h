#pragma once

#include "pavane/axes/AGraph.h"
#include "platform/types.h"
#include "tessel/AMatrix.h"
#include "tessel/SkyCoordinates.h"

#include <vector>

namespace pavane
{

class ABMapGraph;

/// Vectors of polarisation over a map: a stroke in the middle of a cell, as long as a value says
/// and turned from the north of the map's own frame through east, so that turned and mirrored maps
/// have them right. Where strokes would be closer than some pixels only some cells have one. A bar
/// in a corner says how long a value is drawn. Counts in no range.
class PAVANE_API AVectorGraph : public AGraph
{
public:
    /// A stroke in device units: its ends lie `dx`, `dy` to both sides of the middle.
    struct Stroke {
        CPointF middle;
        double dx = 0, dy = 0;
    };

    /// `map` is the graph of the map below, in the same axis; `lengths` (any unit, above 0) and
    /// `angles` (degrees) have its cells. NaN: no stroke. All of them, and `sky`, have to outlive
    /// the graph.
    AVectorGraph(ABAxis* axis, const ABMapGraph& map, const AMatrix<float>& lengths,
                 const AMatrix<float>& angles, const SkyCoordinates& sky);

    /// What the bar calls a value of 1, and by how much values are multiplied there: "%" and 100
    /// for a degree, "mJy/beam" and 1000 for janskys. "" and 1 at first.
    void setUnit(const CString& unit, double factor);
    /// Pixels of 96 per inch between strokes at least; 14 at first.
    void setSpacing(int pixels) { spacing_ = pixels; }
    /// How long strokes are, beside the usual length that leaves nearly all of them apart; 1 at
    /// first.
    void setScale(double scale);
    double scale() const { return scale_; }
    /// Lengths or angles are others now.
    void valuesChanged();
    void setColors(COLORREF line, COLORREF edge);

    /// The strokes of the plot as it is laid out, for `unitsPerPixel` of the context.
    std::vector<Stroke> strokes(double unitsPerPixel) const;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;

private:
    int stepFor(double unitsPerPixel) const;
    double unitLength(double unitsPerPixel) const;
    int directionAt(int row, int column, double angle, CPointF& to) const;
    void drawBar(CDC& dc, double unitsPerPixel) const;

    const ABMapGraph& map_;
    const AMatrix<float>& lengths_;
    const AMatrix<float>& angles_;
    const SkyCoordinates& sky_;
    double usual_ = 0;  ///< length of all but a few
    CString unit_;
    double factor_ = 1;
    int spacing_ = 14;
    double scale_ = 1;
    COLORREF line_ = RGB(0, 0, 0), edge_ = RGB(255, 255, 255);
};

}  // namespace pavane
