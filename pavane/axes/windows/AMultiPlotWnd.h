#pragma once

#include "pavane/axes/multi/multi_reading.h"
#include "pavane/axes/multi/MultiFocus.h"
#include "pavane/axes/multi/MultiView.h"
#include "pavane/axes/windows/APlotWnd.h"
#include "platform/accessibility.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace pavane
{

class A2DAxisMulti;
class AGraph;

/// A window that shows a plot with several scales, in one plot or in panels on pages.
///
/// Over a y axis the wheel zooms that scale, a drag pans it, a double click shows all of it; over
/// the x axis the same is done to x. In a plot Ctrl+wheel zooms x in all panels about the pointer,
/// with Shift too the scales of the panel; a rubber band shows a part of x, with Shift of the
/// panel's scales. The wheel alone pans these, with Shift x; the middle button, or the left one
/// while Space is held, drags the panel. A line at the pointer goes through all panels.
///
/// Keys: F6 and Shift+F6 go through the panels, Page Up and Page Down turn pages, Tab (in a dialog
/// Ctrl+Tab) goes through the scales and curves of the panel, plus, minus and arrows act on what
/// has the focus; on a curve Left and Right go from point to point, with Shift by ten, Home and End
/// to its ends.
class PAVANE_API AMultiPlotWnd : public APlotWnd, private AccessSource
{
public:
    AMultiPlotWnd();
    ~AMultiPlotWnd() override;

    /// Shows another axis, as SetPlot does.
    void SetAxis(A2DAxisMulti* axis, int owned);
    /// The axis; null without one and while SetPlot has given one of another class.
    A2DAxisMulti* GetAxis() const { return multi_; }

    /// The ranges of all directions, and before any zoom.
    MultiRanges GetRanges() const;
    const MultiRanges& GetWholeRanges() const { return whole_.whole(); }
    /// Shows other ranges, without a step of the zoom history; pairs that are no span stay.
    void ShowRanges(const MultiRanges& ranges);
    /// One step of the zoom history, or one for all that follow within a moment. A direction is a
    /// scale or directionX; the value `at` (RP) stays in its place.
    void ZoomDirection(int direction, double at, double factor);
    /// All of a direction, as one step.
    void ShowWholeDirection(int direction);
    /// Zooms what has the focus, as plus and minus do.
    void ZoomFocus(double factor);
    /// Calls `fill`, which puts more of the same into the axis: its graphs may be others, its
    /// scales have the numbers that they had. Page, focus, histories and what is zoomed stay;
    /// directions that are not zoomed show all that there is now.
    void FillAxis(const std::function<void()>& fill);

    /// A graph has other points in the same ranges: only its panel is drawn again.
    void GraphChanged(AGraph* graph);
    /// Another page, from 0; the nearest one when there is none of that number.
    void ShowPage(int page);
    /// What has the keyboard when the window has it.
    const MultiFocus& GetPlotFocus() const { return focus_; }
    void SetPlotFocus(const MultiFocus& focus);
    /// The focus goes so many panels further; 0 when that leaves the page, for the F6 of a window
    /// with other parts.
    int NextPanel(int step);
    /// Non-zero, as at first, shows the line at the pointer.
    void SetPointerLine(int on);
    /// Shows the line at a value of x (RP), as when the pointer of a linked window is there;
    /// not-a-number takes it away.
    void ShowLineAt(double x);
    double GetLineAt() const { return lineAt_; }

    /// Called when the pointer moves, or the focus from point to point, and when what is there
    /// changes; statusText makes a line of it.
    virtual void OnMultiStatus(const MultiStatus& status);
    /// F6 or Shift+F6 left the panels: the next part of the window takes the focus.
    virtual void OnPanelsLeft(int step);
    /// Another page is shown.
    virtual void OnPageChanged();

    // ABWindow
    int GetPages(CDC& dc) override;
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    AxisStatus StatusAt(CPoint pixel) override;
    AccessSource* GetAccess() override { return this; }

protected:
    // APlotWnd
    int isBare() const override;
    void plotLaidOut() override;
    void plotGoes() override;
    void plotCame() override;
    void rangeIsNew() override;
    int chooseCursor(unsigned hitArea, unsigned message) override;
    void saveRange(const TMinMax& shown) override;
    void goBack() override;
    int canGoBack() const override;
    int zoomSteps() const override;
    void dropZoomStep() override;
    int isViewZoomed() const override;
    void zoomView(CPoint pixel, double factor) override;
    void panView(int dx, int dy) override;
    void showWholeView() override;
    void resetRanges() override;
    TMinMax shownRange() const override;
    void putRange(const TMinMax& range) override;
    int giveUpDrag() override;
    int plotMargins(const FigureLayout& layout, CRect& margins) const override;
    int takePress(unsigned flags, CPoint point) override;
    void pointerMoved(unsigned flags, CPoint point) override;
    int takeKey(int key, bool shift, bool control) override;

    /// Non-zero while drags in a panel draw rectangles that are no part to show.
    virtual int takesRectangles() const;
    /// Such a rectangle, client pixels inside the panel's plot, when the button is up.
    virtual void takeRectangle(int panel, const CRect& rect);

    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnMButtonDown(unsigned flags, CPoint point) override;
    void OnMButtonUp(unsigned flags, CPoint point) override;
    void OnMouseLeave() override;
    int OnMouseWheel(unsigned flags, int delta, CPoint screen) override;
    int OnMouseHWheel(unsigned flags, int delta, CPoint screen) override;
    void OnCaptureChanged(CWnd* next) override;
    void OnKeyUp(unsigned key, unsigned repeat, unsigned flags) override;
    void OnSetFocus(CWnd* old) override;
    void OnKillFocus(CWnd* next) override;
    void OnDestroy() override;

private:
    enum class DragKind : std::uint8_t { none, band, axis, panel };
    /// What a button does from its press on.
    struct Drag {
        DragKind kind = DragKind::none;
        int direction = directionX;  ///< of an axis
        int panel = -1;
        CPoint start;
        MultiRanges ranges;  ///< that were shown then
        int isStep = 0;      ///< something has changed, and the step is open
    };
    using Change = std::function<int(MultiRanges& ranges)>;

    int directionAt(CPoint point, int& direction) const;
    int isLog(int direction) const;
    CRect panelPlot(int panel) const;
    std::vector<int> scalesOf(int panel) const;
    int zoomScalesAbout(MultiRanges& ranges, int panel, int gy, double factor) const;
    int panBy(MultiRanges& ranges, int panel, double right, double down) const;
    int panAxis(MultiRanges& ranges, int direction, const CRect& plot, CPoint way) const;
    /// A change of the ranges by a wheel or a key; 0 when there was none.
    int changeInGesture(const Change& change);
    int changeOnce(const Change& change);
    void beginPanelDrag(CPoint point);
    void dragTo(CPoint point);
    void endDrag(int keep);
    void showBand(const RubberBand& band, int panel);
    void followScales();
    void growSteps(const MultiRanges& before, const MultiRanges& now);
    void invalidateBand();

    void moveLine(double x);
    void invalidateLine();
    void tellStatus(const MultiStatus& status);
    void tellPointer();
    void pictureMoved();
    void focusChanged(const MultiFocus& before);
    void invalidateFocus();
    void showFocusedPoint();
    int zoomFocused(double factor);
    int arrow(int key, bool shift);
    int walkCurve(int step);
    int tabWalks(bool control) const;

    // AccessSource
    int GetAccessPart(AccessId id, AccessPart& part) const override;
    void describe(const MultiFocus& known, AccessPart& part) const;
    std::vector<AccessId> GetAccessChildren() const override;
    AccessId AccessHitTest(CPoint point) const override;
    AccessId GetAccessFocus() const override;
    int AccessSetFocus(AccessId id) override;
    int AccessActivate(AccessId id) override { return AccessSetFocus(id); }

    A2DAxisMulti* multi_ = nullptr;  ///< the plot, when it is of that class
    MultiView whole_;
    /// A scale of which the whole is known.
    struct KnownScale {
        int id;
        TMnMx asked;
        friend bool operator==(const KnownScale&, const KnownScale&) = default;
    };
    std::vector<KnownScale> known_;
    std::vector<MultiRanges> steps_;  ///< of the zoom history
    MultiFocus focus_;
    Drag drag_;
    RubberBand frame_;
    CPoint pointerAt_{-1, -1};  ///< negative outside of the window
    int spaceHeld_ = 0;
    int lineOn_ = 1;
    double lineAt_ = std::numeric_limits<double>::quiet_NaN();
};

}  // namespace pavane
