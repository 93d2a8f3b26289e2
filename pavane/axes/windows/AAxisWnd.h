#pragma once

#include "pavane/axes/maps/cells/contour_level.h"
#include "pavane/axes/ranges/AMnMxMCTransform.h"
#include "pavane/axes/windows/APlotWnd.h"
#include "pavane/trackers/collections/TrackerHost.h"

#include <functional>
#include <memory>

namespace pavane
{

class A2DAxis;
class ABitMatrix;
class AAxisColorOP;
class ABMapGraph;
class AColorsGraph;
class AreaOverlay;
class ATrackerArrayInAxis;
class CComboBox;
class CToolBar;
struct ColorLook;
class PlayDrag;

/// A window that shows an axis with its graphs and lets the user mark areas in it.
///
/// Areas, the cells that they hold and the shape being drawn lie over the picture of the axis and
/// never become part of it. The left button is theirs: there is no rubber band, the tool of zoom
/// steps shows a part of the range instead.
///
/// Keys beside those of APlotWnd: Tab and Shift+Tab go through areas and their handles; arrows move
/// by a map cell, with Shift by ten, with Ctrl by a pixel; Insert and Delete a vertex or an area;
/// Enter closes a polygon, Escape leaves what is under way; Ctrl+A all, Ctrl+D copies, Ctrl+Z and
/// Ctrl+Shift+Z undo and redo; 1 arrow, 2 rectangle, 3 turned rectangle, 4 ellipse, 5 polygon, 6
/// zoom in; M shows the cells of the areas; N makes the selected areas never-clean, whose cells
/// masks leave out, or takes that back; C takes areas from contours where one clicks, and with
/// Enter.
class PAVANE_API AAxisWnd : public APlotWnd, public TrackerHost
{
public:
    AAxisWnd();
    ~AAxisWnd() override;

    /// Shows another axis, as SetPlot does; map and colour bar are forgotten, the areas stay.
    void SetAxis(A2DAxis* axis, int owned);
    /// The axis; null without one and while SetPlot has given one of another class.
    A2DAxis* GetAxis() const { return axis_; }
    /// The graph whose cells the areas choose and the status tells; it belongs to the axis. Null
    /// for none.
    void SetMap(ABMapGraph* map);
    ABMapGraph* GetMap() const { return map_; }
    /// A colour bar right of the plot; null for none. With `owned` the window deletes it.
    void SetColorBar(AAxisColorOP* bar, int owned);
    /// Non-zero, as at first, keeps the cells of the map square.
    void SetSquareCells(int on);

    /// Non-zero lets a drag with the right button play with the colours of the map: across it sets
    /// the bias, up the contrast, with Shift a tenth as fast. Escape and the left button take it
    /// back. A press that moves less than 3 pixels opens the menu when it is released.
    void SetPlayByMouse(int on);
    int GetPlayByMouse() const { return playByMouse_; }
    /// Non-zero while such a drag goes on.
    int IsPlaying() const;
    /// The map when it is one of colours, else null.
    AColorsGraph* GetColorsGraph() const;
    /// Shows the map in other colours, on another range or scale; no step of the views by itself.
    void ShowColorLook(const ColorLook& look);
    /// Hears when the window changes how the map shows its values, after OnColorsChanged: for a
    /// dialog that does the same. One at a time; null for none.
    void SetColorsListener(std::function<void()> heard);

    /// The areas; never null. With `owned` the window deletes them; null makes an empty collection.
    /// A drag that is going on is cancelled.
    void SetTrackers(ATrackerArrayInAxis* trackers, int owned);
    ATrackerArrayInAxis* GetTrackers() const { return trackers_; }
    /// List and toolbar that follow the areas; not owned, null for none.
    void SetComboBox(CComboBox* list);
    CComboBox* GetComboBox() const { return list_; }
    void SetToolBar(CToolBar* bar);
    CToolBar* GetToolBar() const { return bar_; }

    /// The values of the map have changed (after ABMapGraph::cellsChanged): sums too are made anew.
    void MapValuesChanged();
    void ShowWholeMap() { ShowWholeRange(); }

    /// Chooses a tool (ToolMode), in the toolbar too.
    void ChooseTool(int mode);
    int RunCommand(unsigned id) override;
    /// The zoom factors count as commands that take the tool up.
    int IsCommandEnabled(unsigned id) const override;

    /// Whether a vertex of a polygon has the focus.
    int IsVertexFocused() const;
    /// Adds areas that hold the cells of a mask of the map's size and no other, as one step of
    /// undo: polygons of at most 1000 vertices, what they enclose as never-clean ones. Without
    /// `isExact` outlines of more vertices are smoothed, else cut into several. How many; -1 for a
    /// mask of another size or without memory.
    int AddAreasOfMask(const ABitMatrix& mask, const CString& label, int isExact = 1);
    /// The level of contours that areas are made of, at first 5 times the noise. 0 for one that no
    /// map has.
    int SetContourLevel(const ContourLevel& level);
    const ContourLevel& GetContourLevel() const { return contourLevel_; }
    /// Adds an area of the cells that hang together with this one and are not below the level (of a
    /// negative level not above it); holes become never-clean areas. The tool of contours does that
    /// where one clicks, Enter about the brightest cell that is shown. Non-zero when there is one.
    int AddAreaOfContour(int row, int column);
    /// Grows the selected areas, or without a selection all but never-clean ones, by so many cells
    /// (-1000 to 1000; below 0 shrinks them), as one step of undo; they become polygons. An area
    /// that would have no cell stays. How many have changed.
    int GrowAreas(int cells);

    /// What the Delete key does: the vertex with the focus goes, else the areas. Always 1.
    int DeleteFocused();

    /// Shows the cells that the mask of the areas sets, also while an area is dragged.
    void SetCellOverlay(int on);
    int GetCellOverlay() const { return showCells_; }
    /// Non-zero draws the areas into copied, saved and printed pictures too.
    void SetAreasInPicture(int on) { areasInPicture_ = on; }
    int GetAreasInPicture() const { return areasInPicture_; }
    /// Draws the outlines of the areas as pictures have them; the axis has to be laid out for `dc`.
    void DrawAreas(CDC& dc);
    /// What the pointer at a client point shows, and what the areas hold.
    AxisStatus StatusAt(CPoint pixel) override;

    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

    /// Called when areas, the current one or the selection are not what they were.
    virtual void OnAreasChanged();
    /// Something that the user should read and need not answer; heirs show it.
    virtual void OnNotice(const CString& text);
    /// Called when range, scale or colours of the map are not what they were: by a drag, a step
    /// through the views or ShowColorLook.
    virtual void OnColorsChanged();

protected:
    // TrackerHost
    CComboBox* trackerComboBox() override { return list_; }
    CWnd* trackerToolBar() override;
    void showRange(const TMinMax& range) override { SetNewMinMax(range); }
    void areasChanged() override;
    void areaChanging(ATracker& tracker) override;

    // APlotWnd
    void drawIntoPicture(CDC& dc) override;
    int isBare() const override;
    void plotLaidOut() override;
    void contentDrawn(int ratio) override;
    void plotGoes() override;
    void plotCame() override;
    void rangeIsNew() override;
    APoint<double> cellStep() const override;
    void saveRange(const TMinMax& shown) override;
    void goBack() override;
    int canGoBack() const override;
    int takePress(unsigned flags, CPoint point) override;
    void pressEnded() override;
    void pointerMoved(unsigned flags, CPoint point) override;
    int chooseCursor(unsigned hitArea, unsigned message) override;
    int takeKey(int key, bool shift, bool control) override;
    void menuAsked(CPoint point) override;
    void pictureComing(int begins) override;
    int isTime(CommandWhen when) const override;
    int zoomSteps() const override;
    void dropZoomStep() override;
    int cellMark(int row, int column, CRect& mark) override;

    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnRButtonDown(unsigned flags, CPoint point) override;
    void OnRButtonUp(unsigned flags, CPoint point) override;
    void OnCaptureChanged(CWnd* next) override;
    void OnDestroy() override;
    void OnTimer(unsigned id) override;

private:
    AMnMxMCTransform cellTransform() const;
    double contourValue() const;
    int pressContour(CPoint point);
    int contourAtPeak();
    void askContourLevel();
    void askGrowth(int sign);
    int replaceGrown(int i, int cells);
    void followAreas();
    void tellOfLostSteps();
    int moveByArrow(int key, bool shift, bool control);
    int walkHistory(int forward);
    void enableCommands();
    int isPolygonAt(CPoint point) const;
    void watchColors();
    void colorsChanged();
    void playTo(CPoint point, int fine);
    void endPlay(int keep);
    int takePlayBack();

    A2DAxis* axis_ = nullptr;  ///< the plot, when it is of that class
    ABMapGraph* map_ = nullptr;
    AAxisColorOP* colorBar_ = nullptr;
    int ownsBar_ = 0;
    ATrackerArrayInAxis* trackers_ = nullptr;
    int ownsTrackers_ = 0;
    CComboBox* list_ = nullptr;
    CToolBar* bar_ = nullptr;
    std::unique_ptr<AreaOverlay> overlay_;
    ContourLevel contourLevel_;
    int growth_ = 1;
    int showCells_ = 0;
    int areasInPicture_ = 0;
    int playByMouse_ = 0;
    std::unique_ptr<PlayDrag> play_;
    int takenBack_ = 0;  ///< a drag of the right button that is still down
    std::function<void()> heardColors_;
};

}  // namespace pavane
