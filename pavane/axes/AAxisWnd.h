#pragma once

#include "pavane/axes/AxisStatus.h"
#include "pavane/axes/TMinMax.h"
#include "pavane/windows/ABWindow.h"
#include "platform/window_dc.h"

#include <memory>

namespace pavane
{

class A2DAxis;
class AAxisColorOP;
class ABMapGraph;
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
/// Shift by ten, with Ctrl by a pixel; Delete, Insert, Enter, Escape; Ctrl+A, Ctrl+D, Ctrl+Z,
/// Ctrl+Shift+Z; 1 to 7 choose tools; M shows the cells. The wheel pans when zoomed, with Shift
/// across, with Ctrl it zooms about the pointer; the middle button drags the map.
class PAVANE_API AAxisWnd : public ABWindow
{
public:
    AAxisWnd();
    ~AAxisWnd() override;

    /// Shows another axis; null shows an empty window. With `owned` the window deletes it. Map,
    /// colour bar and whole range are forgotten, the areas stay.
    void SetAxis(A2DAxis* axis, int owned);
    A2DAxis* GetAxis() const { return axis_; }
    /// The graph whose cells the areas choose and the status tells; it belongs to the axis. Null
    /// for none.
    void SetMap(ABMapGraph* map);
    ABMapGraph* GetMap() const { return map_; }
    /// A colour bar right of the plot; null for none. With `owned` the window deletes it.
    void SetColorBar(AAxisColorOP* bar, int owned);
    /// Non-zero keeps the cells of the map square; that is so at first.
    void SetSquareCells(int on);

    /// The areas; never null. With `owned` the window deletes them; null makes an empty collection.
    /// A drag that is going on is cancelled.
    void SetTrackers(ATrackerArrayInAxis* trackers, int owned);
    ATrackerArrayInAxis* GetTrackers() const { return trackers_; }
    /// List and toolbar that follow the areas; not owned, null for none.
    void SetComboBox(CComboBox* list) { list_ = list; }
    CComboBox* GetComboBox() const { return list_; }
    void SetToolBar(CToolBar* bar) { bar_ = bar; }
    CToolBar* GetToolBar() const { return bar_; }

    /// Data, palette or titles have changed: draws the content again.
    void ContentChanged();
    /// Shows another range (RP, x and y pairs); what the axis shows is not remembered.
    void SetNewMinMax(const TMinMax& range);
    /// The range of everything that the axis shows, before any zoom.
    const TMinMax& GetWholeRange() const { return whole_; }
    int IsZoomed() const;
    /// One step of the zoom history each. Factors above 1 magnify; `pixel` keeps its data value.
    void ZoomAbout(CPoint pixel, double factor);
    void ZoomBack();
    void ShowWholeMap();
    /// Moves the range by pixels, as far as the whole range reaches.
    void Pan(int dx, int dy);

    /// Shows the cells that the mask of the areas sets.
    void SetCellOverlay(int on);
    int GetCellOverlay() const { return showCells_; }
    /// Non-zero draws the areas into copied, saved and printed pictures too.
    void SetAreasInPicture(int on) { areasInPicture_ = on; }
    int GetAreasInPicture() const { return areasInPicture_; }
    /// Draws a picture of the content, and of the areas when they belong into pictures, into
    /// `rect` of any context. The window's own layout is kept.
    void DrawPicture(CDC& dc, const CRect& rect);

    /// Called when the pointer moves and when areas change; heirs show it.
    virtual void OnStatus(const AxisStatus& status);
    /// Called after every edit of the areas (draw, change, delete, undo ...).
    virtual void OnAreasChanged();
    /// Called after every change of the range.
    virtual void OnRangeChanged();

    // ABWindow
    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    int GetAWindowType() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;

private:
    A2DAxis* axis_ = nullptr;
    ABMapGraph* map_ = nullptr;
    ATrackerArrayInAxis* trackers_ = nullptr;
    CComboBox* list_ = nullptr;
    CToolBar* bar_ = nullptr;
    TMinMax whole_;
    int showCells_ = 0;
    int areasInPicture_ = 0;
};

}  // namespace pavane
