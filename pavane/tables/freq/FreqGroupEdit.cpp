#include "pavane/tables/freq/FreqGroupEdit.h"

#include <algorithm>

namespace pavane
{

void FreqGroupEdit::SetParameters(AFreqGroupArray* groups)
{
    groups_ = groups;
    marked_ = ABitArray(ifCount());
    grouped_ = ABitArray(ifCount());
    for (int i = 0; i < ifCount(); ++i)
        grouped_.set(i, GetGroupNumber(i) >= 0);
}

void FreqGroupEdit::SetMarked(const ABitArray& marked)
{
    for (int i = 0; i < marked_.count(); ++i)
        marked_.set(i, marked.get(i));
}

int FreqGroupEdit::GetGroupNumber(int ifIndex) const
{
    for (int g = 0; groups_ && g < groups_->count(); ++g)
        if ((*groups_)(g).get(ifIndex))
            return g;
    return -1;
}

int FreqGroupEdit::GetInsertIndex(const ABitArray& bits) const
{
    const int count = groups_ ? groups_->count() : 0;
    for (int g = 0; g < count; ++g)
        if (std::max((*groups_)(g).firstOne(), 0) > bits.firstOne())
            return g;
    return count;
}

int FreqGroupEdit::AddFreqGroup(int& place, Fault& fault)
{
    fault = Fault::none;
    const int first = marked_.firstOne();
    if (!groups_ || first < 0)
        return -1;
    if (lastOne(marked_) - first + 1 != marked_.ones()) {
        fault = Fault::notNeighbours;
        return -1;
    }
    place = groups_->InsertAt(GetInsertIndex(marked_), marked_);
    for (int i = 0; i < marked_.count(); ++i)
        if (marked_.get(i))
            grouped_.set(i);
    marked_.setAll(0);
    return groups_->count() - 1;
}

int FreqGroupEdit::DeleteFreqGroup(int group)
{
    if (!groups_ || group < 0 || group >= groups_->count())
        return 0;
    const ABitArray bits = (*groups_)(group);
    (void)groups_->DeleteItems(group, 1);
    for (int i = 0; i < bits.count(); ++i) {
        if (!bits.get(i))
            continue;
        grouped_.set(i, GetGroupNumber(i) >= 0);
        marked_.set(i - 1, 0);
    }
    return 1;
}

void FreqGroupEdit::dropAll()
{
    if (groups_)
        (void)groups_->DeleteItems(0, groups_->count());
    grouped_.setAll(0);
}

void FreqGroupEdit::DeleteAllFreqGroup() { dropAll(); }

int FreqGroupEdit::AllInOne()
{
    if (ifCount() < 2)
        return 0;
    FixedStep(ifCount());
    return 1;
}

void FreqGroupEdit::FixedStep(int step)
{
    const int ifs = ifCount();
    step = std::clamp(step, 1, std::max(ifs, 1));
    dropAll();
    for (int first = 0; first < ifs; first += step) {
        ABitArray group(ifs);
        for (int i = first; i < std::min(first + step, ifs); ++i)
            group.set(i);
        (void)groups_->Add(group);
    }
    grouped_.setAll(1);
    marked_.setAll(0);
}

}  // namespace pavane
