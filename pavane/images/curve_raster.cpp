#include "pavane/images/curve_raster.h"

#include "pavane/images/ADIBase.h"
#include "pavane/images/CurveRuns.h"
#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

void drawStroke(ADIBase& dib, int x, int top, int bottom)
{
    if (dib.GetLineWidth() > 1)
        return dib.Line(x, top, x, bottom);
    const CRect box = dib.rect();
    top = std::max(top, box.top);
    bottom = std::min(bottom, box.bottom);
    if (top > bottom)
        return;
    const auto color = static_cast<unsigned char>(dib.GetColor());
    unsigned char* pixel = &dib(x, bottom);
    for (int y = bottom; y >= top; --y, pixel += dib.scanWidth())
        *pixel = color;
}

// With dashes every segment counts, since each begins the pattern anew.
void drawDashed(ADIBase& dib, const CurvePoints& points, const CurveScale& xScale,
                const CurveScale& yScale)
{
    const CRect box = dib.rect();
    CurvePoints one = points;
    CPoint before;
    bool joined = false;
    for (std::int64_t i = 0; i <= points.n; ++i) {
        CurveRun run;
        bool exists = false;
        if (i < points.n) {
            const double x = points.xAt(i);
            one.x = &x;
            one.y = points.y + i;
            one.n = 1;
            exists = CurveRuns(one, xScale, yScale, box.left, box.right).next(run);
        }
        if (joined && exists)
            dib.Line(before.x, before.y, run.first.x, run.first.y);
        else if (joined)
            dib.SetPixel(before.x, before.y, dib.GetColor());
        before = run.first;
        joined = exists;
    }
}

// Collects the points of a polyline and hands it over in parts.
class PolylineSink
{
public:
    explicit PolylineSink(const std::function<void(const CPoint*, int)>& polyline)
        : polyline_(polyline)
    {
    }
    void add(CPoint p)
    {
        if (count_ > 0 && points_[count_ - 1] == p)
            return;
        if (count_ == capacity) {
            polyline_(points_, count_);
            points_[0] = points_[count_ - 1];
            count_ = 1;
        }
        points_[count_++] = p;
    }
    void finish()
    {
        if (count_ > 0)
            polyline_(points_, count_);
        count_ = 0;
    }

private:
    static constexpr int capacity = 4096;
    const std::function<void(const CPoint*, int)>& polyline_;
    CPoint points_[capacity];
    int count_ = 0;
};

}  // namespace

void drawCurve(ADIBase& dib, const CurvePoints& points, const CurveScale& xScale,
               const CurveScale& yScale)
{
    if (!dib.lpArray())
        return;
    if (dib.GetLinePattern() != -1)
        return drawDashed(dib, points, xScale, yScale);
    const int margin = dib.GetLineWidth() > 1 ? dib.GetLineWidth() : 0;
    const CRect box = dib.rect();
    CurveRuns runs(points, xScale, yScale, std::max(box.left, -offsetLimit) - margin,
                   std::min(box.right, offsetLimit) + margin);
    CurveRun run;
    for (CPoint before; runs.next(run); before = run.last) {
        if (!run.startsPiece)
            dib.Line(before.x, before.y, run.first.x, run.first.y);
        if (run.isVisible)
            drawStroke(dib, run.first.x, run.top, run.bottom);
    }
}

void reduceCurve(const CurvePoints& points, const CurveScale& xScale, const CurveScale& yScale,
                 const CRect& visible, int penWidth,
                 const std::function<void(const CPoint* points, int count)>& polyline)
{
    const int margin = std::clamp(penWidth, 0, offsetLimit / 2);
    CurveRuns runs(points, xScale, yScale, std::max(visible.left, -offsetLimit) - margin,
                   std::min(visible.right, offsetLimit) - 1 + margin);
    PolylineSink sink(polyline);
    for (CurveRun run; runs.next(run);) {
        if (run.startsPiece)
            sink.finish();
        sink.add(run.first);
        if (run.isVisible) {
            // the end nearer to the last point comes second, which spares a stroke over both
            const bool upwards = 2 * std::int64_t{run.last.y} <= std::int64_t{run.top} + run.bottom;
            sink.add(CPoint(run.first.x, upwards ? run.bottom : run.top));
            sink.add(CPoint(run.first.x, upwards ? run.top : run.bottom));
        }
        sink.add(run.last);
    }
    sink.finish();
}

}  // namespace pavane
