#pragma once

#include "pavane/trackers/collections/AreaFocus.h"
#include "pavane/trackers/collections/AreaTrackers.h"
#include "pavane/trackers/shapes/BoxIndex.h"

namespace pavane
{

class AreaEdits;

/// What a drawing shows beside the areas themselves.
struct EyeState {
    const AreaEdits& chosen;  ///< the current area and the selection
    const AreaFocus& focus;
    ATracker* drawn;  ///< a new shape while it is drawn, null for none
    int dragging;     ///< a drag runs
    int crowd;        ///< with areas whose boxes are not worth making for each move
};

/// How the areas of a collection look and which of them lies where: their boxes, the one under a
/// point, what is drawn and what has to be repainted. It changes no area.
class AreaEye
{
public:
    AreaEye(AreaTrackers trackers, const PressOptions& options)
        : trackers_(trackers), options_(options)
    {
    }

    // Boxes
    /// The topmost area whose HitTest(p) is not negative, -1 for none.
    int topmostAt(CPoint p, CWnd* window);
    /// Shapes, items or what pixels stand for have changed: boxes are made anew when needed.
    void forget() { known_ = 0; }
    void boxChanged(int i);
    /// There is a new area i.
    void inserted(int i);

    // The line from the last vertex of the open polygon to the pointer
    /// Where it begins; 0 without such a polygon.
    int hoverFrom(CPoint& from) const;
    /// The pointer is at p, where a press would add a vertex or (`on` 0) would not.
    void hoverAt(CWnd& window, CPoint p, int on);
    void endHover() { hovering_ = 0; }
    /// Whether a press at `p` closes the open polygon, and where its first vertex is.
    int closesAt(CPoint p, CPoint* vertex = nullptr) const;

    // The focus
    /// Where the handle or area with the focus (its centre) is; 0 without one.
    int focusPoint(const AreaFocus& focus, CPoint& p) const;
    /// For a focus that comes or goes by itself.
    void invalidateFocus(CWnd* window, const AreaFocus& focus) const;

    /// Draws the areas that the clip box of `dc` meets in index order, then the open polygon, the
    /// shape that is being drawn, and the focus.
    void draw(CDC& dc, CWnd* window, int tool, const EyeState& state);

private:
    int knowBoxes();
    int itemsIn(const ARect<double>& rect, int all, Pile<int>& found);
    int drawingClip(CWnd* window, ATracker& tracker, CRect& clip) const;
    void drawItems(CDC& dc, CWnd* window, const Pile<int>& found, const AreaEdits& chosen,
                   OutlineLook look) const;
    static void drawItem(CDC& dc, CWnd* window, ATracker& tracker, const OutlineLook& look);
    void drawFocus(CDC& dc, const AreaFocus& focus, const OutlineLook& look) const;
    void drawHover(CDC& dc, const OutlineLook& look) const;

    AreaTrackers trackers_;
    const PressOptions& options_;
    BoxIndex boxes_;
    int known_ = 0;
    CPoint hover_;
    int hovering_ = 0;
};

}  // namespace pavane
