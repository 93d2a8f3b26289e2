#include "pavane/axes/multi/A2DAxisMulti.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

/// Panels have numbers up to this.
constexpr int mostPanels = 100000;
constexpr int mostColumns = 100;

AYScale cleaned(const AYScale& scale)
{
    AYScale clean = scale;
    clean.direct = scale.direct > 0 ? 1 : scale.direct < 0 ? -1 : 0;
    clean.panel = std::clamp(scale.panel, 0, mostPanels - 1);
    return clean;
}

/// Unset for what is no range.
TMnMx numbersOf(const TMnMx& range)
{
    return std::isnan(range.min) || std::isnan(range.max) ? TMnMx() : range;
}

}  // namespace

int A2DAxisMulti::GetAxisType() const { return 13; }

A2DAxisMulti::Scale& A2DAxisMulti::stored(int index)
{
    return index == 0 ? zero_ : scales_[static_cast<std::size_t>(index - 1)];
}

/// Puts what the axis has of the current scale where it is kept while another is current.
void A2DAxisMulti::park()
{
    Scale& scale = stored(reserved_);
    scale.spec.range = {range_.yMin, range_.yMax};
    scale.spec.direct = int{yDirect_};
    scale.logs = {logYMin_, logYMax_};
    scale.plot = graphRect_;
}

void A2DAxisMulti::unpark(int index)
{
    const Scale& scale = stored(index);
    reserved_ = index;
    range_.yMin = scale.spec.range.min;
    range_.yMax = scale.spec.range.max;
    yDirect_ = static_cast<signed char>(scale.spec.direct);
    logYMin_ = scale.logs.min;
    logYMax_ = scale.logs.max;
    graphRect_ = scale.plot;
    yPeriod_ = scale.spec.period;
}

int A2DAxisMulti::addScale(const AYScale& scale)
{
    scales_.push_back({cleaned(scale), {}, {}, numbersOf(scale.range), ++lastId_});
    layoutStands_ = 0;
    return static_cast<int>(scales_.size());
}

AYScale A2DAxisMulti::getScale(int index) const
{
    if (index < 0 || index >= getScaleCount())
        return {};
    AYScale scale = index == 0 ? zero_.spec : scales_[static_cast<std::size_t>(index - 1)].spec;
    if (index == 0) {
        scale.name = nameOY_;
        scale.nPlus = nypDigit_;
        scale.nMinus = nymDigit_;
        scale.intervals = yIntervals_;
    }
    if (index == reserved_) {
        scale.range = {range_.yMin, range_.yMax};
        scale.direct = int{yDirect_};
    }
    return scale;
}

int A2DAxisMulti::setScale(int index, const AYScale& scale)
{
    if (index < 0 || index >= getScaleCount())
        return 0;
    const int current = reserved_;
    park();
    stored(index).spec = cleaned(scale);
    stored(index).logs = {};
    stored(index).asked = numbersOf(scale.range);
    if (index == 0) {
        nameOY_ = scale.name;
        nypDigit_ = scale.nPlus;
        nymDigit_ = scale.nMinus;
        yIntervals_ = scale.intervals;
        isUsed_ = 1;
    }
    unpark(current);
    layoutStands_ = 0;
    return 1;
}

int A2DAxisMulti::getScaleId(int index) const
{
    return index < 0 || index >= getScaleCount() ? -1
           : index == 0                          ? 0
                                                 : scales_[static_cast<std::size_t>(index - 1)].id;
}

int A2DAxisMulti::deleteScale(int index)
{
    if (index < 1 || index >= getScaleCount())
        return 0;
    for (int i = 0; i < childs_.count(); ++i)
        if (getScaleOf(childs_(i)) == index)
            return 0;
    const int current = reserved_;
    park();
    scales_.erase(scales_.begin() + index - 1);
    for (auto& [graph, scale] : scaleOf_)
        scale -= scale > index ? 1 : 0;
    unpark(current == index ? 0 : current - (current > index ? 1 : 0));
    layout_ = {};  // which names scales by their indices
    panelOf_.clear();
    layoutStands_ = 0;
    return 1;
}

int A2DAxisMulti::indexOfGraph(const AGraph* graph) const
{
    for (int i = 0; graph && i < childs_.count(); ++i)
        if (childs_(i) == graph)
            return i;
    return -1;
}

int A2DAxisMulti::knownScaleOf(const AGraph* graph) const
{
    const auto found = scaleOf_.find(graph);
    return found == scaleOf_.end() ? 0 : found->second;
}

int A2DAxisMulti::getScaleOf(const AGraph* graph) const
{
    return indexOfGraph(graph) < 0 ? -1 : knownScaleOf(graph);
}

int A2DAxisMulti::setScaleOf(const AGraph* graph, int index)
{
    if (index < 0 || index >= getScaleCount() || indexOfGraph(graph) < 0)
        return 0;
    scaleOf_[graph] = index;
    layoutStands_ = 0;
    return 1;
}

int A2DAxisMulti::setCurrentScale(int index)
{
    if (index < 0 || index >= getScaleCount())
        return 0;
    if (index != reserved_) {
        park();
        unpark(index);
    }
    return 1;
}

void A2DAxisMulti::setPanels(int columns, int rowsOfPage, int panelsOfPage)
{
    ofPage_ = std::clamp(panelsOfPage, 0, mostPanels);
    columns_ = std::clamp(columns, 1, mostColumns);
    rows_ = std::clamp(rowsOfPage, 0, mostPanels);
    isUsed_ = isUsed_ || columns_ > 1;
    layoutStands_ = 0;
}

int A2DAxisMulti::getPanelCount() const
{
    int last = zero_.spec.panel;
    for (const Scale& scale : scales_)
        last = std::max(last, scale.spec.panel);
    return last + 1;
}

void A2DAxisMulti::setPanelGap(double fontHeights)
{
    gap_ = fontHeights > 0 ? fontHeights : 0;
    layoutStands_ = 0;
}

void A2DAxisMulti::setPanelCaption(int panel, const CString& caption)
{
    if (caption.empty())
        captions_.erase(panel);
    else
        captions_[panel] = caption;
    layoutStands_ = 0;
}

CString A2DAxisMulti::getPanelCaption(int panel) const
{
    const auto found = captions_.find(panel);
    return found == captions_.end() ? CString() : found->second;
}

int A2DAxisMulti::getPages() const
{
    if (rows_ == 0)
        return 1;
    const long long room = 1LL * columns_ * rows_;
    const long long most = ofPage_ > 0 ? std::min<long long>(ofPage_, room) : room;
    return static_cast<int>((getPanelCount() + most - 1) / most);
}

void A2DAxisMulti::setPage(int page)
{
    page_ = std::max(page, 0);
    layoutStands_ = 0;
}

int A2DAxisMulti::getPage() const { return std::min(page_, getPages() - 1); }

void A2DAxisMulti::setLegend(int corner)
{
    legend_ = corner >= legendEmptiest && corner <= legendAbove ? corner : legendNone;
    layoutStands_ = 0;
}

void A2DAxisMulti::setWholeX(int on)
{
    isXWhole_ = on != 0;
    isUsed_ = isUsed_ || isXWhole_;
    layoutStands_ = 0;
}

CRect A2DAxisMulti::getPanelRect(int panel) const
{
    const MultiLayout::Panel* const found = layout_.findPanel(panel);
    return found ? found->plot : CRect();
}

CRect A2DAxisMulti::getScaleRect(int scale) const
{
    const MultiLayout::YAxis* const found = layout_.findAxis(scale);
    return found ? found->rect : CRect();
}

int A2DAxisMulti::RPYtoGPY(int scale, double y) const
{
    const AYScale spec = getScale(scale);
    const CRect plot = getPanelRect(spec.panel);
    return DirectionMap{spec.direct, spec.range}.yPixel(y, plot.top, plot.bottom);
}

double A2DAxisMulti::GPYtoRPY(int scale, int gy) const
{
    const AYScale spec = getScale(scale);
    const CRect plot = getPanelRect(spec.panel);
    return DirectionMap{spec.direct, spec.range}.yValue(gy, plot.top, plot.bottom);
}

int A2DAxisMulti::addChild(AGraph* graph)
{
    scaleOf_.erase(graph);  // of one that lay there before
    layoutStands_ = 0;
    return A2DAxis::addChild(graph);
}

int A2DAxisMulti::addChildItem(AGraph* graph)
{
    const int index = addChild(graph);
    scaleOf_[graph] = -1;
    return index;
}

int A2DAxisMulti::deleteGraph(AGraph* graph)
{
    const int index = indexOfGraph(graph);
    if (index < 0)
        return 0;
    scaleOf_.erase(graph);
    changed_.clear();
    layoutStands_ = 0;
    childs_.DeleteItems(index, 1);
    return 1;
}

int A2DAxisMulti::isOrdinary() const
{
    return !isUsed_ && scales_.empty() && captions_.empty() && legend_ == legendNone;
}

/// Finds the scales of graphs that registered as items.
void A2DAxisMulti::sortGraphs()
{
    for (int i = 0; i < childs_.count(); ++i) {
        const auto found = scaleOf_.find(childs_(i));
        if (found == scaleOf_.end() || found->second >= 0)
            continue;
        CString name;
        childs_(i)->getOY(name);
        int index = 0;
        while (index < getScaleCount() && (name.empty() || name != getScale(index).name))
            ++index;
        if (index == getScaleCount()) {
            AYScale scale;
            scale.name = name;
            addScale(scale);
        }
        found->second = index;
    }
}

std::vector<int> A2DAxisMulti::scalesOfGraphs() const
{
    std::vector<int> scales;
    scales.reserve(static_cast<std::size_t>(childs_.count()));
    for (int i = 0; i < childs_.count(); ++i)
        scales.push_back(knownScaleOf(childs_(i)));
    return scales;
}

}  // namespace pavane
