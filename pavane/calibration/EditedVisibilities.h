#pragma once

#include "pavane/calibration/flags/flag_points.h"
#include "pavane/calibration/flags/FlagEdits.h"
#include "pavane/calibration/UvCells.h"
#include "pavane/containers/Listeners.h"
#include "pavane/tables/components/ModelVisibilities.h"
#include "tessel/api.h"
#include "tessel/flags/FlagQuery.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvMarks.h"
#include "tessel/uvfits/UvSlices.h"

#include <complex>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pavane
{

/// Visibilities of a file in memory, averaged over the channels of each IF, with those of a model
/// and with flags that a user edits. Flags are at once what plots show, without the file being read
/// again; several windows may look at the same.
///
/// What the file itself, or its filter, has flagged is not there. Phases are those from the lower
/// to the higher number of a telescope, however the file stores them.
class PAVANE_API EditedVisibilities
{
public:
    /// Of more, the IFs are averaged, then the hands too; of still more nothing is shown.
    static constexpr std::size_t usualMost = std::size_t{1} << 21;

    /// A group of the file.
    struct Row {
        double time = 0;      ///< days since 0h of the reference date
        double u = 0, v = 0;  ///< seconds of light, from the lower to the higher number
        int baseline = 0;     ///< index of `baselines`
        int selection = 0;    ///< of frequencies, as they were met
    };
    /// The mean of a row's visibilities in an IF and hand. A weight of 0: there is none.
    struct Cell {
        float real = 0, imaginary = 0, weight = 0;
        std::complex<double> value() const { return {double{real}, double{imaginary}}; }
    };

    EditedVisibilities();
    EditedVisibilities(const EditedVisibilities&) = delete;
    EditedVisibilities& operator=(const EditedVisibilities&) = delete;
    ~EditedVisibilities();

    /// Begins to read what is marked of a file, which is not owned and goes after this or after
    /// another call; null shows nothing. Without marks of polarisations those are taken that
    /// `usualStokes` gives. The flags stay.
    void show(AUVXFile* file, UvMarks marks = {}, std::size_t mostCells = usualMost);
    /// Another model, at the middle of each IF; none without components.
    void setModel(const AComponents& model);
    /// That of a file of predicted visibilities of these data: groups of the same baselines and
    /// times, IFs of the same frequencies. Not owned; it goes after this or after another call.
    /// Null for none.
    void setModelFile(AUVXFile* file);
    /// Keeps what has been read of it, without the file.
    void keepModel() { modelFile_ = nullptr; }
    /// Goes on reading, with the model, or with flags, about as long as some `bytes` of the file
    /// take. Non-zero while more remains.
    int step(std::int64_t bytes = std::int64_t{1} << 20);
    /// Gives up what `step` would go on with: a part of the file, or no model. Flags are found.
    void stop();
    int isBusy() const { return isReading_ || modelRow_ < modelRows() || flagRow_ < rows_.size(); }
    /// 0 to 1, of what is being done.
    double done() const;
    /// Why the file could not be read to its end, or why there is no model: a clause without its
    /// subject, "" else.
    const std::string& error() const { return error_; }
    const std::string& modelFault() const { return modelFault_; }
    /// What has been read so far is put in order, and all who listen are told.
    void refresh();

    const AUVXFile* file() const { return file_; }
    const std::vector<UvBaseline>& baselines() const { return baselines_; }
    /// Indices of baselines by subarray and numbers.
    const std::vector<std::size_t>& order() const { return order_; }
    const std::vector<Row>& rows() const { return rows_; }
    /// The rows of a baseline by time, as far as `refresh` or the end of reading has put them.
    const std::vector<std::uint32_t>& rowsOf(std::size_t baseline) const
    {
        return byTime_[baseline];
    }
    const std::vector<UvCells::Part>& parts() const { return cells_.parts; }
    const Cell& cell(std::size_t row, std::size_t part) const { return data_[at(row, part)]; }
    int isFlagged(std::size_t row, std::size_t part) const { return flagged_[at(row, part)]; }
    /// Wavelengths.
    double distance(std::size_t row, std::size_t part) const;
    int hasModel() const { return !modelCells_.empty() && modelRow_ >= rows_.size(); }
    std::complex<double> model(std::size_t row, std::size_t part) const
    {
        return std::complex<double>(modelCells_[at(row, part)]);
    }
    /// Days from one time of a baseline to the next, mostly.
    double integration() const { return integration_; }
    /// Cells that there are, and how many of them the user has flagged.
    std::size_t count() const { return count_; }
    std::size_t flaggedCount() const { return flaggedCount_; }

    const VisibilityFlags& flags() const { return edits_.flags(); }
    /// Other flags, as of a file: nothing can be undone then.
    void setFlags(VisibilityFlags flags);
    /// The same as a step of undo.
    int replaceFlags(const VisibilityFlags& flags, std::string_view label);
    /// Flags at the times of points, or takes flags back, as one step of undo. How many cells have
    /// changed; points whose times the flags cannot hold, and no points, change nothing.
    std::size_t flag(const std::vector<FlagPoint>& points, const FlagScope& scope,
                     std::string_view label);
    int removeFlags(std::string_view label);
    int undo();
    int redo();
    const FlagEdits& edits() const { return edits_; }

    /// Calls `changed` when there is something else to show, until `forget` with the number that
    /// it gives.
    int listen(std::function<void()> changed) { return listeners_.listen(std::move(changed)); }
    void forget(int listener) { listeners_.forget(listener); }

private:
    std::size_t at(std::size_t row, std::size_t part) const
    {
        return row * cells_.parts.size() + part;
    }
    std::size_t modelRows() const { return modelCells_.empty() ? 0 : rows_.size(); }
    void readSome(std::int64_t bytes);
    void takeRow(const UvGroups& groups, std::size_t i);
    int selectionOf(int selection, const double* frequencies);
    void endReading();
    void beginModel();
    std::string whyNotAdded() const;
    void modelSome(std::int64_t bytes, std::size_t rows);
    std::ptrdiff_t rowAt(const std::vector<int>& baseline, double time) const;
    int isOfPart(const UvCells::Part& part, int modelIf, int modelStokes) const;
    void takeModel(const UvGroups& groups, int i);
    void flagsAgain();
    void flagRow(FlagQuery& query, std::size_t row, int on);
    void flagSome(std::size_t rows);
    void addLines(const std::vector<FlagLine>& lines);
    int isWholeFlagged(const unsigned char* row, const UvCells::Part& part) const;
    double laterOfFlags() const;
    void forgetRows();
    void tell() { listeners_.tell(); }

    AUVXFile* file_ = nullptr;
    UvMarks marks_;
    std::size_t mostCells_ = usualMost;
    std::unique_ptr<UvChoice> choice_;
    std::unique_ptr<UvSlices> slices_;
    UvCells cells_;
    int hasCells_ = 0;
    int isReading_ = 0;
    UvLeg leg_;
    std::string error_, modelFault_;

    std::vector<UvBaseline> baselines_;
    std::vector<std::size_t> order_;
    std::map<std::vector<int>, int> indices_;  ///< of baselines, by subarray and numbers
    std::vector<Row> rows_;
    std::vector<std::vector<std::uint32_t>> byTime_;
    std::vector<int> selections_;             ///< numbers of the file
    std::vector<std::vector<double>> hertz_;  ///< of each of them, the middle of each part
    std::vector<Cell> data_;
    std::vector<unsigned char> flagged_;
    std::size_t count_ = 0, flaggedCount_ = 0;
    double greatestW_ = 0;  ///< seconds
    double integration_ = 0;

    std::unique_ptr<ModelVisibilities> model_;
    AUVXFile* modelFile_ = nullptr;
    std::unique_ptr<UvSlices> modelSlices_;  ///< while it is read
    std::vector<std::complex<float>> modelCells_;
    std::size_t modelRow_ = 0;

    FlagEdits edits_;
    std::unique_ptr<FlagQuery> query_;  ///< while flags are found anew
    std::size_t flagRow_ = 0;

    Listeners listeners_;
};

}  // namespace pavane
