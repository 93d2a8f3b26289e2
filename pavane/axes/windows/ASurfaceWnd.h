#pragma once

#include "pavane/axes/box/BoxView.h"
#include "pavane/axes/windows/APlotWnd.h"
#include "platform/accessibility.h"

#include <cstdint>
#include <vector>

namespace pavane
{

class A2_3DAxis;

/// A window that shows a box and lets the user turn it.
///
/// The left button turns, with Shift in steps of 15 degrees; Escape or the right button takes the
/// turn back. The middle button moves the box, Ctrl and the wheel zoom about the pointer, so do
/// plus and minus. A double click and Home go back to the first view. Arrows turn by 5 degrees,
/// with Shift by 1 (left and right change the azimuth, up and down the elevation); Ctrl+Up and
/// Ctrl+Down change the height; X, Y and Z look along an axis; Ctrl+Shift and arrows move the mark.
/// While the view moves a large map is drawn from its greatest values per block.
///
/// The cell under the pointer is told to the other window of a link and marked there, and the cell
/// that is pointed at there is marked here; see APlotWnd::SetCellLink.
class PAVANE_API ASurfaceWnd : public APlotWnd, public AccessSource
{
public:
    ASurfaceWnd();
    ~ASurfaceWnd() override;

    /// Shows another box, as SetPlot does; its view becomes the first one.
    void SetBox(A2_3DAxis* box, int owned);
    /// Null without one and while SetPlot has given an axis of another class.
    A2_3DAxis* GetBox() const { return box_; }

    /// The view as Home brings it back: at first that of the box when it came.
    void SetFirstView(const BoxView& view) { first_ = view; }
    /// Shows another view, as one step of the history of views.
    void ShowView(const BoxView& view);
    void ShowFirstView();
    /// What is shown follows a hand: large maps are drawn from blocks until it rests, as while the
    /// view moves. For hosts that change the range of heights.
    void ShowMoves();
    /// Multiplies the height of the box.
    void GrowHeight(double factor);
    /// Degrees more; elevations stay in 0..90.
    void TurnBy(double azimuth, double elevation);

    AxisStatus StatusAt(CPoint pixel) override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;

    // What a screen reader hears: the axes with their ranges, the view, the marked cell.
    AccessSource* GetAccess() override { return this; }
    int GetAccessPart(AccessId id, AccessPart& part) const override;
    std::vector<AccessId> GetAccessChildren() const override;

protected:
    void plotGoes() override;
    void plotCame() override;
    int takePress(unsigned flags, CPoint point) override;
    void pointerMoved(unsigned flags, CPoint point) override;
    int takeKey(int key, bool shift, bool control) override;
    int cellMark(int row, int column, CRect& mark) override;
    void linkedCellChanged() override;

    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnMButtonDown(unsigned flags, CPoint point) override;
    void OnMButtonUp(unsigned flags, CPoint point) override;
    void OnRButtonDown(unsigned flags, CPoint point) override;
    int OnMouseWheel(unsigned flags, int delta, CPoint screen) override;
    void OnCaptureChanged(CWnd* next) override;
    void OnTimer(unsigned id) override;
    void OnDestroy() override;

private:
    enum class Drag : std::uint8_t { none, turn, move };
    void beginDrag(Drag drag, CPoint point);
    void dragTo(unsigned flags, CPoint point);
    void endDrag(int takeBack);
    void showNow(const BoxView& view);
    int takeArrow(int key, bool shift, bool control);
    int moveMark(int columns, int rows);

    A2_3DAxis* box_ = nullptr;
    BoxView first_;
    Drag drag_ = Drag::none;
    CPoint dragStart_;
    BoxView dragView_;
    int isMoving_ = 0;  ///< the window may show blocks of cells until the view rests
};

}  // namespace pavane
