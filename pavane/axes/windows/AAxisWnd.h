#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/axes/windows/AxisStatus.h"
#include "pavane/trackers/collections/TrackerHost.h"
#include "pavane/windows/ABWindow.h"
#include "platform/window_dc.h"

#include <memory>
#include <vector>

namespace pavane
{

class A2DAxis;
class AAxisColorOP;
class ABMapGraph;
class AreaOverlay;
class ATrackerArrayInAxis;
class CComboBox;
class CToolBar;

/// A window that shows an axis with its graphs and lets the user mark areas in it.
///
/// The axis is drawn once into a picture of the window, and again only when the range, the size or
/// the data change; everything else is painted from there. Areas, the cells that they hold and the
/// shape being drawn lie over it and never become part of it.
///
/// Keys: Tab and Shift+Tab go through areas and their handles; arrows move by a map cell, with
/// Shift by ten, with Ctrl by a pixel; Insert and Delete a vertex or an area; Enter closes a
/// polygon, Escape leaves what is under way; Ctrl+A all, Ctrl+D copies, Ctrl+Z and Ctrl+Shift+Z
/// undo and redo; 1 arrow, 2 rectangle, 3 turned rectangle, 4 ellipse, 5 polygon, 6 zoom in, 7 zoom
/// back, 0 whole map; plus and minus zoom about the middle; M shows the cells of the areas.
/// The wheel pans when zoomed, with Shift across, with Ctrl it zooms about the pointer; the middle
/// button, or the left one while Space is held, drags the map.
class PAVANE_API AAxisWnd : public ABWindow, public TrackerHost
{
public:
    AAxisWnd();
    ~AAxisWnd() override;

    /// Shows another axis; null shows an empty window. With `owned` the window deletes it. Map and
    /// colour bar are forgotten, the areas stay; a drag that is going on is cancelled.
    void SetAxis(A2DAxis* axis, int owned);
    A2DAxis* GetAxis() const { return axis_; }
    /// The graph whose cells the areas choose and the status tells; it belongs to the axis. Null
    /// for none.
    void SetMap(ABMapGraph* map);
    ABMapGraph* GetMap() const { return map_; }
    /// A colour bar right of the plot; null for none. With `owned` the window deletes it.
    void SetColorBar(AAxisColorOP* bar, int owned);
    /// Non-zero, as at first, keeps the cells of the map square.
    void SetSquareCells(int on);

    /// The areas; never null. With `owned` the window deletes them; null makes an empty collection.
    /// A drag that is going on is cancelled.
    void SetTrackers(ATrackerArrayInAxis* trackers, int owned);
    ATrackerArrayInAxis* GetTrackers() const { return trackers_; }
    /// List and toolbar that follow the areas; not owned, null for none.
    void SetComboBox(CComboBox* list);
    CComboBox* GetComboBox() const { return list_; }
    void SetToolBar(CToolBar* bar);
    CToolBar* GetToolBar() const { return bar_; }

    /// Palette, titles or graphs have changed: draws the content again.
    void ContentChanged();
    /// The values of the map have changed (after ABMapGraph::cellsChanged): sums too are made anew.
    void MapValuesChanged();
    /// Shows another range (RP, x and y pairs), without a step of the zoom history.
    void SetNewMinMax(const TMinMax& range);
    /// The range of everything that the axis shows, before any zoom; unset before the first paint.
    const TMinMax& GetWholeRange() const { return whole_; }
    int IsRangeZoomed() const;
    /// One step of the zoom history each, or one for all that follow within a moment. Factors above
    /// 1 magnify; the value at client point `pixel` stays there.
    void ZoomAbout(CPoint pixel, double factor);
    /// Shows what lies `dx` pixels to the right and `dy` below, as far as the whole range reaches.
    void Pan(int dx, int dy);
    void ZoomBack();
    void ShowWholeMap();

    /// Chooses a tool (ToolMode), in the toolbar too.
    void ChooseTool(int mode);
    /// Runs one of the commands of resource_ids.h; 0 when it is none of this window's.
    int RunCommand(unsigned id);
    /// Whether a command would do something now; commands of others never.
    int IsCommandEnabled(unsigned id) const;

    /// Whether a vertex of a polygon has the focus.
    int IsVertexFocused() const;
    /// What the Delete key does: the vertex with the focus goes, else the areas. Always 1.
    int DeleteFocused();

    /// Shows the cells that the mask of the areas sets, also while an area is dragged.
    void SetCellOverlay(int on);
    int GetCellOverlay() const { return showCells_; }
    /// Non-zero draws the areas into copied, saved and printed pictures too.
    void SetAreasInPicture(int on) { areasInPicture_ = on; }
    int GetAreasInPicture() const { return areasInPicture_; }
    /// Draws the content, and the areas when they belong into pictures, into `rect` of any context.
    void DrawPicture(CDC& dc, const CRect& rect);
    /// Draws the areas as they lie on the axis now; `axis` has to be laid out for `dc`.
    void DrawAreas(CDC& dc);
    /// What the pointer at a client point shows, and what the areas hold.
    AxisStatus StatusAt(CPoint pixel);

    // ABWindow
    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    int GetAWindowType() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

    /// Called when the pointer moves and when areas change; heirs show it.
    virtual void OnStatus(const AxisStatus& status);
    /// Called when areas, the current one or the selection are not what they were.
    virtual void OnAreasChanged();
    /// Something that the user should read and need not answer; heirs show it.
    virtual void OnNotice(const CString& text);
    /// Called after every change of the range.
    virtual void OnRangeChanged();
    /// How often the content was drawn.
    int contentDrawings() const { return contentDrawings_; }

protected:
    // TrackerHost
    CComboBox* trackerComboBox() override { return list_; }
    CWnd* trackerToolBar() override;
    void showRange(const TMinMax& range) override { SetNewMinMax(range); }
    void areasChanged() override;
    void areaChanging(ATracker& tracker) override;

    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnMButtonDown(unsigned flags, CPoint point) override;
    void OnMButtonUp(unsigned flags, CPoint point) override;
    void OnRButtonDown(unsigned flags, CPoint point) override;
    void OnRButtonUp(unsigned flags, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnMouseLeave() override;
    int OnMouseWheel(unsigned flags, int delta, CPoint screen) override;
    int OnMouseHWheel(unsigned flags, int delta, CPoint screen) override;
    void OnContextMenu(CWnd* window, CPoint screen) override;
    int OnSetCursor(CWnd* window, unsigned hitArea, unsigned message) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnKeyUp(unsigned key, unsigned repeat, unsigned flags) override;
    void OnKillFocus(CWnd* next) override;
    void OnCaptureChanged(CWnd* next) override;
    void OnTimer(unsigned id) override;
    void OnDestroy() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnCopyToClipboard() override;
    void OnCopyToBMP() override;

private:
    struct Layout {
        CRect axis;
        CRect bar;
    };
    // Content
    Layout layOut(CDC& dc, const CRect& rect, int steady);
    void steadyOut(CDC& dc, const CRect& rect);
    void squareOut(CDC& dc, const CRect& rect);
    void drawContent(CDC& dc, const CRect& rect, int steady);
    int refreshContent(CDC& dc, const CRect& client);
    int drawAtOnce(CDC& dc, const CRect& client);
    void contentDrawn(int ratio);
    void restoreLayout();
    int freshPicture(CBitmap& picture);
    void settle();
    void settleFirst();
    CRect plotRect() const;
    void showStatus(CPoint pixel);
    void showStatusAtPointer();
    void invalidateCells();
    void OnGestureTimer(unsigned id);
    void tellOfLostSteps();
    // Range
    int rangeOfZoom(CPoint pixel, double factor, TMinMax& range) const;
    TMinMax shiftedRange(const TMinMax& from, int dx, int dy) const;
    void beginGesture();
    void endGesture();
    void beginPan(CPoint point);
    void panTo(CPoint point);
    void endPan();
    int wheelPan(double dx, double dy);
    // Input
    template <typename Call>
    int followPress(Call call);
    int runKey(int key, bool shift, bool control);
    int runControlKey(int key, bool shift);
    int toolKey(int key);
    int moveByArrow(int key, bool shift, bool control);
    void leaveForDialog();
    int walkHistory(int forward);
    void enableCommands();
    void endDrags();
    void dropAxis();
    int isPolygonAt(CPoint point) const;

    A2DAxis* axis_ = nullptr;
    int ownsAxis_ = 0;
    ABMapGraph* map_ = nullptr;
    AAxisColorOP* colorBar_ = nullptr;
    int ownsBar_ = 0;
    ATrackerArrayInAxis* trackers_ = nullptr;
    int ownsTrackers_ = 0;
    CComboBox* list_ = nullptr;
    CToolBar* bar_ = nullptr;
    std::unique_ptr<AreaOverlay> overlay_;
    std::vector<std::unique_ptr<A2DAxis>> retired_;  ///< axes that a drag may still point to

    TMinMax whole_;
    CRect hostBorder_{-1, -1, -1, -1};  ///< bounds of the plot that the host gave its axis
    CRect margins_;  ///< of the plot while zoomed, and the size of the window that they are for
    CSize marginsFor_;
    CBitmap content_;
    int stale_ = 1;         ///< the window shows something else
    int contentStale_ = 1;  ///< content_ does
    int moving_ = 0;        ///< the range has changed since the content was drawn
    int contentDrawings_ = 0;
    int square_ = 1;
    int showCells_ = 0;
    int areasInPicture_ = 0;

    int presses_ = 0;    ///< presses that the areas are following, one inside the other
    int rightDown_ = 0;  ///< the right button was pressed here
    int noMenu_ = 0;     ///< its release ended something else
    int spaceHeld_ = 0;
    int panning_ = 0;
    CPoint panStart_;
    TMinMax panRange_;
    int gesture_ = 0;                 ///< the range was put into the history for what is going on
    double wheelX_ = 0, wheelY_ = 0;  ///< parts of pixels that the wheel has not moved yet
    CPoint pointer_{-1, -1};          ///< where the pointer was last
    CPoint menuPoint_{-1, -1};        ///< where the context menu was asked for
};

}  // namespace pavane
