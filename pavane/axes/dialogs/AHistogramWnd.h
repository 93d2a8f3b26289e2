#pragma once

#include "pavane/axes/maps/HistogramPlot.h"
#include "pavane/containers/AArray.h"
#include "pavane/windows/ABWindow.h"
#include "platform/accessibility.h"

#include <functional>

namespace pavane
{

/// The histogram of a map with two handles for the range of its colours and the transfer curve,
/// over the colours that the values get.
///
/// Handles and curve are dragged with the left button, with Shift a tenth as fast; Escape and the
/// right button take it back. Tab goes from the low handle to the high one, to the curve and on;
/// arrows move what has the focus, with Shift ten times as far.
class PAVANE_API AHistogramWnd : public ABWindow, private AccessSource
{
public:
    /// What it tells: a change begins, has gone on, has ended (kept or taken back). A key is told
    /// by `stepped` alone.
    struct Listener {
        std::function<void()> begun, moved, stepped;
        std::function<void(int kept)> ended;
    };
    AHistogramWnd() { SetFlag(windowNoWaitCursor | windowBuffered, 1); }
    void SetListener(const Listener& listener) { listener_ = listener; }

    /// What it shows; the window is drawn again.
    void SetCounts(const std::vector<std::int64_t>& counts, TMnMx shown);
    void SetLook(const MapScale& scale, const AColorPlay& play, const AArray<COLORREF>& colours);
    /// For values told to screen readers and beside the handles.
    void SetUnit(const CString& unit) { unit_ = unit; }
    /// Range and play as drags and keys have made them.
    const HistogramPlot& plot() const { return plot_; }
    /// Which part keys move.
    HistogramPlot::Part focusPart() const { return focus_; }
    int IsDragged() const { return dragged_; }

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override { return "AHistogramWnd"; }
    int GetMenuID() override { return 0; }
    AccessSource* GetAccess() override { return this; }

protected:
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnRButtonDown(unsigned flags, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnCaptureChanged(CWnd* next) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnSetFocus(CWnd* old) override;
    void OnKillFocus(CWnd* next) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnDestroy() override;

    int GetAccessPart(AccessId id, AccessPart& part) const override;
    std::vector<AccessId> GetAccessChildren() const override;
    AccessId AccessHitTest(CPoint point) const override;
    AccessId GetAccessFocus() const override;
    int AccessSetFocus(AccessId id) override;

private:
    void place();
    void endDrag(int keep);
    void focusOn(HistogramPlot::Part part);
    CRect handleRect(HistogramPlot::Part part) const;
    CString valueOf(HistogramPlot::Part part) const;
    void drawColours(CDC& dc) const;
    void drawHandle(CDC& dc, HistogramPlot::Part part) const;

    HistogramPlot plot_;
    AArray<COLORREF> colours_;
    CString unit_;
    Listener listener_;
    HistogramPlot::Part focus_ = HistogramPlot::Part::low;
    int dragged_ = 0;
};

}  // namespace pavane
