#include "pavane/trackers/shapes/hatching.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

void addHatching(const std::vector<CPointF>& curve, const CRect& box, double spacing,
                 std::vector<std::vector<CPointF>>& lines)
{
    if (!(spacing >= 1) || curve.size() < 2 || box.IsRectEmpty())
        return;
    // lines of equal x + y; the box bounds their number, whatever the curve is
    double low = static_cast<double>(box.right) + box.bottom;
    double high = static_cast<double>(box.left) + box.top;
    for (const CPointF& p : curve) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y))
            return;
        low = std::min(low, p.x + p.y);
        high = std::max(high, p.x + p.y);
    }
    low = std::max(low, static_cast<double>(box.left) + box.top);
    high = std::min(high, static_cast<double>(box.right) + box.bottom);
    std::vector<double> crossings;
    for (double k = std::ceil(low / spacing); k * spacing <= high; ++k) {
        const double sum = k * spacing;
        crossings.clear();
        for (std::size_t i = 0; i < curve.size(); ++i) {
            const CPointF a = curve[i];
            const CPointF b = curve[i + 1 < curve.size() ? i + 1 : 0];
            const double before = a.x + a.y - sum;
            const double after = b.x + b.y - sum;
            if ((before < 0) != (after < 0))
                crossings.push_back(a.x + (b.x - a.x) * before / (before - after));
        }
        std::sort(crossings.begin(), crossings.end());
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
            lines.push_back(
                {{crossings[i], sum - crossings[i]}, {crossings[i + 1], sum - crossings[i + 1]}});
    }
}

}  // namespace pavane
