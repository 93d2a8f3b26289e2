#pragma once

#include "apps/view/MapDocument.h"
#include "apps/view/SurfacePicture.h"
#include "pavane/axes/windows/ASurfaceWnd.h"

#include <functional>
#include <memory>

namespace pavane
{

class ARPTrackerArray;
class AAxisWnd;

/// The map as a surface, in a window beside it: the pointer in one marks its cell in the other, and
/// what the map shows of colours, contours and areas the surface shows as well.
class SurfacePanel
{
public:
    /// `map` is the window beside it.
    explicit SurfacePanel(AAxisWnd& map) : map_(map), window_(*this) {}

    int Create(CWnd* parent, unsigned id);
    ASurfaceWnd& window() { return window_; }
    int isShown() const { return picture_ != nullptr; }
    /// Shows a map that is open; null for none. The view stays.
    void Show(MapDocument* document);
    /// The map has another look.
    void Follow();
    void SetAreas(const ARPTrackerArray& areas);

    std::function<void(const AxisStatus&)> status;  ///< of the pointer over the surface
    std::function<void()> focused;                  ///< the keyboard has come to it

private:
    class Window : public ASurfaceWnd
    {
    public:
        explicit Window(SurfacePanel& panel) : panel_(panel) {}
        void OnStatus(const AxisStatus& shown) override
        {
            ASurfaceWnd::OnStatus(shown);
            if (panel_.status)
                panel_.status(shown);
        }

    protected:
        void OnSetFocus(CWnd* old) override
        {
            ASurfaceWnd::OnSetFocus(old);
            if (panel_.focused)
                panel_.focused();
        }

    private:
        SurfacePanel& panel_;
    };

    AAxisWnd& map_;
    MapDocument* document_ = nullptr;
    std::unique_ptr<SurfacePicture> picture_;
    Window window_;
};

}  // namespace pavane
