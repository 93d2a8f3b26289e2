#pragma once

#include "pavane/windows/ASelRectWnd.h"

namespace pavane
{

/// A selection window with a second mode (bit 0x40, to be set before the window is made), in which
/// the user draws a new rectangle by pressing and dragging. Its left and top are the press and may
/// lie right of and below the other corner; (-1, -1, -1, -1) while there is none.
class PAVANE_API ASelRectAlt : public ASelRectWnd
{
public:
    /// Pen width of the drawn rectangle.
    void SetRectWidth(int width) { rectWidth_ = width; }
    int GetRectWidth() const { return rectWidth_; }

    /// Called when the button is released after drawing.
    virtual void SendRectAltTrackEnd();

    int IsValidMoveRect(CRect& candidate, int resize) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    void SetUpWindow() override;

protected:
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    int OnSetCursor(CWnd* window, unsigned hitArea, unsigned message) override;

private:
    void drawRect(CDC& dc, const CRect& rect) const;
    void replaceBand(const CRect& band);

    int rectWidth_ = 3;
    HCURSOR idleCursor_ = 0;
};

}  // namespace pavane
