#pragma once

#include "pavane/printing/APrintOut.h"
#include "pavane/printing/layout/PreviewView.h"
#include "platform/window_dc.h"

#include <functional>

namespace pavane
{

/// Shows one page of a print-out as `printer` would print it, on pale yellow paper. Wheel, arrows
/// and Ctrl with the wheel scroll and zoom; when there is nothing left to scroll, and with the keys
/// for pages, `onTurn` is asked for another page.
class APrnPreviewWnd : public ABWindow
{
public:
    APrnPreviewWnd(APrintOut& out, CPrintInfo& info, const CDC& printer);

    /// Other pages and other views; the window shows them.
    void setPage(int page);
    PreviewView& view() { return view_; }
    const PreviewView& view() const { return view_; }
    /// After the view was changed from outside.
    void viewChanged();
    CPoint middle() const;

    /// The page on white, `dpi` dots per inch; less than asked for where that would be more than 64
    /// million pixels. Returns the dots per inch of the picture, 0 when there is none.
    int renderPage(CBitmap& bitmap, int dpi);
    /// How small the print window is drawn on the page for want of room, per cent.
    int printPercent();

    enum class Turn { next, previous, first, last };
    std::function<void(Turn)> onTurn;
    std::function<void()> onView;  ///< size or zoom has changed
    std::function<void()> onClose;

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override { return "PrintPreview"; }
    void SetUpWindow() override;
    /// A key of the preview; 0 when it is none.
    int useKey(unsigned key, int isControl);

protected:
    void OnSize(unsigned type, int cx, int cy) override;
    void OnHScroll(unsigned code, unsigned position) override;
    void OnVScroll(unsigned code, unsigned position) override;
    int OnMouseWheel(unsigned flags, int delta, CPoint screen) override;
    int OnMouseHWheel(unsigned flags, int delta, CPoint screen) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;

private:
    void fitWindow();
    void showBars();
    void scrollTo(CPoint place);
    int barTarget(int bar, unsigned code, unsigned position, int now, int page) const;
    int drawSheet(CBitmap& bitmap, const CRect& sheet, COLORREF paper);

    APrintOut& out_;
    CPrintInfo& info_;
    const CDC& printer_;
    PreviewView view_;
    bool laysOut_ = false;
    // what was drawn last
    CBitmap picture_;
    CRect drawn_;
    int drawnPage_ = 0;
    int percent_ = 0;  ///< 0: not asked yet
};

}  // namespace pavane
