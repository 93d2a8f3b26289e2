// Where a box stands in its picture, and what is written around it.
#include "pavane/axes/axis_titles.h"
#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/BoxDrawing.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/maps/scale_ticks.h"
#include "pavane/axes/page_layout.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

/// A box needs so many pixels.
constexpr int leastRoom = 8;
/// How often the box is made smaller until its labels fit.
constexpr int fittingRounds = 10;

std::vector<CPointF> cornersOf(const BoxView& view)
{
    std::vector<CPointF> corners;
    for (const double p : {-0.5, 0.5})
        for (const double q : {-0.5, 0.5})
            for (const double s : {-0.5, 0.5})
                corners.push_back(view.project({p, q, s}));
    return corners;
}

BoxPoint along(const BoxEdge& edge, double place)
{
    return {edge.from.p + (edge.to.p - edge.from.p) * place,
            edge.from.q + (edge.to.q - edge.from.q) * place,
            edge.from.s + (edge.to.s - edge.from.s) * place};
}

int rounded(double v) { return truncated(std::floor(v + 0.5)); }

/// The rectangle about the box, as graph rectangles are, inside `picture`.
CRect rectAbout(const BoxView& view, const CRect& picture)
{
    double left = HUGE_VAL, top = HUGE_VAL, right = -HUGE_VAL, bottom = -HUGE_VAL;
    for (const CPointF& corner : cornersOf(view)) {
        left = std::min(left, corner.x);
        right = std::max(right, corner.x);
        top = std::min(top, corner.y);
        bottom = std::max(bottom, corner.y);
    }
    const auto cut = [](double v, int low, int high) {
        return std::clamp(rounded(v), low, std::max(low, high));
    };
    return {cut(std::floor(left), picture.left, picture.right - 1),
            cut(std::floor(top), picture.top, picture.bottom - 1),
            cut(std::ceil(right), picture.left, picture.right - 1),
            cut(std::ceil(bottom), picture.top, picture.bottom - 1)};
}

}  // namespace

/// Ticks of a direction: 0 x, 1 y, then the Z axes.
TickSet A2_3DAxis::ticksOf(int direction, int intervals) const
{
    TickWish wish;
    wish.intervals = intervals;
    wish.minor = !isFlagSet(axisNoMinorTicks);
    if (direction < 2) {
        const bool isX = direction == 0;
        const int direct = int{isX ? xDirect_ : yDirect_};
        wish.name = shownName(direction);
        wish.range = isX ? TMnMx{range_.xMin, range_.xMax} : TMnMx{range_.yMin, range_.yMax};
        wish.nPlus = isX ? nxpDigit_ : nypDigit_;
        wish.nMinus = isX ? nxmDigit_ : nymDigit_;
        if (isX && direct == 2)
            return timeTicks(wish);
        return direct == 0 ? logarithmicTicks(wish) : linearTicks(wish);
    }
    const BoxZ z = zAxis(direction - 2);
    for (const BoxSurface& surface : drawing_->surfaces)
        if (surface.graph && surface.z == direction - 2 &&
            surface.scale.kind() != MapScaleKind::linear) {
            const ScaleTicks ticks = scaleTicks(surface.scale, z.name, intervals);
            TickSet set;
            set.title = ticks.title;
            for (const ScaleTick& tick : ticks.ticks)
                set.major.push_back({tick.value, tick.label});
            return set;
        }
    wish.name = z.name;
    wish.range = z.range;
    wish.nPlus = z.nPlus;
    wish.nMinus = z.nMinus;
    return linearTicks(wish);
}

/// Chooses ticks and places all texts for the view as it is.
void A2_3DAxis::placeLabels(BoxLayout& layout, BoxLabels& labels) const
{
    const BoxEdges edges = view_.edges();
    std::vector<LabelledEdge> labelled;
    std::vector<int> directions;
    const auto add = [&](int direction, const BoxEdge& edge, int intervals) {
        LabelledEdge side;
        side.from = view_.project(edge.from);
        side.to = view_.project(edge.to);
        side.upright = direction >= 2;
        side.intervals = intervals;
        side.ticks = [this, direction](int n) { return ticksOf(direction, n); };
        side.place = [this, direction](double value) {
            return direction < 2 ? placeOf(direction, value) : heightPlace(direction - 2, value);
        };
        labelled.push_back(side);
        directions.push_back(direction);
    };
    for (int i = 0; i < zCount(); ++i) {
        const BoxZ z = zAxis(i);
        const BoxEdge& edge = i == 0 ? edges.z : edges.z2;
        add(2 + i, {along(edge, z.floor + 0.5), along(edge, z.top + 0.5)}, z.intervals);
    }
    if (!isFlagSet(axisNoXLabels))
        add(0, edges.x, xIntervals_);
    if (!isFlagSet(axisNoYLabels))
        add(1, edges.y, yIntervals_);
    labels.place(labelled);
    for (std::size_t i = 0; i < directions.size(); ++i)
        layout.sets[static_cast<std::size_t>(directions[i])] = labels.sets()[i];
    if (isFlagSet(axisNoXLabels))
        layout.sets[0] = ticksOf(0, xIntervals_);
    if (isFlagSet(axisNoYLabels))
        layout.sets[1] = ticksOf(1, yIntervals_);
}

/// In pixels: the header, then the largest box whose labels stay in the picture. The box of a zoom
/// is that of the whole, zoomed.
int A2_3DAxis::compose(CDC& dc, const CRect& rect, BoxLayout& layout)
{
    layout.picture = rect;
    fHeight_ = std::max(1, calcFontHeight(dc, layout.picture));
    layout.header = getHeaderString(0);
    const int air = std::max(1, fHeight_ / 4);
    CRect room = rect;
    room.DeflateRect(air, air);
    if (!layout.header.empty()) {
        CFont bold;
        CreateAxisFont(bold, fHeight_, 1, 0.0);
        const SelectedObject<CFont> header(dc, bold);
        layout.header = fittedLines(dc, layout.header, rect.Width(), rect.Height() / 3);
        CRect text(rect.left, rect.top, rect.right, rect.top);
        dc.DrawText(layout.header, text, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX | DT_CALCRECT);
        layout.headerHeight = text.Height();
        layout.headerTop = rect.top + air;
        room.top += layout.headerHeight + air;
    }
    CFont font;
    if (!CreateAxisFont(font, fHeight_, 0, 0.0))
        return 0;
    const SelectedObject<CFont> selected(dc, font);
    const auto measure = [&dc](const CString& text) { return dc.GetTextExtent(text); };
    const auto cut = [&dc](const CString& text, int width) { return fittedLine(dc, text, width); };
    layout.room = room;
    if (borderRect_.left != -1)
        layout.room.left = std::max(room.left, borderRect_.left);
    if (borderRect_.top != -1)
        layout.room.top = std::max(room.top, borderRect_.top);
    if (borderRect_.right != -1)
        layout.room.right = std::min(room.right, rect.right - borderRect_.right);
    if (borderRect_.bottom != -1)
        layout.room.bottom = std::min(room.bottom, rect.bottom - borderRect_.bottom);
    const BoxView shown = view_;
    view_.setZoom(1);
    view_.setPan(0, 0);
    for (int i = 0; i < fittingRounds; ++i) {
        if (layout.room.Width() < leastRoom || layout.room.Height() < leastRoom)
            break;
        view_.fit(layout.room);
        BoxLabels labels(cornersOf(view_), room, fHeight_, measure, cut);
        placeLabels(layout, labels);
        const BoxLabels::Overflow over = labels.overflow();
        if (over.left <= 0 && over.top <= 0 && over.right <= 0 && over.bottom <= 0)
            break;
        layout.room.left += rounded(std::ceil(std::max(0.0, over.left)));
        layout.room.top += rounded(std::ceil(std::max(0.0, over.top)));
        layout.room.right -= rounded(std::ceil(std::max(0.0, over.right)));
        layout.room.bottom -= rounded(std::ceil(std::max(0.0, over.bottom)));
    }
    view_ = shown;
    if (layout.room.Width() < leastRoom || layout.room.Height() < leastRoom)
        return 0;
    view_.fit(layout.room);
    BoxLabels labels(cornersOf(view_), room, fHeight_, measure, cut);
    placeLabels(layout, labels);
    labels.dropOutside(rect);
    layout.texts = labels.texts();
    layout.ticks = labels.ticks();
    return 1;
}

/// A page is laid out as a picture of its size and then made finer, as plots are.
int A2_3DAxis::composeOnPage(CDC& dc, const CRect& rect, BoxLayout& layout)
{
    const int hasRoom =
        layOutOnPage(dc, rect, borderRect_, fHeight_, [&](CDC& ruler, const CRect& pixels) {
            return compose(ruler, pixels, layout);
        });
    const FigureUnits units(dc);
    layout.picture = rect;
    layout.headerTop = rect.top + units.units(layout.headerTop);
    layout.headerHeight = units.units(layout.headerHeight);
    const double finer = units.perPixel();
    const auto onPage = [&](CPointF& at) {
        at = {rect.left + at.x * finer, rect.top + at.y * finer};
    };
    for (BoxText& text : layout.texts) {
        onPage(text.centre);
        text.width *= finer;
        text.height *= finer;
    }
    for (BoxTick& tick : layout.ticks) {
        onPage(tick.from);
        onPage(tick.to);
    }
    // in whole steps of its image, so that image and lines agree
    const int step = imageUnits(dc);
    const auto whole = [step](double length) { return std::max(1, rounded(length / step)) * step; };
    const CRect room = layout.room;
    layout.room.left = rect.left + rounded(room.left * finer);
    layout.room.top = rect.top + rounded(room.top * finer);
    layout.room.right = layout.room.left + whole(room.Width() * finer);
    layout.room.bottom = layout.room.top + whole(room.Height() * finer);
    if (hasRoom)
        view_.fit(layout.room);
    return hasRoom;
}

int A2_3DAxis::composeLayout(CDC& dc, const CRect& rect, BoxLayout& layout)
{
    dc_ = &dc;
    setUpParameters();
    drawing_->z = {zAxis(0), zAxis(zCount() - 1)};
    findSurfaces();
    const int hasRoom =
        FigureUnits(dc).arePixels() ? compose(dc, rect, layout) : composeOnPage(dc, rect, layout);
    graphRect_ = hasRoom ? rectAbout(view_, rect) : CRect();
    drawing_->picture = hasRoom ? rect : CRect();
    drawing_->lines.reset();
    if (hasRoom)
        prepareScene(dc);
    return hasRoom && graphRect_.right > graphRect_.left && graphRect_.bottom > graphRect_.top;
}

int A2_3DAxis::layOut(CDC& dc, const CRect& rect)
{
    CDC* const before = dc_;
    BoxLayout layout;
    const int result = composeLayout(dc, rect, layout);
    dc_ = before;
    return result;
}

}  // namespace pavane
