#pragma once

#include "platform/geometry.h"
#include "platform/window_dc.h"

#include <functional>

namespace pavane
{

/// The picture of a plot for its window: drawn once, and again only when the plot shows something
/// else; whatever lies over it is painted without drawing the plot.
class PlotPicture
{
public:
    /// Draws the plot into a rectangle of a context.
    using Drawing = std::function<void(CDC& dc, const CRect& rect)>;

    /// The plot shows something else.
    void changed() { stale_ = pictureStale_ = 1; }
    /// And it is its range or its colours that moved, as they may do many times a second.
    void moved() { moving_ = 1; }
    /// The window shows what the plot was before.
    int isStale() const { return stale_; }
    /// Brings `update` up to date in a window of the size `client`; white without memory. While
    /// they move and the picture is `bare`, with nothing over it, it goes to the window without a
    /// copy that could be painted from; who draws over it later gets one. Pixels to a unit when the
    /// plot was drawn, else 0.
    int paint(CDC& dc, const CRect& client, const CRect& update, int bare, const Drawing& draw);
    /// Draws into the copy where a part of the plot has changed; `draw` answers whether it could. 0
    /// when it could not, and when there is no copy of what the plot shows: all is to be drawn
    /// then.
    int patch(const std::function<int(CDC& dc)>& draw);
    /// How often the plot was drawn.
    int drawings() const { return drawings_; }
    /// The copy, of the size of the window; without pixels while there was none.
    const CBitmap& pixels() const { return pixels_; }

private:
    int drawn(int ratio);

    CBitmap pixels_;
    int stale_ = 1;
    int pictureStale_ = 1;  ///< pixels_ show something else
    int moving_ = 0;
    int drawings_ = 0;
};

}  // namespace pavane
