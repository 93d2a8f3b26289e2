#include "platform/core/CRgn_data.h"
#include "platform/core/pixel_rounding.h"
#include "platform/core/polygon_scan.h"

namespace pavane
{

namespace
{

/// Rows and columns of a polygon are worked out this far from the origin, beyond every device; a
/// polygon with corners at the ends of an int would have thousands of millions of rows.
constexpr int reach = 1 << 18;

}  // namespace

CRgn::CRgn() : data_(std::make_unique<Data>()) {}
CRgn::CRgn(const CRgn& other) : data_(std::make_unique<Data>(*other.data_)) {}
CRgn::~CRgn() = default;

CRgn& CRgn::operator=(const CRgn& other)
{
    *data_ = *other.data_;
    return *this;
}

int CRgn::CreateRectRgn(int left, int top, int right, int bottom)
{
    CRect rect(left, top, right, bottom);
    rect.NormalizeRect();
    *data_ = {Region(rect), {}, false};
    return 1;
}

int CRgn::CreatePolygonRgn(const CPoint* points, int count, int fillMode)
{
    *data_ = {};
    if (!points || count < 2 || (fillMode != ALTERNATE && fillMode != WINDING))
        return 0;
    data_->winding = fillMode == WINDING;
    data_->polygon.assign(points, points + count);
    data_->region =
        polygonRegion(points, count, data_->winding, CRect(-reach, -reach, reach, reach));
    return 1;
}

int CRgn::CombineRgn(const CRgn& a, const CRgn& b, int mode)
{
    if (mode == RGN_COPY) {
        *this = a;
    } else {
        Region combined = Region::combined(a.data_->region, b.data_->region, mode);
        *data_ = {std::move(combined), {}, false};
    }
    return data_->region.kind();
}

int CRgn::PtInRegion(int x, int y) const
{
    if (data_->polygon.empty())
        return data_->region.contains(x, y);
    return polygonContains(data_->polygon.data(), static_cast<int>(data_->polygon.size()),
                           data_->winding, x, y);
}

int CRgn::GetRgnBox(CRect& box) const
{
    box = data_->region.box();
    return data_->region.kind();
}

int CRgn::OffsetRgn(int dx, int dy)
{
    data_->region.offset(dx, dy);
    for (CPoint& p : data_->polygon)
        p = {saturated(Wide{p.x} + dx), saturated(Wide{p.y} + dy)};
    return data_->region.kind();
}

}  // namespace pavane
