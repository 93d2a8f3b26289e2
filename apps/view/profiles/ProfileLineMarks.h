#pragma once

#include "apps/view/MapWindow.h"
#include "apps/view/profiles/LineEdits.h"
#include "pavane/axes/maps/MapFrame.h"

#include <functional>

namespace pavane
{

/// The line of a profile over its map, with a handle at each corner. A drag of a handle moves its
/// corner, one of the line all of it. What was pressed last has the focus: arrows move it too, and
/// undo is that of the line, until a press beside it or Escape.
class ProfileLineMarks : public MapLine
{
public:
    /// Of the map that is shown; null for none. Not owned.
    void SetFrame(const MapFrame* frame) { frame_ = frame; }
    /// In cells from 0.
    const ProfileLine& line() const { return edits_.line(); }
    void SetLine(const ProfileLine& line) { edits_.begin(line); }
    LineEdits& edits() { return edits_; }
    const LineEdits& edits() const { return edits_; }
    void Show(int on)
    {
        isShown_ = on;
        edits_.setFocus(-1);
    }
    /// Whether keys and undo are its.
    int hasFocus() const { return isShown() && edits_.focus() >= 0; }
    /// Where the map is pointed at along the line; a line without corners for nowhere.
    void SetPointed(const MapPlace& place, int isKnown)
    {
        pointed_ = place;
        isPointed_ = isKnown;
    }
    /// Called at each move of a drag, and when one was taken back.
    std::function<void()> moved;

    int isShown() const override { return isShown_ && frame_ && line().corners.size() > 1; }
    void drawOver(CDC& dc, const ABAxis& axis, const CRect* update) override;
    int beginDrag(const ABAxis& axis, CPoint point) override;
    void dragTo(const ABAxis& axis, CPoint point) override;
    void endDrag(int keep) override;
    int takeKey(const ABAxis& axis, int key, bool shift, bool control) override;

private:
    CPointF pixelOf(const ABAxis& axis, const MapPlace& cell) const;
    MapPlace cellAt(const ABAxis& axis, CPoint point) const;

    const MapFrame* frame_ = nullptr;
    LineEdits edits_;
    ProfileLine before_;   ///< a drag
    MapPlace from_;        ///< where the drag began
    double lastKey_ = -1;  ///< seconds
    int isShown_ = 0;
    MapPlace pointed_;
    int isPointed_ = 0;
};

}  // namespace pavane
