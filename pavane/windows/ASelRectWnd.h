#pragma once

#include "pavane/windows/ABWindow.h"

namespace pavane
{

// Bits of the flags word of selection windows; those of the edges are in selection_edges.h.
inline constexpr int selectionShown = 0x20;   ///< set by the host: shown and active
inline constexpr int selectionBand = 0x40;    ///< set by the host: rubber-band mode (ASelRectAlt)
inline constexpr int selectionCursor = 0x80;  ///< a sizing cursor is shown
inline constexpr int selectionDragged = 0x100;
inline constexpr int selectionMoved = 0x10000;

/// A window on whose picture the user marks a rectangle by four lines that run across all of it.
/// Edges are dragged with the left button, all four are moved with Shift and the right button.
/// Client pixels; the lines invert what is under them.
class PAVANE_API ASelRectWnd : public ABWindow
{
public:
    const CRect& GetSelRect() const { return sel_; }
    /// Pen widths of the left and right and of the top and bottom lines; 0 is the thinnest, and a
    /// negative width leaves the pair out: it is not drawn and cannot be dragged.
    void SetLineWidthLR(int width) { lineWidthLR_ = width; }
    int GetLineWidthLR() const { return lineWidthLR_; }
    void SetLineWidthUB(int width) { lineWidthUB_ = width; }
    int GetLineWidthUB() const { return lineWidthUB_; }

    /// Called after every change of the selection.
    virtual void SendAboutRect(CRect& sel);
    /// Corrects a wanted selection; 0 refuses it. `resize` zero: the whole selection is moved.
    /// Deliberate: also a candidate that equals the selection is accepted and drawn again; hosts
    /// count on a notice for every move of the pointer.
    virtual int IsValidMoveRect(CRect& candidate, int resize);
    /// Inverts lines of `sel` across `extent`, in a context of the window when `dc` is null: bit 1
    /// top, 2 left, 4 bottom, 8 right. Twice the same call erases; bit 128 says that it does so.
    virtual void DrawSelRect(CDC* dc, CRect& sel, CRect& extent, int lines);

    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    void SetUpWindow() override;

protected:
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnRButtonDown(unsigned flags, CPoint point) override;
    void OnRButtonUp(unsigned flags, CPoint point) override;
    void OnCaptureChanged(CWnd* next) override;
    void OnDestroy() override;
    int OnSetCursor(CWnd* window, unsigned hitArea, unsigned message) override;

    CRect bounds_;  ///< limits of the selection: the client area when the window was made
    CRect sel_;
    HCURSOR dragCursor_ = 0;
    CPoint lastPoint_{-1, -1};
    int lineWidthLR_ = 0;
    int lineWidthUB_ = 0;

private:
    int hotEdges() const;
    void findEdges(CPoint point);
    void dragEdges(CPoint point);
    int moveSelection(CPoint point);
    void replaceSelection(CRect& candidate, int lines);
};

}  // namespace pavane
