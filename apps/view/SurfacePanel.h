#pragma once

#include "apps/view/MapDocument.h"
#include "apps/view/SurfacePicture.h"
#include "pavane/axes/windows/ASurfaceWnd.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace pavane
{

class AAxisScaleBar;
class ARPTrackerArray;
class AAxisWnd;

/// The map as a surface, in a window beside it: the pointer in one marks its cell in the other, and
/// what the map shows of colours, contours and areas the surface shows as well.
class SurfacePanel
{
public:
    SurfacePanel() : window_(*this) {}

    /// The window of the map beside it, not owned; another one while nothing is shown.
    void SetAxisWnd(AAxisWnd* map) { map_ = map; }

    int Create(CWnd* parent, unsigned id);
    ASurfaceWnd& window() { return window_; }
    int isShown() const { return picture_ != nullptr; }
    /// Shows a map that is open; null for none. The view stays, and so do a second map and one that
    /// gives the colours, when the new one has as many columns and rows as the one before; with
    /// another plane of the same map whatever the user does goes on.
    void Show(MapDocument* document);
    /// The map has another look.
    void Follow();
    void SetAreas(const ARPTrackerArray& areas);
    void SetDisplay(const SurfaceDisplay& display);
    const SurfaceDisplay& display() const { return display_; }
    /// A second map above it, or the one that gives its colours; null for none. 0 while nothing is
    /// shown, and for colours of a map of another size.
    int SetSecond(std::unique_ptr<SideMap> second);
    int SetColorMap(std::unique_ptr<SideMap> colors);
    int hasSecond() const { return picture_ && picture_->hasSecond(); }
    int hasColorMap() const { return picture_ && picture_->hasColorMap(); }

    /// View and display as a text to be kept, and back from it; what is not one changes nothing.
    std::string LookText() const;
    void TakeLook(const std::string& text);

    std::function<LevelChoice()> levels;            ///< how those of the map were chosen
    std::function<void(const AxisStatus&)> status;  ///< of the pointer over the surface
    std::function<void()> focused;                  ///< the keyboard has come to it
    std::function<int(int)> stepPlane;  ///< Page Down (1) or Page Up (-1); 0: no other plane

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

        /// A bar beside the box; null for none.
        void ShowBar(AAxisScaleBar* bar) { figure().setBar(bar); }

    protected:
        void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
        void OnSetFocus(CWnd* old) override
        {
            ASurfaceWnd::OnSetFocus(old);
            if (panel_.focused)
                panel_.focused();
        }

    private:
        SurfacePanel& panel_;
    };

    BoxView viewOfOne() const;
    void pictureChanged();

    AAxisWnd* map_ = nullptr;
    MapDocument* document_ = nullptr;
    std::unique_ptr<SurfacePicture> picture_;
    SurfaceDisplay display_;
    std::optional<BoxView> keptView_;  ///< of the last run, or of what was shown before
    Window window_;
};

}  // namespace pavane
