#pragma once

#include "apps/view/main_menu.h"
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/sky/SkyMarkLayer.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/collections/area_outlines.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CMenu.h"

namespace pavane
{

/// What lies over the map and its areas.
class MapMarks
{
public:
    virtual ~MapMarks() = default;
    virtual int isShown() const = 0;
    /// Draws in the axis as it is laid out for the context. `update`: the pixels of the window that
    /// are painted; null for a picture.
    virtual void drawOver(CDC& dc, const ABAxis& axis, const CRect* update) = 0;
    /// The left button went down there, with the tool that picks.
    virtual void pressOn(const ABAxis& axis, CPoint point) = 0;
};

/// A line over the map that is dragged with the left button, whatever the tool.
class MapLine
{
public:
    virtual ~MapLine() = default;
    virtual int isShown() const = 0;
    /// Draws in the axis as it is laid out for the context. `update`: the pixels of the window that
    /// are painted; null for a picture.
    virtual void drawOver(CDC& dc, const ABAxis& axis, const CRect* update) = 0;
    /// The button went down there: non-zero when that drags it.
    virtual int beginDrag(const ABAxis& axis, CPoint point) = 0;
    virtual void dragTo(const ABAxis& axis, CPoint point) = 0;
    /// `keep`: 0 takes the drag back.
    virtual void endDrag(int keep) = 0;
    /// A key while the map has the keyboard: non-zero when it was for the line.
    virtual int takeKey(const ABAxis& axis, int key, bool shift, bool control) = 0;
};

class MapWindow;

/// What a map window tells the main window, which has one for each of its maps.
class MapWindowOwner
{
public:
    virtual ~MapWindowOwner() = default;
    virtual void mapStatus(MapWindow& from, const AxisStatus& status) = 0;
    virtual void mapAreasChanged(MapWindow& from) = 0;
    virtual void mapNotice(const CString& text) = 0;
    virtual void mapSavePicture() = 0;
    /// The keyboard has come to it.
    virtual void mapFocused(MapWindow& from) = 0;
    /// The pointer moves over it, or has left it.
    virtual void mapPointed(MapWindow& from, int isThere) = 0;
    /// It shows another range.
    virtual void mapRangeChanged(MapWindow& from) = 0;
    /// Page Down (1) or Page Up (-1); 0 when there is no other plane.
    virtual int mapStepPlane(int step) = 0;
    /// The dialog of colours is asked for; range, scale or colours have changed.
    virtual void mapAsksForColours() = 0;
    virtual void mapColoursChanged(MapWindow& from) = 0;
    /// An area is dragged and has another shape.
    virtual void mapAreaChanging() = 0;
};

/// The map with its areas, in the main window.
class MapWindow : public AAxisWnd
{
public:
    explicit MapWindow(MapWindowOwner& owner) : owner_(owner) {}
    /// Not owned; null for none.
    void SetMarks(MapMarks* marks) { marks_ = marks; }
    /// Tells what the pointer is over, when that is this window: another one may have stood there.
    void TellPointer()
    {
        CPoint at = GetCursorPos();
        CRect client;
        ScreenToClient(at);
        if (!GetClientRect(client) || !client.PtInRect(at))
            return;
        owner_.mapPointed(*this, 1);
        OnStatus(StatusAt(at));
    }
    /// Outlines of areas that a drag in a linked map brings; none ends that.
    void SetComingAreas(std::vector<AreaOutline> areas)
    {
        if (areas.empty() && comingAreas_.empty())
            return;
        comingAreas_ = std::move(areas);
        Invalidate();
    }
    const std::vector<AreaOutline>& GetComingAreas() const { return comingAreas_; }
    /// Named positions over the map, in pictures too.
    void SetSkyMarks(SkyMarkLayer marks)
    {
        skyMarks_ = std::move(marks);
        Invalidate();
    }
    const SkyMarkLayer& GetSkyMarks() const { return skyMarks_; }
    /// Not owned; null for none.
    void SetLine(MapLine* line) { line_ = line; }
    /// The areas were replaced behind the window's back.
    void FollowAreas()
    {
        Invalidate();
        areasChanged();
    }
    void OnStatus(const AxisStatus& status) override
    {
        AAxisWnd::OnStatus(status);
        owner_.mapStatus(*this, status);
    }
    void OnAreasChanged() override
    {
        AAxisWnd::OnAreasChanged();
        if (areaNames_)
            Invalidate();  // names reach beyond what of an area is painted anew
        owner_.mapAreasChanged(*this);
    }
    void OnRangeChanged() override
    {
        AAxisWnd::OnRangeChanged();
        owner_.mapRangeChanged(*this);
    }
    /// Non-zero writes the names of the areas over them, in pictures with areas too.
    void SetAreaNames(int on)
    {
        areaNames_ = on;
        Invalidate();
    }
    int GetAreaNames() const { return areaNames_; }
    void OnNotice(const CString& text) override { owner_.mapNotice(text); }
    void OnColorsChanged() override { owner_.mapColoursChanged(*this); }
    /// The pictures of the program are called as in its own menus.
    void amMenuParse(CMenu* popup) override
    {
        AAxisWnd::amMenuParse(popup);
        for (CMenu::Line& line : popup->lines())
            if (line.id == ID_COPY_TO_CLIPBOARD)
                line.text = copyPictureText;
            else if (line.id == ID_COPY_TO_BMP)
                line.text = savePictureText;
    }

    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override
    {
        AAxisWnd::ServiceDraw(dc, client, update);
        if (areaNames_)
            drawNames(dc);
        if (GetPlot() && !comingAreas_.empty())
            drawAreaOutlines(dc, *GetPlot(), comingAreas_);
        drawMarks(dc, &update);
        drawSkyMarks(dc);
    }

protected:
    void areaChanging(ATracker& tracker) override
    {
        AAxisWnd::areaChanging(tracker);
        if (areaNames_)
            Invalidate();
        owner_.mapAreaChanging();
    }
    void OnCopyToBMP() override { owner_.mapSavePicture(); }
    void OnSetFocus(CWnd* old) override
    {
        AAxisWnd::OnSetFocus(old);
        owner_.mapFocused(*this);
    }
    void OnMouseMove(unsigned flags, CPoint point) override
    {
        owner_.mapPointed(*this, 1);
        if (isLineDragged_ && GetPlot())
            line_->dragTo(*GetPlot(), point);
        AAxisWnd::OnMouseMove(flags, point);
    }
    void OnMouseLeave() override
    {
        AAxisWnd::OnMouseLeave();
        owner_.mapPointed(*this, 0);
    }
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override
    {
        if (isLineDragged_ && static_cast<int>(key) == VK_ESCAPE)
            return endLineDrag(0);
        const int step = key == VK_NEXT ? 1 : key == VK_PRIOR ? -1 : 0;
        const int isPlain = GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_SHIFT) >= 0;
        if (step == 0 || !isPlain || !owner_.mapStepPlane(step))
            AAxisWnd::OnKeyDown(key, repeat, flags);
    }
    int takeKey(int key, bool shift, bool control) override
    {
        if (hasLine() && line_->takeKey(*GetPlot(), key, shift, control))
            return 1;
        if (key != 'P' || shift || control)
            return AAxisWnd::takeKey(key, shift, control);
        owner_.mapAsksForColours();
        return 1;
    }
    int isBare() const override
    {
        return AAxisWnd::isBare() && !hasMarks() && !skyMarks_.placed() && !hasLine();
    }
    void drawIntoPicture(CDC& dc) override
    {
        AAxisWnd::drawIntoPicture(dc);
        if (areaNames_ && GetAreasInPicture())
            drawNames(dc);
        drawMarks(dc, nullptr);
        drawSkyMarks(dc);
    }
    /// Marks are picked beside what the press does to areas: they may lie in one.
    int takePress(unsigned flags, CPoint point) override
    {
        if (line_ && GetPlot() && line_->beginDrag(*GetPlot(), point)) {
            isLineDragged_ = 1;
            SetCapture();
            return 1;
        }
        if (hasMarks() && GetTrackers()->mode() == toolArrow)
            marks_->pressOn(*GetPlot(), point);
        return AAxisWnd::takePress(flags, point);
    }
    void OnLButtonUp(unsigned flags, CPoint point) override
    {
        if (isLineDragged_)
            return endLineDrag(1);
        AAxisWnd::OnLButtonUp(flags, point);
    }
    void OnRButtonDown(unsigned flags, CPoint point) override
    {
        if (isLineDragged_)
            return endLineDrag(0);
        AAxisWnd::OnRButtonDown(flags, point);
    }
    void OnCaptureChanged(CWnd* next) override
    {
        if (isLineDragged_ && next != this)
            endLineDrag(0);
        AAxisWnd::OnCaptureChanged(next);
    }

private:
    void drawNames(CDC& dc)
    {
        if (GetPlot())
            drawAreaNames(dc, *GetPlot(), outlinesOf(*GetTrackers()));
    }
    void drawSkyMarks(CDC& dc)
    {
        if (GetPlot() && skyMarks_.placed())
            skyMarks_.draw(dc, *GetPlot());
    }
    void endLineDrag(int keep)
    {
        isLineDragged_ = 0;
        if (GetCapture() == this)
            ReleaseCapture();
        line_->endDrag(keep);
    }
    int hasLine() const { return line_ && GetPlot() && line_->isShown(); }
    int hasMarks() const { return marks_ && GetPlot() && marks_->isShown(); }
    void drawMarks(CDC& dc, const CRect* update)
    {
        if (hasMarks())
            marks_->drawOver(dc, *GetPlot(), update);
        if (hasLine())
            line_->drawOver(dc, *GetPlot(), update);
    }

    MapWindowOwner& owner_;
    MapMarks* marks_ = nullptr;
    SkyMarkLayer skyMarks_;
    std::vector<AreaOutline> comingAreas_;
    MapLine* line_ = nullptr;
    int isLineDragged_ = 0;
    int areaNames_ = 0;
};

}  // namespace pavane
