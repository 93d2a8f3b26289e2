#include "tessel/uvfits/UvChoice.h"

namespace pavane
{

namespace
{

constexpr std::size_t mostBaselines = 1 << 22;

int isWhole(const ABitArray& marks) { return marks.ones() == marks.count(); }

}  // namespace

UvChoice::UvChoice(const AUVXFile& f, const UvMarks& m)
    : file_(f), marks_(m), allTelescopes_(isWhole(m.telescopes)), allSources_(isWhole(m.sources)),
      allScans_(isWhole(m.scans)), pairs_(mostBaselines), newPair_(isWhole(m.baselines))
{
    const UvHeader& header = f.header();
    for (int s = 0; s < static_cast<int>(header.stokes.size()); ++s)
        stokes_.push_back(m.stokes.count() ? m.stokes.get(s) : 1);
    frequencies_.resize(f.fqTbl().selections().size());
    for (std::size_t i = 0; i < m.baselineTable.size(); ++i) {
        const UvBaseline& b = m.baselineTable[i];
        const UvPair pair = {b.subarray, b.first, b.second};
        const int isMarked = newPair_ || m.baselines.get(static_cast<int>(i));
        (void)pairs_.of(pair, takesPair(pair, isMarked));
    }
}

void UvChoice::makeFrequencies(std::size_t selection)
{
    const AUVXFqTbl& table = file_.fqTbl();
    int row = 0;
    for (std::size_t i = 0; i < selection; ++i)
        row += static_cast<int>(table.selections()[i].ifs.size());
    const auto ifs = static_cast<int>(table.selections()[selection].ifs.size());
    const int isAll = isWhole(marks_.frequencies);
    std::vector<double>& hertz = frequencies_[selection];
    for (int k = 0; k < file_.header().ifs; ++k)
        for (int c = 0; c < file_.header().channels; ++c) {
            const int isMarked = k < ifs && (isAll || marks_.frequencies.get(row + k));
            hertz.push_back(isMarked ? table.frequency(static_cast<int>(selection), k, c) : 0);
        }
}

int UvChoice::takesPair(const UvPair& pair, int isMarked) const
{
    if (!isMarked || allTelescopes_)
        return isMarked;
    for (const int number : {pair.first, pair.second}) {
        const AUVXTlscItem* const item = file_.telescope(pair.subarray, number);
        if (!item || !marks_.telescopes.get(static_cast<int>(item - file_.telescopes().data())))
            return 0;
    }
    return 1;
}

const double* UvChoice::frequenciesOf(const UvGroups& groups, std::size_t i)
{
    const UvPair pair = {groups.subarray[i], groups.antenna1[i], groups.antenna2[i]};
    const int fresh = takesPair(pair, newPair_);
    const int* const taken = pairs_.of(pair, fresh);
    const int selection = file_.fqTbl().selectionOf(groups.selection[i]);
    if (!(taken ? *taken : fresh) || selection < 0)
        return nullptr;
    if (!allSources_) {
        const UvSource* const source = file_.source(groups.source[i]);
        if (!source || !marks_.sources.get(static_cast<int>(source - file_.sources().data())))
            return nullptr;
    }
    if (!allScans_ && !marks_.scans.get(scanOf(marks_.scanTable, pair.subarray, groups.source[i],
                                               groups.selection[i], groups.time[i],
                                               groups.first + static_cast<std::int64_t>(i) + 1)))
        return nullptr;
    const auto at = static_cast<std::size_t>(selection);
    if (frequencies_[at].empty())
        makeFrequencies(at);
    return frequencies_[at].data();
}

}  // namespace pavane
