// What has the keyboard in a plot with several scales: keys, its mark, and what screen readers
// hear.
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "platform/CDC.h"
#include "platform/gdi_objects.h"
#include "platform/system_colors.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace pavane
{

namespace
{

/// Magnification of one press of plus or minus, and the part of a plot that an arrow pans by.
constexpr double zoomOfKey = 1.5;
constexpr double panOfKey = 0.1;
constexpr int fewPoints = 10;

constexpr COLORREF lineColor = RGB(96, 96, 96);
constexpr COLORREF haloColor = RGB(255, 255, 255);
/// Half the edge of the mark about a point, its halo left out.
constexpr int markReach = 7;
/// From a part to the frame about it, and the frame's width with its halo.
constexpr int frameReach = 3;

constexpr int kindShift = 40;

AccessId idOf(const MultiFocus& focus)
{
    const int index = focus.kind == MultiFocusKind::panel   ? focus.panel
                      : focus.kind == MultiFocusKind::scale ? focus.scale
                                                            : focus.graph;
    return focus.kind == MultiFocusKind::none
               ? 0
               : (static_cast<AccessId>(focus.kind) << kindShift) + index;
}

void drawFrame(CDC& dc, CRect rect)
{
    const auto frame = [&dc](const CRect& r, COLORREF color) {
        for (const CRect& side : {CRect(r.left, r.top, r.right, r.top + 1),
                                  CRect(r.left, r.bottom - 1, r.right, r.bottom),
                                  CRect(r.left, r.top, r.left + 1, r.bottom),
                                  CRect(r.right - 1, r.top, r.right, r.bottom)})
            dc.FillSolidRect(side, color);
    };
    frame(rect, haloColor);
    rect.DeflateRect(1, 1);
    frame(rect, GetSysColor(COLOR_HIGHLIGHT));
    rect.DeflateRect(1, 1);
    frame(rect, GetSysColor(COLOR_HIGHLIGHT));
}

int isInDialog(const CWnd& window)
{
    for (const CWnd* above = window.GetParent(); above; above = above->GetParent())
        if (above->IsDialog())
            return 1;
    return 0;
}

/// The pixel of the point that has the focus; 0 when it is out of its plot.
int pointPixel(const A2DAxisMulti& axis, const MultiFocus& focus, CPoint& pixel)
{
    const MultiStatus status = statusOf(axis, focus);
    const CRect plot = axis.getPanelRect(focus.panel);
    if (!status.inPlot || plot.IsRectEmpty())
        return 0;
    const CurvePoints points = axis.childs()(focus.graph)->getPoints();
    pixel = {xPixelOf(axis, plot, status.x), axis.RPYtoGPY(focus.scale, points.y[focus.point])};
    return CRect(plot.left, plot.top, plot.right + 1, plot.bottom + 1).PtInRect(pixel);
}

/// Where the mark of the focus is drawn; empty when it is not in view.
CRect markOf(const A2DAxisMulti& axis, const MultiFocus& focus)
{
    CRect rect;
    CPoint pixel;
    if (focus.kind == MultiFocusKind::curve && pointPixel(axis, focus, pixel)) {
        rect = CRect(pixel.x, pixel.y, pixel.x + 1, pixel.y + 1);
        rect.InflateRect(markReach + 1, markReach + 1);
        return rect;
    }
    if (focus.kind == MultiFocusKind::scale) {
        rect = axis.getScaleRect(focus.scale);
        if (!rect.IsRectEmpty())  // the outermost labels stand half beyond it
            rect.InflateRect(0, (axis.getFHeight() + 1) / 2);
    }
    if (rect.IsRectEmpty()) {
        const CRect plot = axis.getPanelRect(focus.panel);
        if (plot.IsRectEmpty())
            return {};
        rect = CRect(plot.left, plot.top, plot.right + 1, plot.bottom + 1);
    }
    rect.InflateRect(frameReach, frameReach);
    return rect;
}

}  // namespace

void AMultiPlotWnd::ServiceDraw(CDC& dc, CRect& client, CRect& update)
{
    if (!multi_)
        return APlotWnd::ServiceDraw(dc, client, update);
    for (const MultiLayout::Panel& panel : multi_->getLayout().panels) {
        const int x = std::isfinite(lineAt_) ? xPixelOf(*multi_, panel.plot, lineAt_) : -1;
        if (x >= panel.plot.left && x <= panel.plot.right)
            dc.FillSolidRect(CRect(x, panel.plot.top, x + 1, panel.plot.bottom + 1), lineColor);
    }
    const CRect mark = GetFocus() == this ? markOf(*multi_, focus_) : CRect();
    CPoint pixel;
    if (!mark.IsRectEmpty() && focus_.kind == MultiFocusKind::curve &&
        pointPixel(*multi_, focus_, pixel)) {
        CRect ring = mark;
        for (const COLORREF color :
             {haloColor, GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHT), haloColor}) {
            const SelectedObject<CPen> pen(dc, CPen(PS_SOLID, 1, color));
            dc.MoveTo(ring.left, ring.top);
            for (const CPoint to :
                 {CPoint(ring.right - 1, ring.top), CPoint(ring.right - 1, ring.bottom - 1),
                  CPoint(ring.left, ring.bottom - 1), CPoint(ring.left, ring.top)})
                dc.LineTo(to.x, to.y);
            ring.DeflateRect(1, 1);
        }
    } else if (!mark.IsRectEmpty()) {
        drawFrame(dc, mark);
    }
    frame_.draw(dc);
}

void AMultiPlotWnd::invalidateFocus()
{
    const CRect mark = multi_ ? markOf(*multi_, focus_) : CRect();
    if (!mark.IsRectEmpty() && GetSafeHwnd())
        InvalidateRect(mark);
}

void AMultiPlotWnd::OnSetFocus(CWnd* old)
{
    invalidateFocus();
    APlotWnd::OnSetFocus(old);
}

void AMultiPlotWnd::OnKillFocus(CWnd* next)
{
    spaceHeld_ = 0;
    invalidateFocus();
    APlotWnd::OnKillFocus(next);
}

void AMultiPlotWnd::SetPlotFocus(const MultiFocus& focus)
{
    if (!multi_)
        return;
    const MultiFocus before = focus_;
    invalidateFocus();
    focus_ = focus;
    fitFocus(*multi_, focus_);
    focusChanged(before);
}

/// A curve has one of its points from the start, so that there is something to see.
void AMultiPlotWnd::focusChanged(const MultiFocus& before)
{
    if (focus_.kind == MultiFocusKind::curve && focus_.point < 0) {
        const TMinMax& range = multi_->getMinMax();
        (void)walkPoints(*multi_, focus_, 0, range.xMin / 2 + range.xMax / 2);
    }
    invalidateFocus();
    if (focus_ == before)
        return;
    if (GetSafeHwnd()) {
        const int sameCurve = idOf(focus_) == idOf(before);
        NotifyWinEvent(sameCurve ? EVENT_OBJECT_VALUECHANGE : EVENT_OBJECT_FOCUS, GetSafeHwnd(),
                       idOf(focus_));
    }
    if (focus_.kind == MultiFocusKind::curve)
        tellStatus(statusOf(*multi_, focus_));
}

int AMultiPlotWnd::NextPanel(int step)
{
    if (!multi_)
        return 0;
    const MultiFocus before = focus_;
    invalidateFocus();
    if (!walkPanels(*multi_, focus_, step))
        return 0;
    focusChanged(before);
    return 1;
}

/// Tab alone goes on to the next control of a dialog.
int AMultiPlotWnd::tabWalks(bool control) const { return control || !isInDialog(*this); }

int AMultiPlotWnd::takeKey(int key, bool shift, bool control)
{
    if (!multi_)
        return APlotWnd::takeKey(key, shift, control);
    switch (key) {
    case VK_SPACE:
        return spaceHeld_ = 1;
    case VK_PRIOR:
        return ShowPage(multi_->getPage() - 1), 1;
    case VK_NEXT:
        return ShowPage(multi_->getPage() + 1), 1;
    case VK_F6: {
        const int step = shift ? -1 : 1;
        if (!NextPanel(step))
            OnPanelsLeft(step);
        return 1;
    }
    case VK_TAB: {
        if (!tabWalks(control))
            return 0;
        MultiFocus focus = focus_;
        walkParts(*multi_, focus, shift ? -1 : 1);
        return SetPlotFocus(focus), 1;
    }
    case VK_ADD:
    case VK_OEM_PLUS:
        return !control && zoomFocused(zoomOfKey);
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
        return !control && zoomFocused(1 / zoomOfKey);
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
        return !control && arrow(key, shift);
    case VK_HOME:
    case VK_END:
        if (focus_.kind == MultiFocusKind::curve && !control)
            return walkCurve(key == VK_HOME ? -INT_MAX : INT_MAX);
        break;
    default:
        break;
    }
    return APlotWnd::takeKey(key, shift, control);
}

void AMultiPlotWnd::OnKeyUp(unsigned key, unsigned repeat, unsigned flags)
{
    if (key == VK_SPACE)
        spaceHeld_ = 0;
    APlotWnd::OnKeyUp(key, repeat, flags);
}

/// A scale about its middle; x about the point that has the focus, else about its middle.
int AMultiPlotWnd::zoomFocused(double factor)
{
    const CRect plot = panelPlot(focus_.panel);
    if (plot.IsRectEmpty())
        return 1;
    if (focus_.kind == MultiFocusKind::scale) {
        const LifeWatch self(life());
        ZoomDirection(focus_.scale, multi_->GPYtoRPY(focus_.scale, plot.CenterPoint().y), factor);
        if (self.alive() && GetSafeHwnd())
            NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), idOf(focus_));
        return 1;
    }
    CPoint pixel = plot.CenterPoint();
    (void)pointPixel(*multi_, focus_, pixel);
    ZoomDirection(directionX, xAtPixel(*multi_, plot, pixel.x), factor);
    return 1;
}

void AMultiPlotWnd::ZoomFocus(double factor)
{
    settle();
    if (multi_)
        (void)zoomFocused(factor);
}

int AMultiPlotWnd::arrow(int key, bool shift)
{
    const int right = key == VK_RIGHT ? 1 : key == VK_LEFT ? -1 : 0;
    const int down = key == VK_DOWN ? 1 : key == VK_UP ? -1 : 0;
    if (focus_.kind == MultiFocusKind::curve && right != 0)
        return walkCurve(right * (shift ? fewPoints : 1));
    changeInGesture([&](MultiRanges& ranges) {
        if (down == 0 || focus_.kind == MultiFocusKind::panel)
            return panBy(ranges, focus_.panel, right * panOfKey, down * panOfKey);
        const double way = multi_->getScale(focus_.scale).direct < 0 ? down : -down;
        return whole_.shift(ranges, focus_.scale, way * panOfKey, isLog(focus_.scale));
    });
    return 1;
}

int AMultiPlotWnd::walkCurve(int step)
{
    const MultiFocus before = focus_;
    const TMinMax& range = multi_->getMinMax();
    invalidateFocus();
    (void)walkPoints(*multi_, focus_, step, range.xMin / 2 + range.xMax / 2);
    const LifeWatch self(life());
    showFocusedPoint();
    if (self.alive() && multi_)
        focusChanged(before);  // after what the pan tells of the pointer
    return 1;
}

/// Pans x until the point is in the plot.
void AMultiPlotWnd::showFocusedPoint()
{
    const CRect plot = panelPlot(focus_.panel);
    const MultiStatus status = statusOf(*multi_, focus_);
    if (!status.inPlot || plot.Width() <= 0)
        return;
    const int x = xPixelOf(*multi_, plot, status.x);
    if (x >= plot.left && x <= plot.right)
        return;
    const double way = static_cast<double>(x - plot.CenterPoint().x) / plot.Width();
    changeInGesture([&](MultiRanges& ranges) { return panBy(ranges, -1, way, 0); });
}

int AMultiPlotWnd::GetAccessPart(AccessId id, AccessPart& part) const
{
    part = {};
    if (!multi_ && id != 0)
        return 0;
    if (id == 0) {
        part.role = ROLE_SYSTEM_CLIENT;
        part.state = STATE_SYSTEM_FOCUSABLE;
        part.name = GetWindowText();
        if (multi_)
            part.value = std::to_string(multi_->getPanelCount()) +
                         (multi_->getPanelCount() == 1 ? " panel" : " panels") + ", page " +
                         std::to_string(multi_->getPage() + 1) + " of " +
                         std::to_string(multi_->getPages());
        return 1;
    }
    for (const MultiFocus& known : walkOf(*multi_))
        if (idOf(known) == id)
            return describe(known, part), 1;
    return 0;
}

void AMultiPlotWnd::describe(const MultiFocus& known, AccessPart& part) const
{
    const CRect plot = panelPlot(known.panel);
    const int isFocus = idOf(focus_) == idOf(known);
    part.role = ROLE_SYSTEM_GRAPHIC;
    part.state = STATE_SYSTEM_FOCUSABLE | (isFocus ? STATE_SYSTEM_FOCUSED : 0);
    part.rect = CRect(plot.left, plot.top, plot.right + 1, plot.bottom + 1);
    if (known.kind == MultiFocusKind::panel) {
        part.name = panelName(*multi_, known.panel);
    } else if (known.kind == MultiFocusKind::scale) {
        part.name = scaleName(*multi_, known.scale);
        part.value = scaleRangeText(*multi_, known.scale);
        part.rect = multi_->getScaleRect(known.scale);
    } else {
        part.name = curveName(*multi_, known.graph);
        part.description = curveText(*multi_, known.graph);
        part.value = isFocus ? pointText(*multi_, focus_) : CString();
    }
}

std::vector<AccessId> AMultiPlotWnd::GetAccessChildren() const
{
    std::vector<AccessId> parts;
    if (multi_)
        for (const MultiFocus& part : walkOf(*multi_))
            parts.push_back(idOf(part));
    return parts;
}

AccessId AMultiPlotWnd::AccessHitTest(CPoint point) const
{
    const MultiHit hit = multi_ ? multi_->hitTest(point) : MultiHit();
    if (hit.part == MultiPart::plot)
        return idOf({MultiFocusKind::panel, hit.panel, -1, -1, -1});
    return hit.scale < 0 ? 0 : idOf({MultiFocusKind::scale, hit.panel, hit.scale, -1, -1});
}

AccessId AMultiPlotWnd::GetAccessFocus() const { return multi_ ? idOf(focus_) : 0; }

int AMultiPlotWnd::AccessSetFocus(AccessId id)
{
    if (!multi_)
        return 0;
    for (const MultiFocus& part : walkOf(*multi_))
        if (idOf(part) == id) {
            SetFocus();
            SetPlotFocus(part);
            return 1;
        }
    return 0;
}

}  // namespace pavane
