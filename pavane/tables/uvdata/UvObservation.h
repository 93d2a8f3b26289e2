#pragma once

#include "pavane/tables/uvdata/uv_columns.h"
#include "tessel/uvfits/UvGroupScan.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// An IF of a frequency selection, both from 0.
struct UvIfPlace {
    int selection, ifIndex;
};

/// Who is told by an observation. It may take itself away meanwhile.
class UvObserver
{
public:
    /// Rows of a table have changed; UvObservation::recordNow knows where they are.
    virtual void RecordsChanged(UvTable table) = 0;
    /// More groups have been read, or reading has been stopped or goes on.
    virtual void FillingChanged() = 0;
    virtual void ObservationEnds() = 0;

protected:
    ~UvObserver() = default;
};

/// A data file and the tables of its observation, without a window. The baselines, and scans
/// without an index, are known when all groups have been read: `step` reads them a slice at a time,
/// and until then these tables hold what was found so far. Rows and columns count from 1. It
/// outlives the windows that show it.
class PAVANE_API UvObservation
{
public:
    UvObservation() = default;
    UvObservation(const UvObservation&) = delete;
    UvObservation& operator=(const UvObservation&) = delete;
    ~UvObservation();

    /// Opens a file, closing an open one first; headers and tables only. Non-zero on success; else
    /// 0 and a clause without its subject in `error`. `also`: bits of UvGroupScan::What that the
    /// groups are read for beside what the tables need. When `progress` gives up nothing is open.
    int open(const std::string& name, std::string& error, int also = 0,
             const ProgressFunction& progress = {});
    void close();
    /// Of a file that is open: baselines and scans of these times alone, looked for again. Scans
    /// that only a part of lies in them are there whole.
    int limitTimes(const UvTimes& times);
    const UvTimes& times() const { return times_; }
    const AUVXFile& file() const { return file_; }
    /// For readers of groups, which move its place; nobody opens or closes it here.
    AUVXFile& file() { return file_; }

    /// Whether a table, were it whole, comes from all groups.
    int needsGroups(UvTable table) const;
    /// Goes on with some `bytes` of the file. Non-zero while more remains to be read; 0 when all is
    /// done, stopped, or cannot be: then `error` is not empty.
    int step(std::int64_t bytes = std::int64_t{4} << 20);
    /// Gives up; what was found stays. `resume` goes on from there.
    void stop();
    void resume();
    int isStopped() const { return stopped_; }
    /// Whether there is something left for `step`.
    int isFilling() const { return scan_ && !stopped_ && error_.empty(); }
    /// 0 to 1.
    double done() const { return done_; }
    /// Why the groups could not be read to their end; "" else.
    const std::string& error() const { return error_; }
    /// Of the groups so far; those of the bits that `open` was given.
    const UvTotals& totals() const { return totals_; }

    /// Whether a table holds all that it can.
    int isWhole(UvTable table) const { return !needsGroups(table) || whole_; }
    /// "42 %" while a table is not whole, for its corner; "" else.
    CString partText(UvTable table) const;
    /// The same for a status line: "42 % of the visibilities, stopped".
    CString stateText(UvTable table) const;

    /// Not owned. Observers are told in the order in which they came.
    void addObserver(UvObserver* observer);
    void removeObserver(UvObserver* observer);
    /// While RecordsChanged is told: where a record (from 1) of before is now, 0 when it is gone.
    int recordNow(UvTable table, int record) const;

    int rows(UvTable table) const;
    static int columns(UvTable table);
    /// "" outside, as of cells that the file leaves open.
    CString text(UvTable table, int row, int column) const;
    /// Non-zero when the cell stands for a number.
    int number(UvTable table, int row, int column, double& value) const;
    /// Writes the table as its window exports it; 0 when the stream fails.
    int writeTsv(UvTable table, std::ostream& stream) const;

    const std::vector<UvBaseline>& baselines() const { return baselines_; }
    const std::vector<UvScan>& scans() const { return file_.hasIndex() ? indexed_ : found_; }
    /// Of a row of the frequencies, from 0, that is there.
    UvIfPlace ifAt(int row) const { return ifs_[static_cast<std::size_t>(row)]; }

private:
    int begin();
    void forget();
    void clear();
    void refresh();
    template <class Tell>
    void tell(Tell each);
    void tellRecords(int ofAll);
    void tellFilling();

    AUVXFile file_;
    std::vector<UvIfPlace> ifs_;
    std::unique_ptr<UvGroupScan> scan_;
    std::vector<UvBaseline> baselines_;
    std::vector<UvScan> found_;
    std::vector<UvScan> indexed_;  ///< those of the file's index
    UvTimes times_;
    int also_ = 0;
    std::vector<UvBaseline> baselinesBefore_;
    std::vector<UvScan> foundBefore_;
    UvTotals totals_;
    std::vector<UvObserver*> observers_;
    std::string error_;
    double done_ = 0;
    double nextRefresh_ = 0;
    int stopped_ = 0;
    int whole_ = 0;
    int telling_ = 0;
    int isOther_ = 0;  ///< the file that is being told of is another one
};

}  // namespace pavane
