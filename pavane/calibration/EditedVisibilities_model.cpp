// The visibilities of a model beside those of the data.
#include "pavane/calibration/EditedVisibilities.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

/// Beyond so many components times places a plot would wait for its model.
constexpr double mostModelTerms = 1e9;
/// Of a model beyond so many turns of error by the flat sky a plot would show another one.
constexpr double mostTurns = 0.01;
constexpr double megaTerms = 1e6;
/// Days; times of a file that another program has written are other sums.
constexpr double leastSlack = 2e-3 / 86400;

}  // namespace

void EditedVisibilities::setModel(const AComponents& model)
{
    model_ = model.count() > 0 ? std::make_unique<ModelVisibilities>(model) : nullptr;
    modelFile_ = nullptr;
    if (isReading_)
        return;
    beginModel();
    tell();
}

void EditedVisibilities::setModelFile(AUVXFile* file)
{
    model_.reset();
    modelFile_ = file;
    if (isReading_)
        return;
    beginModel();
    tell();
}

void EditedVisibilities::beginModel()
{
    modelCells_.clear();
    modelSlices_.reset();
    modelFault_.clear();
    modelRow_ = 0;
    if ((!model_ && !modelFile_) || rows_.empty())
        return;
    if (model_)
        modelFault_ = whyNotAdded();
    if (!modelFault_.empty())
        return;
    try {
        modelCells_.resize(data_.size());
        if (modelFile_)
            modelSlices_ = std::make_unique<UvSlices>(*modelFile_);
    } catch (const std::bad_alloc&) {
        modelCells_.clear();
        modelFault_ = "needs more memory than there is";
    }
}

/// A clause about the model; "" when its components can be added up.
std::string EditedVisibilities::whyNotAdded() const
{
    const double places = static_cast<double>(data_.size());
    double greatest = 0;
    for (const std::vector<double>& middles : hertz_)
        for (const double hertz : middles)
            greatest = std::max(greatest, hertz);
    if (static_cast<double>(model_->count()) * places > mostModelTerms)
        return "has " + std::to_string(model_->count()) + " components, too many for " +
               std::to_string(std::llround(places / megaTerms)) + " million visibilities";
    if (model_->wTurns(greatestW_ * greatest) > mostTurns)
        return "reaches too far from the centre for its visibilities to be added up";
    return {};
}

void EditedVisibilities::modelSome(std::int64_t bytes, std::size_t rows)
{
    if (modelSlices_) {
        constexpr int what = UvGroups::times | UvGroups::baselines | UvGroups::cellValues;
        const int goesOn = modelSlices_->step(bytes, what, [this](const UvGroups& groups) {
            for (int i = 0; i < groups.count; ++i)
                takeModel(groups, i);
        });
        if (goesOn)
            return;
        if (!modelSlices_->error().empty()) {
            modelFault_ = modelSlices_->error();
            modelCells_.clear();
        }
        modelSlices_.reset();
        modelRow_ = rows_.size();
        return;
    }
    const std::size_t parts = cells_.parts.size();
    // adding up takes longer than flags do
    const std::size_t some =
        std::max<std::size_t>(rows / std::max<std::size_t>(model_->count(), 1), 1);
    const std::size_t end = std::min(rows_.size(), modelRow_ + some);
    std::vector<double> u(parts), v(parts);
    std::vector<std::complex<double>> values(parts);
    for (; modelRow_ < end; ++modelRow_) {
        const Row& row = rows_[modelRow_];
        const std::vector<double>& hertz = hertz_[static_cast<std::size_t>(row.selection)];
        for (std::size_t p = 0; p < parts; ++p) {
            u[p] = row.u * hertz[p];
            v[p] = row.v * hertz[p];
        }
        model_->at(u.data(), v.data(), parts, values.data());
        for (std::size_t p = 0; p < parts; ++p)
            modelCells_[at(modelRow_, p)] = std::complex<float>(values[p]);
    }
}

/// The row of a baseline nearest to a time; -1 when none is near.
std::ptrdiff_t EditedVisibilities::rowAt(const std::vector<int>& baseline, double time) const
{
    const auto known = indices_.find(baseline);
    if (known == indices_.end())
        return -1;
    const std::vector<std::uint32_t>& rows = byTime_[static_cast<std::size_t>(known->second)];
    const auto after =
        std::lower_bound(rows.begin(), rows.end(), time, [this](std::uint32_t row, double value) {
            return rows_[row].time < value;
        });
    std::ptrdiff_t nearest = -1;
    double least = std::max(leastSlack, integration_ / 4);
    for (auto row = after == rows.begin() ? after : after - 1; row != rows.end() && row <= after;
         ++row)
        if (const double off = std::abs(rows_[*row].time - time); off <= least) {
            least = off;
            nearest = static_cast<std::ptrdiff_t>(*row);
        }
    return nearest;
}

/// Whether an IF or hand of the model's file is one of a part.
int EditedVisibilities::isOfPart(const UvCells::Part& part, int modelIf, int modelStokes) const
{
    const UvHeader& header = file_->header();
    const auto isHand = [&](int s) {
        return choice_->takesStokes(s) &&
               header.stokes[static_cast<std::size_t>(s)] ==
                   modelFile_->header().stokes[static_cast<std::size_t>(modelStokes)];
    };
    const double hertz = modelFile_->fqTbl().frequency(0, modelIf, 0);
    const double slack = std::abs(header.channelWidth) / 4 + 1;
    const auto isIf = [&](int f) {
        return std::abs(file_->fqTbl().frequency(0, f, 0) - hertz) <= slack;
    };
    int hasHand = part.stokes >= 0 && isHand(part.stokes);
    for (int s = 0; part.stokes < 0 && s < choice_->stokesCount(); ++s)
        hasHand = hasHand || isHand(s);
    int hasIf = part.ifIndex >= 0 && isIf(part.ifIndex);
    for (int f = 0; part.ifIndex < 0 && f < header.ifs; ++f)
        hasIf = hasIf || isIf(f);
    return hasHand && hasIf;
}

void EditedVisibilities::takeModel(const UvGroups& groups, int i)
{
    const auto g = static_cast<std::size_t>(i);
    const int first = groups.antenna1[g], second = groups.antenna2[g];
    const double later = modelFile_->header().referenceDay - file_->header().referenceDay;
    const std::ptrdiff_t row =
        rowAt({groups.subarray[g], std::min(first, second), std::max(first, second)},
              groups.time[g] + later);
    if (row < 0)
        return;
    const UvHeader& header = modelFile_->header();
    const auto stokes = static_cast<int>(header.stokes.size());
    for (std::size_t p = 0; p < cells_.parts.size(); ++p) {
        std::complex<double> sum = 0;
        int count = 0;
        for (int f = 0; f < header.ifs; ++f)
            for (int s = 0; s < stokes; ++s) {
                if (!isOfPart(cells_.parts[p], f, s))
                    continue;
                for (int c = 0; c < header.channels; ++c) {
                    const UvVisibility value = modelFile_->visibility(groups, i, f, c, s);
                    if (!std::isfinite(value.real) || !std::isfinite(value.imaginary))
                        continue;
                    sum += std::complex<double>(value.real, value.imaginary);
                    ++count;
                }
            }
        if (count == 0)
            continue;
        sum /= count;
        modelCells_[at(static_cast<std::size_t>(row), p)] =
            std::complex<float>(first < second ? sum : std::conj(sum));
    }
}

}  // namespace pavane
