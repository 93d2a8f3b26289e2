#include "tessel/uvfits/UvView.h"

#include <cmath>
#include <numbers>

namespace pavane
{

UvPlacing::UvPlacing(const UvView& view)
    : view_(view), east_(std::sin(view.angle * std::numbers::pi / 180)),
      north_(std::cos(view.angle * std::numbers::pi / 180))
{
}

double UvPlacing::x(double u, double v) const
{
    switch (view_.kind) {
    case UvView::Kind::coverage:
        return u;
    case UvView::Kind::projected:
        return std::fabs(u * east_ + v * north_);
    case UvView::Kind::distance:
        break;
    }
    return std::hypot(u, v);
}

}  // namespace pavane
