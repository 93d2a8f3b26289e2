#include "pavane/axes/dialogs/ABeamViewWnd.h"

#include "pavane/axes/maps/beam_mark.h"
#include "pavane/resources/map_display_messages.h"
#include "platform/CDC.h"
#include "platform/system_colors.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int outlinePoints = 120;
/// Of the room that the view has.
constexpr double filledPart = 0.8;
constexpr double hatchApart = 9;

}  // namespace

void ABeamViewWnd::SetBeam(const MapBeam& beam, BeamFill fill, const CString& text)
{
    beam_ = beam;
    fill_ = fill;
    text_ = text;
    if (GetSafeHwnd())
        Invalidate();
}

void ABeamViewWnd::DrawWindow(CDC& dc, CRect& client, CRect& /*update*/)
{
    const COLORREF ink = GetSysColor(COLOR_WINDOWTEXT);
    dc.FillSolidRect(client, GetSysColor(COLOR_WINDOW));
    CBrush frame(GetSysColor(COLOR_BTNSHADOW));
    dc.FrameRect(client, &frame);
    const double room = std::min(client.Width(), client.Height()) * filledPart;
    if (!beam_.isSet() || fill_ == BeamFill::none || !(room > 0))
        return;
    // scaled before it is turned: a beam of 1e-300 has an outline, too
    const double longer = std::max(beam_.major, beam_.minor);
    const MapBeam unit{beam_.major / longer, beam_.minor / longer, beam_.angle};
    const std::vector<CPointF> outline = beamOutline(unit, room, room, outlinePoints);
    const CPointF centre{(client.left + client.right - 1) / 2.0,
                         (client.top + client.bottom - 1) / 2.0};
    const auto placed = [&](const CPointF& p) -> CPointF {
        return {centre.x + p.x, centre.y - p.y};
    };
    std::vector<CPointF> closed;
    for (std::size_t i = 0; i <= outline.size(); ++i)
        closed.push_back(placed(outline[i % outline.size()]));
    CPen pen(PS_SOLID, 1, ink);
    CBrush brush(ink);
    CPen* const oldPen = dc.SelectObject(&pen);
    const int smooth = dc.SetSmooth(1);
    if (fill_ == BeamFill::filled) {
        CBrush* const oldBrush = dc.SelectObject(&brush);
        dc.PolygonF(closed.data(), static_cast<int>(closed.size()));
        dc.SelectObject(oldBrush);
    }
    if (fill_ == BeamFill::hatched) {
        const std::vector<CPointF> hatch = beamHatch(outline, hatchApart);
        for (std::size_t i = 0; i + 1 < hatch.size(); i += 2) {
            const CPointF line[] = {placed(hatch[i]), placed(hatch[i + 1])};
            dc.PolylineF(line, 2);
        }
    }
    dc.PolylineF(closed.data(), static_cast<int>(closed.size()));
    dc.SetSmooth(smooth);
    dc.SelectObject(oldPen);
}

int ABeamViewWnd::GetAccessPart(AccessId id, AccessPart& part) const
{
    if (id != 0)
        return 0;
    part.role = ROLE_SYSTEM_GRAPHIC;
    part.name = beamViewName;
    part.value = text_;
    return 1;
}

}  // namespace pavane
