#pragma once

#include "pavane/axes/TickSet.h"
#include "platform/geometry.h"

#include <functional>
#include <vector>

namespace pavane
{

/// An edge of a box that carries ticks, labels and a title, in device units.
struct LabelledEdge {
    CPointF from, to;  ///< the ends of the span, places 0 and 1
    int upright = 0;   ///< of a Z axis, whose title runs upwards
    int intervals = 5;
    std::function<TickSet(int intervals)> ticks;  ///< about as many
    std::function<double(double value)> place;    ///< of a tick between the ends, 0 to 1
};

/// A text beside a box. Upright, or turned to run upwards.
struct BoxText {
    CString text;
    CPointF centre;
    double width = 0;  ///< as it is drawn: of a turned text its height
    double height = 0;
    int turned = 0;
    int isTitle = 0;
};

/// A tick mark.
struct BoxTick {
    CPointF from, to;
};

/// What stands around a box: the ticks, labels and titles of its edges, each on the outer side of
/// its edge, so that none lies on what is in the box. No text touches another: where labels are too
/// many there are fewer ticks, and what would still touch is left out. A title goes where it is
/// free, as near to the middle of its edge as it can.
class PAVANE_API BoxLabels
{
public:
    /// Width and height of a line of text in the label font.
    using Measure = std::function<CSize(const CString& text)>;
    /// `text` cut to a width.
    using Cut = std::function<CString(const CString& text, int width)>;

    /// `corners` are those of the box as it is seen, in any order; `picture` is where texts may
    /// stand.
    BoxLabels(const std::vector<CPointF>& corners, const CRect& picture, int fHeight,
              const Measure& measure, const Cut& cut);
    /// Places the edges: all labels in the order given, then the titles.
    void place(const std::vector<LabelledEdge>& edges);
    /// Leaves out what does not lie wholly in a rectangle.
    void dropOutside(const CRect& rect);

    const std::vector<BoxText>& texts() const { return texts_; }
    const std::vector<BoxTick>& ticks() const { return ticks_; }
    /// The ticks of each edge, for the grid; without any for an edge too short to be labelled.
    const std::vector<TickSet>& sets() const { return sets_; }
    /// How far texts, ticks and box reach beyond the picture at each side, 0 or less where they do
    /// not.
    struct Overflow {
        double left = 0, top = 0, right = 0, bottom = 0;
    };
    Overflow overflow() const;

private:
    struct Side;
    Side sideOf(const LabelledEdge& edge) const;
    BoxText labelAt(const LabelledEdge& edge, const Side& side, const TickSet::Tick& tick) const;
    void placeTicks(const LabelledEdge& edge);
    void placeTitle(const LabelledEdge& edge, const TickSet& set);
    bool isFree(const BoxText& text, double gap) const;
    bool liesOnBox(const BoxText& text) const;
    static Overflow beyond(const CRect& rect, const BoxText& text);

    std::vector<CPointF> hull_;  ///< of the corners, in the order of its border
    CPointF middle_;
    CRect picture_;
    int fHeight_;
    Measure measure_;
    Cut cut_;
    std::vector<BoxText> texts_;
    std::vector<BoxTick> ticks_;
    std::vector<TickSet> sets_;
};

}  // namespace pavane
