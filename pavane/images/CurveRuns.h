#pragma once

#include "pavane/images/curve_raster.h"
#include "pavane/images/curve_scan.h"

#include <cstdint>

namespace pavane
{

/// Points of a curve, one after the other, that fall on one pixel column, or that all lie on the
/// same side of what can be seen.
struct CurveRun {
    CPoint first;
    CPoint last;
    int top = 0;
    int bottom = 0;
    bool startsPiece = false;  ///< nothing leads here: the curve's start, or a gap before it
    bool isVisible = false;    ///< its column can be seen; top and bottom hold only then
};

/// Cuts a curve into runs. Drawing the stroke from top to bottom of each visible run and the line
/// from each run's last point to the next one's first gives the pixels of all its segments:
/// segments within a column are strokes that meet, those beside the picture show nothing.
class CurveRuns
{
public:
    /// Columns `left` to `right`, both included, can be seen.
    CurveRuns(const CurvePoints& points, const CurveScale& xScale, const CurveScale& yScale,
              int left, int right);
    /// The next run; false after the last.
    bool next(CurveRun& run);

private:
    bool exists(std::int64_t i) const;
    /// The column of an x value; all columns to one side of the visible ones are one.
    int columnOf(double x) const;
    /// Values that surely fall on the column; holds none where that cannot be shown.
    ValueRange surelyOn(int column) const;
    std::int64_t scan(std::int64_t from, const ValueRange& inside, ValueRange& spread) const;

    CurvePoints points_;
    CurveScale xScale_;
    CurveScale yScale_;
    ValueRange xExists_;
    ValueRange yExists_;
    int left_;
    int right_;
    std::int64_t at_ = 0;
};

}  // namespace pavane
