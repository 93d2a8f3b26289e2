#include "pavane/calibration/EditedVisibilities.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <numeric>
#include <utility>

namespace pavane
{

namespace
{

constexpr std::int64_t bytesOfRow = 256;  ///< that a row's flags or model take the time of
/// So many rows are flagged anew at once.
constexpr std::size_t rowsAtOnce = std::size_t{1} << 16;

UvMarks withStokes(UvMarks marks, const UvHeader& header)
{
    if (!marks.stokes.count())
        marks.stokes = usualStokes(header);
    return marks;
}

}  // namespace

EditedVisibilities::EditedVisibilities() = default;
EditedVisibilities::~EditedVisibilities() = default;

void EditedVisibilities::forgetRows()
{
    baselines_.clear();
    order_.clear();
    indices_.clear();
    rows_.clear();
    byTime_.clear();
    selections_.clear();
    hertz_.clear();
    data_.clear();
    flagged_.clear();
    modelCells_.clear();
    modelSlices_.reset();
    query_.reset();
    cells_ = {};
    count_ = flaggedCount_ = modelRow_ = flagRow_ = 0;
    greatestW_ = integration_ = 0;
    hasCells_ = 0;
    error_.clear();
    modelFault_.clear();
}

void EditedVisibilities::show(AUVXFile* file, UvMarks marks, std::size_t mostCells)
{
    slices_.reset();
    choice_.reset();
    forgetRows();
    file_ = file;
    isReading_ = file != nullptr;
    if (file) {
        mostCells_ = mostCells;
        marks_ = withStokes(std::move(marks), file->header());
        choice_ = std::make_unique<UvChoice>(*file, marks_);
        slices_ = std::make_unique<UvSlices>(*file);
        if (edits_.flags().lines.empty() && !edits_.canUndo() && !edits_.canRedo())
            edits_.set({file->header().referenceDay, {}});
    }
    tell();
}

int EditedVisibilities::step(std::int64_t bytes)
{
    const auto some = static_cast<std::size_t>(std::max(bytes / bytesOfRow, std::int64_t{1}));
    if (isReading_)
        readSome(bytes);
    else if (flagRow_ < rows_.size())
        flagSome(some);
    else if (modelRow_ < modelRows())
        modelSome(bytes, some);
    else
        return 0;
    if (!isBusy())
        tell();
    return isBusy();
}

void EditedVisibilities::stop()
{
    if (!isBusy())
        return;
    if (isReading_)
        endReading();
    while (flagRow_ < rows_.size())
        flagSome(rowsAtOnce);
    if (modelRow_ < modelRows())
        modelCells_.clear();
    modelSlices_.reset();
    tell();
}

double EditedVisibilities::done() const
{
    if (isReading_)
        return slices_->done();
    const auto part = [this](std::size_t row) {
        return static_cast<double>(row) /
               static_cast<double>(std::max<std::size_t>(rows_.size(), 1));
    };
    return flagRow_ < rows_.size() ? part(flagRow_) : modelRow_ < modelRows() ? part(modelRow_) : 1;
}

// --- reading

void EditedVisibilities::readSome(std::int64_t bytes)
{
    constexpr int what = UvGroups::baselines | UvGroups::origins | UvGroups::times |
                         UvGroups::places | UvGroups::cellValues | UvGroups::storedCells;
    const int goesOn = slices_->step(bytes, what, [this](const UvGroups& groups) {
        if (!std::exchange(hasCells_, 1)) {
            const auto all =
                static_cast<std::size_t>(std::max<std::int64_t>(file_->header().groups, 0));
            for (const UvSplit split : {UvSplit{1, 1}, UvSplit{0, 1}, UvSplit{0, 0}}) {
                cells_ = UvCells(*file_, *choice_, split);
                if (all * cells_.parts.size() <= mostCells_)
                    break;
            }
        }
        for (std::size_t i = 0; i < static_cast<std::size_t>(groups.count); ++i)
            takeRow(groups, i);
        if (data_.size() > mostCells_)
            slices_->fail("has more visibilities than are kept; choose fewer times or baselines");
    });
    if (!goesOn)
        endReading();
}

void EditedVisibilities::takeRow(const UvGroups& groups, std::size_t i)
{
    const int first = groups.antenna1[i], second = groups.antenna2[i];
    const double time = groups.time[i];
    if (first < 0 || second < 0 || first == second || !std::isfinite(time) ||
        !marks_.times.holds(time))
        return;
    const double* const hertz = choice_->frequenciesOf(groups, i);
    if (!hertz || !leg_.take(groups, static_cast<int>(i), cells_, hertz, first < second ? 1 : -1))
        return;
    const auto [low, high] = std::minmax(first, second);
    const auto [place, isNew] =
        indices_.try_emplace({groups.subarray[i], low, high}, static_cast<int>(baselines_.size()));
    if (isNew) {
        baselines_.push_back({groups.subarray[i], low, high, 0});
        byTime_.emplace_back();
    }
    const auto baseline = static_cast<std::size_t>(place->second);
    ++baselines_[baseline].groups;
    byTime_[baseline].push_back(static_cast<std::uint32_t>(rows_.size()));
    rows_.push_back({time, leg_.u, leg_.v, place->second, selectionOf(groups.selection[i], hertz)});
    greatestW_ = std::max(greatestW_, std::abs(groups.w[i]));
    for (std::size_t p = 0; p < cells_.parts.size(); ++p) {
        std::complex<double> sum = 0;
        double weights = 0;
        for (std::size_t k = cells_.starts[p]; k < cells_.starts[p + 1]; ++k) {
            if (!(leg_.valid[k] > 0))
                continue;
            const double weight = 1 / double{leg_.variance[k]};
            sum += weight * std::complex<double>(leg_.real[k], leg_.imaginary[k]);
            weights += weight;
        }
        Cell cell;
        if (weights > 0) {
            sum /= weights;
            cell = {static_cast<float>(sum.real()), static_cast<float>(sum.imag()),
                    static_cast<float>(
                        std::min<double>(weights, double{std::numeric_limits<float>::max()}))};
            if (!std::isfinite(cell.real) || !std::isfinite(cell.imaginary))
                cell = {};
        }
        count_ += cell.weight > 0;
        data_.push_back(cell);
        flagged_.push_back(0);
    }
}

int EditedVisibilities::selectionOf(int selection, const double* frequencies)
{
    const auto known = std::find(selections_.begin(), selections_.end(), selection);
    if (known != selections_.end())
        return static_cast<int>(known - selections_.begin());
    selections_.push_back(selection);
    std::vector<double>& middles = hertz_.emplace_back();
    for (std::size_t p = 0; p < cells_.parts.size(); ++p) {
        double sum = 0;
        int count = 0;
        for (std::size_t k = cells_.starts[p]; k < cells_.starts[p + 1]; ++k)
            if (const double hertz = frequencies[cells_.cells[k].frequency]; hertz > 0) {
                sum += hertz;
                ++count;
            }
        middles.push_back(count > 0 ? sum / count : 0);
    }
    return static_cast<int>(selections_.size()) - 1;
}

double EditedVisibilities::distance(std::size_t row, std::size_t part) const
{
    const Row& r = rows_[row];
    return std::hypot(r.u, r.v) * hertz_[static_cast<std::size_t>(r.selection)][part];
}

void EditedVisibilities::refresh()
{
    order_.clear();
    for (const auto& [key, index] : indices_)
        order_.push_back(static_cast<std::size_t>(index));
    const auto isEarlier = [this](std::uint32_t a, std::uint32_t b) {
        return rows_[a].time < rows_[b].time;
    };
    for (std::vector<std::uint32_t>& rows : byTime_)
        if (!std::is_sorted(rows.begin(), rows.end(), isEarlier))
            std::stable_sort(rows.begin(), rows.end(), isEarlier);
    tell();
}

void EditedVisibilities::endReading()
{
    isReading_ = 0;
    error_ = slices_->error();
    if (error_.empty() && rows_.empty())
        error_ = "has no good visibilities of what is chosen";
    refresh();
    std::vector<double> steps;
    for (const std::vector<std::uint32_t>& rows : byTime_)
        for (std::size_t i = 1; i < rows.size(); ++i)
            if (const double step = rows_[rows[i]].time - rows_[rows[i - 1]].time; step > 0)
                steps.push_back(step);
    if (!steps.empty()) {
        const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
        std::nth_element(steps.begin(), middle, steps.end());
        integration_ = *middle;
    }
    flagsAgain();
    beginModel();
}

// --- flags

/// What has to be added to times of the flags to make them times of the data.
double EditedVisibilities::laterOfFlags() const
{
    const double ofData = file_ ? file_->header().referenceDay : 0;
    const double ofFlags = edits_.flags().referenceDay;
    return ofData > 0 && ofFlags > 0 ? ofFlags - ofData : 0;
}

/// Whether all of the mean is: a row of flags by IF and hand.
int EditedVisibilities::isWholeFlagged(const unsigned char* row, const UvCells::Part& part) const
{
    const UvHeader& header = file_->header();
    const int hands = static_cast<int>(header.stokes.size());
    for (int f = 0; f < header.ifs; ++f)
        for (int s = 0; s < hands; ++s)
            if ((part.ifIndex < 0 || part.ifIndex == f) &&
                (part.stokes < 0 ? choice_->takesStokes(s) : part.stokes == s) &&
                !row[f * hands + s])
                return 0;
    return 1;
}

/// Takes the flags that a query finds; those that it does not find stay.
void EditedVisibilities::flagRow(FlagQuery& query, std::size_t row, int on)
{
    const UvBaseline& b = baselines_[static_cast<std::size_t>(rows_[row].baseline)];
    const unsigned char* const found = query.of(b.subarray, b.first, b.second, rows_[row].time);
    for (std::size_t p = 0; found && p < cells_.parts.size(); ++p) {
        const std::size_t cell = at(row, p);
        if (!(data_[cell].weight > 0) || (flagged_[cell] != 0) == (on != 0) ||
            !isWholeFlagged(found, cells_.parts[p]))
            continue;
        flagged_[cell] = static_cast<unsigned char>(on != 0);
        flaggedCount_ += on ? 1 : std::size_t(-1);
    }
}

/// Finds all of them anew, many a slice at a time.
void EditedVisibilities::flagsAgain()
{
    flagRow_ = 0;
    query_.reset();
    if (!file_ || isReading_)
        return;
    query_ = std::make_unique<FlagQuery>(edits_.flags(), file_->header().ifs,
                                         file_->header().stokes, file_->header().referenceDay);
    flaggedCount_ = 0;
    std::fill(flagged_.begin(), flagged_.end(), static_cast<unsigned char>(0));
    flagSome(query_->isEmpty() ? rows_.size() : rowsAtOnce);
}

void EditedVisibilities::flagSome(std::size_t rows)
{
    const std::size_t end = std::min(rows_.size(), flagRow_ + std::min(rows, rowsAtOnce));
    for (; flagRow_ < end; ++flagRow_)
        flagRow(*query_, flagRow_, 1);
}

/// New lines, all of which flag or all of which restore, are the last: what they are about is as
/// they say.
void EditedVisibilities::addLines(const std::vector<FlagLine>& lines)
{
    if (cells_.parts.front().ifIndex < 0)  // of a mean all lines together say
        return flagsAgain();
    VisibilityFlags added;
    added.referenceDay = edits_.flags().referenceDay;
    double start = std::numeric_limits<double>::infinity(), end = -start;
    for (FlagLine line : lines) {
        start = std::min(start, line.start + laterOfFlags());
        end = std::max(end, line.end + laterOfFlags());
        line.isRestore = 0;
        added.lines.push_back(std::move(line));
    }
    FlagQuery query(added, file_->header().ifs, file_->header().stokes,
                    file_->header().referenceDay);
    for (const std::vector<std::uint32_t>& rows : byTime_) {
        auto row = std::lower_bound(
            rows.begin(), rows.end(), start,
            [this](std::uint32_t one, double time) { return rows_[one].time < time; });
        for (; row != rows.end() && rows_[*row].time <= end; ++row)
            flagRow(query, *row, !lines.front().isRestore);
    }
}

std::size_t EditedVisibilities::flag(const std::vector<FlagPoint>& points, const FlagScope& scope,
                                     std::string_view label)
{
    if (!file_ || isReading_)
        return 0;
    while (flagRow_ < rows_.size())
        flagSome(rowsAtOnce);
    std::vector<FlagLine> lines = flagLinesOf(points, scope, integration_);
    for (FlagLine& line : lines) {
        line.start -= laterOfFlags();
        line.end -= laterOfFlags();
    }
    const std::size_t before = flaggedCount_;
    if (cells_.parts.empty() || !edits_.add(lines, label))
        return 0;
    addLines(lines);
    const std::size_t changed = scope.isRestore ? before - flaggedCount_ : flaggedCount_ - before;
    tell();
    return changed;
}

void EditedVisibilities::setFlags(VisibilityFlags flags)
{
    edits_.set(std::move(flags));
    flagsAgain();
    tell();
}

int EditedVisibilities::replaceFlags(const VisibilityFlags& flags, std::string_view label)
{
    const int done = edits_.replace(flags, label);
    flagsAgain();
    tell();
    return done;
}

int EditedVisibilities::removeFlags(std::string_view label)
{
    const int done = edits_.removeAll(label);
    flagsAgain();
    tell();
    return done;
}

int EditedVisibilities::undo()
{
    const int done = edits_.undo();
    if (done) {
        flagsAgain();
        tell();
    }
    return done;
}

int EditedVisibilities::redo()
{
    const int done = edits_.redo();
    if (done) {
        flagsAgain();
        tell();
    }
    return done;
}

}  // namespace pavane
