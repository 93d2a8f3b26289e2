// The ranges of the scales: those that hosts ask for, that windows show, that graphs have.
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/range_repair.h"

#include <cmath>
#include <optional>

namespace pavane
{

int A2DAxisMulti::showRange(int index, const TMnMx& range)
{
    if (index < 0 || index >= getScaleCount())
        return 0;
    const CurrentScale before(*this);
    setCurrentScale(index);
    TMinMax all = range_;
    all.yMin = range.min;
    all.yMax = range.max;
    setMinMax(all);
    layoutStands_ = 0;
    return 1;
}

TMnMx A2DAxisMulti::getAskedRange(int index) const
{
    return index < 0 || index >= getScaleCount() ? TMnMx()
           : index == 0                          ? zero_.asked
                        : scales_[static_cast<std::size_t>(index - 1)].asked;
}

void A2DAxisMulti::findRanges()
{
    sortGraphs();
    setUpParameters();
}

void A2DAxisMulti::resetRanges()
{
    setMinMax(TMinMax());
    park();
    for (int i = 0; i < getScaleCount(); ++i) {
        stored(i).spec.range = {};
        stored(i).logs = {};
    }
    layoutStands_ = 0;
}

void A2DAxisMulti::setUpLogMnMx(TMinMax& range)
{
    if (isOrdinary()) {
        A2DAxis::setUpLogMnMx(range);
        return;
    }
    const CurrentScale before(*this);
    for (int i = 0; i < getScaleCount(); ++i) {
        setCurrentScale(i);
        A2DAxis::setUpLogMnMx(range_);
    }
}

TMinMax& A2DAxisMulti::createMinMax()
{
    if (isOrdinary())
        return A2DAxis::createMinMax();
    const CurrentScale before(*this);
    std::vector<std::optional<TMinMax>> own(static_cast<std::size_t>(childs_.count()));
    /// Widens a pair that is not set, or not finite, by what the graphs of a scale have in it; -1
    /// for those of all. Then puts it in order, unless there is nothing in it.
    const auto complete = [&](double TMinMax::*min, double TMinMax::*max, bool isSet, int scale) {
        const TMinMax asked = range_;
        if (!isSet || !std::isfinite(asked.*min) || !std::isfinite(asked.*max)) {
            range_.*min = unsetMinimum;
            range_.*max = unsetMaximum;
            for (int i = 0; i < childs_.count(); ++i) {
                if (scale >= 0 && knownScaleOf(childs_(i)) != scale)
                    continue;
                std::optional<TMinMax>& data = own[static_cast<std::size_t>(i)];
                if (!data) {  // which may depend on the codes of its scale
                    const CurrentScale back(*this);
                    setCurrentScale(std::max(knownScaleOf(childs_(i)), 0));
                    childs_(i)->getMinMax(data.emplace());
                }
                if (isUnset((*data).*min, (*data).*max))
                    continue;
                widen(range_.*min, range_.*max, (*data).*min);
                widen(range_.*min, range_.*max, (*data).*max);
            }
            if (isSet)
                keepFiniteEnds(asked.*min, asked.*max, range_.*min, range_.*max);
        }
    };
    setCurrentScale(0);
    const bool isXSet = !(range_.xMin >= range_.xMax);
    complete(&TMinMax::xMin, &TMinMax::xMax, isXSet, -1);
    if (!isUnset(range_.xMin, range_.xMax))
        repairPair(range_.xMin, range_.xMax);
    complete(&TMinMax::zMin, &TMinMax::zMax, !isUnset(range_.zMin, range_.zMax), -1);
    repairPair(range_.zMin, range_.zMax);
    for (int i = 0; i < getScaleCount(); ++i) {
        setCurrentScale(i);
        complete(&TMinMax::yMin, &TMinMax::yMax, !isUnset(range_.yMin, range_.yMax), i);
        if (!isUnset(range_.yMin, range_.yMax))
            repairPair(range_.yMin, range_.yMax);
    }
    return range_;
}

}  // namespace pavane
