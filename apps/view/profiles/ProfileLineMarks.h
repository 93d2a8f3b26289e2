#pragma once

#include "apps/view/MapWindow.h"
#include "pavane/axes/maps/MapFrame.h"
#include "pavane/measures/profiles/MapProfile.h"

#include <functional>

namespace pavane
{

/// The line of a profile over its map, with a handle at each corner. A drag of a handle moves its
/// corner, one of the line all of it.
class ProfileLineMarks : public MapLine
{
public:
    /// Of the map that is shown; null for none. Not owned.
    void SetFrame(const MapFrame* frame) { frame_ = frame; }
    /// In cells from 0.
    const ProfileLine& line() const { return line_; }
    void SetLine(const ProfileLine& line) { line_ = line; }
    void Show(int on) { isShown_ = on; }
    /// Where the map is pointed at along the line; a line without corners for nowhere.
    void SetPointed(const MapPlace& place, int isKnown)
    {
        pointed_ = place;
        isPointed_ = isKnown;
    }
    /// Called at each move of a drag, and when one was taken back.
    std::function<void()> moved;

    int isShown() const override { return isShown_ && frame_ && line_.corners.size() > 1; }
    void drawOver(CDC& dc, const ABAxis& axis, const CRect* update) override;
    int beginDrag(const ABAxis& axis, CPoint point) override;
    void dragTo(const ABAxis& axis, CPoint point) override;
    void endDrag(int keep) override;

private:
    CPointF pixelOf(const ABAxis& axis, const MapPlace& cell) const;
    MapPlace cellAt(const ABAxis& axis, CPoint point) const;

    const MapFrame* frame_ = nullptr;
    ProfileLine line_;
    ProfileLine before_;  ///< a drag
    MapPlace from_;       ///< where the drag began
    int handle_ = -1;     ///< the corner that is dragged; -1: all of them
    int isShown_ = 0;
    MapPlace pointed_;
    int isPointed_ = 0;
};

}  // namespace pavane
