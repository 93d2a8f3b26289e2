#pragma once

#include "pavane/windows/ABWindow.h"

#include <functional>

namespace pavane
{

/// The bar between two maps in one place: the pointer drags it, the arrow keys move it, Home and
/// End take it to the ends.
class SliderBar : public ABWindow
{
public:
    static constexpr int width = 7;
    std::function<void(int pixels)> moved;  ///< by so many pixels
    std::function<void()> left;             ///< by Escape

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override { return "PavaneMapSlider"; }

protected:
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    int OnSetCursor(CWnd* window, unsigned hitArea, unsigned message) override;
    void OnSetFocus(CWnd* old) override;
    void OnKillFocus(CWnd* next) override;

private:
    int grip_ = 0;  ///< where it is held
};

/// The part of the stage in which a map window is seen. The window may be larger: of two in one
/// place the upper one is cut at the slider, whose bar stands at the left of its pane.
class MapPane : public ABWindow
{
public:
    /// Makes the pane, and the window in it, which is not owned.
    int Create(CWnd* parent, ABWindow& map, unsigned id);
    CWnd* map() const { return map_; }
    SliderBar& bar() { return bar_; }
    /// Shows the part `seen` of a window that lies at `whole`; both in client coordinates of the
    /// parent. With a bar that part begins with it.
    void Place(const CRect& whole, const CRect& seen, int hasBar);

    const char* GetWndClassName() override { return "PavaneMapPane"; }

private:
    CWnd* map_ = nullptr;
    SliderBar bar_;  ///< above the map: made after it
};

}  // namespace pavane
