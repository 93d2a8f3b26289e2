#pragma once

#include "pavane/axes/maps/MapFigure.h"
#include "pavane/axes/ranges/RangeView.h"
#include "pavane/axes/windows/AxisStatus.h"
#include "pavane/axes/windows/PlotHooks.h"
#include "pavane/axes/windows/PlotPicture.h"
#include "pavane/axes/windows/RubberBand.h"
#include "pavane/history/ViewHistory.h"
#include "pavane/windows/ABWindow.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace pavane
{

class ABAxis;
class PaletteFollower;

/// Room about the plot of a window, in pixels: what labels and titles take at each edge, and a bar.
struct PlotRoom {
    CRect margins;
    int bar = 0;
};

enum class CommandWhen : std::uint8_t;

/// A window that shows an axis with its graphs: a curve, a histogram, a map, whatever the axis
/// draws. AAxisWnd adds areas.
///
/// The axis is drawn once into a picture of the window, and again only when the range, the size or
/// the data change; everything else is painted from there.
///
/// The left button draws a rubber band, and what lies in it is shown; Escape, the right button and
/// the loss of the capture give it up. The wheel pans when zoomed, with Shift across, with Ctrl it
/// zooms about the pointer; the middle button, or the left one while Space is held, drags the plot.
/// Keys: 7 goes back to the range before, 0 to the whole, plus and minus zoom about the middle;
/// Alt+Left and Alt+Right go back and forward through the views, of which the range is a part.
class PAVANE_API APlotWnd : public ABWindow, protected PlotHooks
{
public:
    APlotWnd();
    ~APlotWnd() override;

    /// Shows another axis, of any class; null shows an empty window. With `owned` the window
    /// deletes it. Whatever is going on with the pointer is cancelled, the steps back are
    /// forgotten.
    void SetPlot(ABAxis* axis, int owned);
    ABAxis* GetPlot() const { return axis_; }

    /// Palette, titles or graphs have changed: draws the content again.
    void ContentChanged();
    /// The graphs have other points: shows all of them, and forgets the steps back. The range is
    /// known after the next paint.
    void DataChanged();
    /// The graphs have more points of the same data: a range that is zoomed stays, all that is
    /// shown is all that there is, and so it is in the steps back. Paints. For axes of one scale.
    void DataGrew();
    /// Shows another range (RP, x and y pairs), without a step of the zoom history.
    void SetNewMinMax(const TMinMax& range);
    /// The range of everything that the axis shows, before any zoom; unset before the first paint.
    const TMinMax& GetWholeRange() const { return view_.whole(); }
    /// Whether another range than the whole is shown.
    int IsRangeZoomed() const;
    /// One step of the zoom history each, or one for all that follow within a moment. Factors above
    /// 1 magnify; the value at client point `pixel` stays there.
    void ZoomAbout(CPoint pixel, double factor);
    /// Shows what lies `dx` pixels to the right and `dy` below, as far as the whole range reaches.
    void Pan(int dx, int dy);
    void ZoomBack();
    void ShowWholeRange();

    /// Draws what is shown into the picture that the window keeps, unless that is done: also while
    /// it is hidden, so that it shows at once later. The whole range is known then.
    void PrepareContent();
    /// Of the last layout in the window.
    const PlotRoom& GetRoom() const { return room_; }
    /// The plot keeps at least this room, so that windows of one size can show one place at one
    /// pixel; none at first.
    void SetLeastRoom(const PlotRoom& room);

    /// Runs one of the commands of resource_ids.h; 0 when it is none of this window's.
    virtual int RunCommand(unsigned id);
    /// Whether a command would do something now; commands of others never.
    virtual int IsCommandEnabled(unsigned id) const;
    /// Draws the content into `rect` of any context, as copied, saved and printed pictures have it.
    void DrawPicture(CDC& dc, const CRect& rect);
    /// What the pointer at a client point shows.
    virtual AxisStatus StatusAt(CPoint pixel);

    // ABWindow
    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    int GetAWindowType() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

    /// Called when the pointer moves and when what it shows changes; heirs show it.
    virtual void OnStatus(const AxisStatus& status);
    /// Called after every change of the range.
    virtual void OnRangeChanged();
    /// How often the content was drawn.
    int contentDrawings() const { return picture_.drawings(); }

    // The views that the user came through: range, and the parts that SetViewPart adds. Apart from
    // the undo of areas. Steps of the zoom history are steps of this one; one that is taken back by
    // either is off both.
    /// The view before the last step; waits for the end of drags. Nothing without a step.
    void ViewBack();
    /// What the last ViewBack left.
    void ViewForward();
    int CanViewBack() const;
    int CanViewForward() const { return !views_.isOpen() && views_.canGoForward(); }
    /// What changes between is one step; calls nest. No step when nothing changed.
    void BeginView();
    void EndView();
    /// In place of the two: one step until half a second without such a call has passed. For turns
    /// of a wheel and for keys that are held; call it before each change.
    void BeginViewGesture();
    /// How a part beside the range is asked and put back; both null take it away. `get` answers
    /// nothing while there is no such part. They are not called once the window goes.
    void SetViewPart(ViewPart part, std::function<ViewValues()> get,
                     std::function<void(const ViewValues&)> put);

    // Windows that show the same cells in two ways: the cell that is pointed at in one is marked in
    // the other, on the screen only.
    /// Who hears which cell (MP) is pointed at, whenever it is another; row -1 for none. Null: no
    /// one.
    void SetCellLink(std::function<void(int row, int column)> told);
    /// Marks a cell, in windows that show cells; a row or column below 0: none. Tells no one.
    void SetLinkedCell(int row, int column);
    /// 0 while none is marked.
    int GetLinkedCell(int& row, int& column) const;

protected:
    /// The axis and what heirs put beside it, as windows, pictures and pages show it.
    MapFigure& figure() { return figure_; }

    // What heirs add beside PlotHooks. In this order; new ones go to the end.
    /// Draws over the content of pictures, in the axis as it is laid out for them.
    virtual void drawIntoPicture(CDC& dc);
    /// Non-zero while nothing lies over the content of the window.
    virtual int isBare() const;
    /// The zoom history. The base keeps one of its own.
    virtual void saveRange(const TMinMax& shown);
    virtual void goBack();
    virtual int canGoBack() const;
    /// The left button went down. Non-zero when that was all about the press; else the base window
    /// takes the capture. The base begins a rubber band.
    virtual int takePress(unsigned flags, CPoint point);
    virtual void pointerMoved(unsigned flags, CPoint point);
    /// Non-zero when the key was one of this window's.
    virtual int takeKey(int key, bool shift, bool control);
    /// Whether the commands that wait for something have it; 0 for what this window never has.
    virtual int isTime(CommandWhen when) const;
    /// Steps of the zoom history, and to take the last off without showing it. Who overrides
    /// saveRange overrides these.
    virtual int zoomSteps() const;
    virtual void dropZoomStep();
    /// What IsRangeZoomed, ZoomAbout, Pan and ShowWholeRange do, for windows that show other ranges
    /// than the one of their axis.
    virtual int isViewZoomed() const;
    virtual void zoomView(CPoint pixel, double factor);
    virtual void panView(int dx, int dy);
    virtual void showWholeView();
    /// Other data: the axis takes its ranges from the graphs again.
    virtual void resetRanges();
    /// Gives up what a button has begun; non-zero when there was something.
    virtual int giveUpDrag();
    /// The margins that the plot keeps in its window while zoomed, from a layout just made; 0 when
    /// there was no room for a plot.
    virtual int plotMargins(const FigureLayout& layout, CRect& margins) const;
    /// Where a cell is marked, as the plot is laid out; 0 for nowhere, as here.
    virtual int cellMark(int row, int column, CRect& mark);
    /// Another cell is marked, or none.
    virtual void linkedCellChanged() {}
    /// The range of which the views are a history, and another one in its place; that of the axis
    /// here.
    virtual TMinMax shownRange() const;
    virtual void putRange(const TMinMax& range);

    // For heirs
    /// Before each change of a range by a wheel or keys: the first one of a gesture puts what is
    /// shown into the zoom history, and all of them are one step of both histories.
    void beginZoomStep();
    /// The next change is another step.
    void endGesture();
    /// The pixels of the plot, those of its last values included.
    CRect plotRect() const;
    /// Paints what is waiting, so that the layout fits what the user points at.
    void settle();
    /// Tells the status at the pointer.
    void showStatusAtPointer();
    /// Calls `press`, and tells when the outermost such call has ended. Handlers in it may close or
    /// delete the window: 1 then, so that nothing else happens with the message.
    int followPress(const std::function<int()>& press);
    /// Presses that are being followed, one inside the other.
    int presses() const { return presses_; }
    /// Ends everything that the pointer is doing, before what it does it to goes.
    void endDrags();
    /// Draws the mark of the linked cell; for ServiceDraw of heirs.
    void drawLinkedCell(CDC& dc);
    /// Tells the link of a cell that is pointed at.
    void tellCell(int row, int column);
    /// Destructors begin with it: what the parts of a view belong to may be gone.
    void leaveViews();
    /// The whole range is another one, as there is more of the same data; in the histories too.
    void wholeIsNew(const TMinMax& whole);
    /// The same of a pair of numbers of a part that an heir has.
    void wholeIsNew(ViewPart part, std::size_t pair, const TMnMx& from, const TMnMx& to);
    /// The plot shows something else and may do so many times a second, as with colours that are
    /// played with: with nothing over it it goes to the window without a copy to be kept.
    void contentMoved();
    /// Where the context menu was asked for; (-1, -1) once the pointer, a press or a key did else.
    CPoint menuPoint() const { return menuPoint_; }
    const CBitmap& contentPixels() const { return picture_.pixels(); }
    /// Draws a part of the content anew where it stands: `draw` gets the rectangle in which the
    /// axis was drawn, and answers whether it could. 0 when all has to be drawn (ContentChanged).
    int patchContent(const std::function<int(CDC& dc, CRect& rect)>& draw);

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
    static constexpr unsigned gestureTimer = 1;
    struct Panning {
        int going = 0;
        CPoint start;
        TMinMax range;
    };
    struct PartOfView {
        std::function<ViewValues()> get;
        std::function<void(const ViewValues&)> put;
    };
    FigureLayout layOut(CDC& dc, const CRect& rect) const;
    void layOutWindow(CDC& dc, const CRect& client, FigureLayout& layout);
    void restoreLayout();
    void paintContent(CDC& dc, const CRect& client, const CRect& update, int isBare);
    void dropAxis();
    void beginPan(CPoint point);
    void panTo(CPoint point);
    void endPan();
    int wheelPan(double dx, double dy);
    void dropBand();
    void showBand(const RubberBand& band);
    View shownView() const;
    void showView(const View& view, const View& shown);
    void walkViews(int forward);
    void tellStatus(CPoint pixel);

    ABAxis* axis_ = nullptr;
    int ownsAxis_ = 0;
    std::vector<std::unique_ptr<ABAxis>> retired_;  ///< axes that a press may still point to
    RangeView view_;
    MapFigure figure_;
    std::unique_ptr<PaletteFollower> palette_;
    CRect margins_;  ///< of the plot while zoomed, and the size of the window that they are for
    CSize marginsFor_;
    PlotRoom room_;
    PlotRoom leastRoom_;
    CRect drawnIn_;  ///< where the axis was drawn in the window
    PlotPicture picture_;
    ViewHistory views_;
    std::array<PartOfView, viewParts> parts_;
    int viewGesture_ = 0;   ///< a step that ends by itself
    int walkingViews_ = 0;  ///< what changes is no step
    int tellingRange_ = 0;  ///< what handlers do belongs to the gesture
    std::function<void(int row, int column)> cellLink_;
    CPoint toldCell_{-1, -1};    ///< column and row
    CPoint linkedCell_{-1, -1};  ///< the same
    CRect drawnMark_;

    int presses_ = 0;
    RubberBand band_;
    Panning pan_;
    int rightDown_ = 0;  ///< the right button was pressed here
    int noMenu_ = 0;     ///< its release ended something else
    int spaceHeld_ = 0;
    CPoint pointer_{-1, -1};  ///< where the pointer was last
    CPoint menuPoint_{-1, -1};
};

}  // namespace pavane
