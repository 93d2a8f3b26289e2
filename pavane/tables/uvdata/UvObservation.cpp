#include "pavane/tables/uvdata/UvObservation.h"

#include "pavane/tables/grid/table_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <ostream>
#include <tuple>
#include <utility>

namespace pavane
{

namespace
{

constexpr const char* noMemory = "needs more memory than there is";

int rowCount(std::size_t items)
{
    return static_cast<int>(std::min<std::size_t>(items, std::numeric_limits<int>::max()));
}

int isBefore(const UvBaseline& a, const UvBaseline& b)
{
    return std::tie(a.subarray, a.first, a.second) < std::tie(b.subarray, b.first, b.second);
}

class Texts : public TableTexts
{
public:
    Texts(const UvObservation& data, UvTable table) : data_(data), table_(table) {}
    TableExtent extent() override { return {data_.rows(table_), UvObservation::columns(table_)}; }
    int text(TableCell cell, CString& text) override
    {
        text = data_.text(table_, cell.row, cell.column);
        return 1;
    }

private:
    const UvObservation& data_;
    UvTable table_;
};

class Sink : public TextSink
{
public:
    explicit Sink(std::ostream& stream) : stream_(stream) {}
    int write(const char* bytes, std::size_t count) override
    {
        stream_.write(bytes, static_cast<std::streamsize>(count));
        return !stream_.fail();
    }

private:
    std::ostream& stream_;
};

}  // namespace

UvObservation::~UvObservation()
{
    tell([](UvObserver& each) { each.ObservationEnds(); });
}

void UvObservation::clear()
{
    forget();
    file_.close();
    times_ = UvTimes();
}

void UvObservation::forget()
{
    scan_.reset();
    ifs_.clear();
    indexed_.clear();
    baselines_.clear();
    found_.clear();
    totals_ = UvTotals();
    error_.clear();
    done_ = nextRefresh_ = 0;
    stopped_ = whole_ = 0;
}

void UvObservation::close()
{
    clear();
    tellRecords(1);
}

int UvObservation::open(const std::string& name, std::string& error, int also,
                        const ProgressFunction& progress)
{
    clear();
    also_ = also;
    int opened = file_.open(name, error, progress);
    if (opened && !begin()) {
        clear();
        error = noMemory;
        opened = 0;
    }
    tellRecords(1);
    return opened;
}

int UvObservation::limitTimes(const UvTimes& times)
{
    if (!file_.isOpen())
        return 0;
    forget();
    times_ = times;
    const int begun = begin();
    if (!begun)
        error_ = noMemory;
    tellRecords(1);
    tellFilling();
    return begun;
}

int UvObservation::begin()
{
    try {
        int selection = 0;
        for (const AUVXFreqs& each : file_.fqTbl().selections()) {
            for (int i = 0; i < static_cast<int>(each.ifs.size()); ++i)
                ifs_.push_back({selection, i});
            ++selection;
        }
        for (const UvScan& scan : file_.scans())
            if (times_.meets(scan))
                indexed_.push_back(scan);
        const int scans = file_.hasIndex() ? 0 : UvGroupScan::scans;
        scan_ =
            std::make_unique<UvGroupScan>(file_, UvGroupScan::baselines | scans | also_, times_);
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

int UvObservation::needsGroups(UvTable table) const
{
    return table == UvTable::baselines || (table == UvTable::scans && !file_.hasIndex());
}

int UvObservation::step(std::int64_t bytes)
{
    if (!isFilling())
        return 0;
    const int more = scan_->step(bytes);
    done_ = scan_->done();
    error_ = scan_->error();
    whole_ = !more && error_.empty();
    // each time the part has doubled: the sorting of what was found costs no more than its end
    if (!more || done_ >= nextRefresh_)
        refresh();
    if (!more)
        scan_.reset();
    tellFilling();
    return more && error_.empty();
}

void UvObservation::stop()
{
    if (!isFilling())
        return;
    stopped_ = 1;
    refresh();
    tellFilling();
}

void UvObservation::resume()
{
    stopped_ = 0;
    tellFilling();
}

void UvObservation::refresh()
{
    nextRefresh_ = 2 * done_;
    try {
        baselinesBefore_ = std::exchange(baselines_, scan_->foundBaselines());
        if (!file_.hasIndex())
            foundBefore_ = std::exchange(found_, scan_->foundScans());
        totals_ = scan_->foundTotals();
    } catch (const std::bad_alloc&) {
        error_ = noMemory;
        whole_ = 0;
    }
    tellRecords(0);
    baselinesBefore_ = {};
    foundBefore_ = {};
}

// --- observers

void UvObservation::addObserver(UvObserver* observer)
{
    if (observer && std::find(observers_.begin(), observers_.end(), observer) == observers_.end())
        observers_.push_back(observer);
}

void UvObservation::removeObserver(UvObserver* observer)
{
    std::replace(observers_.begin(), observers_.end(), observer, static_cast<UvObserver*>(nullptr));
    if (!telling_)
        (void)std::erase(observers_, nullptr);
}

template <class Tell>
void UvObservation::tell(Tell each)
{
    ++telling_;
    for (std::size_t i = 0; i < observers_.size(); ++i)
        if (observers_[i])
            each(*observers_[i]);
    if (--telling_ == 0)
        (void)std::erase(observers_, nullptr);
}

void UvObservation::tellRecords(int ofAll)
{
    isOther_ = ofAll;
    for (const UvTable table : uvTables)
        if (ofAll || needsGroups(table))
            tell([table](UvObserver& each) { each.RecordsChanged(table); });
    isOther_ = 0;
}

void UvObservation::tellFilling()
{
    tell([](UvObserver& each) { each.FillingChanged(); });
}

int UvObservation::recordNow(UvTable table, int record) const
{
    if (isOther_ || record < 1)
        return 0;
    const auto at = static_cast<std::size_t>(record) - 1;
    if (!needsGroups(table))
        return record <= rows(table) ? record : 0;
    if (table == UvTable::baselines) {
        if (at >= baselinesBefore_.size())
            return 0;
        const auto found =
            std::lower_bound(baselines_.begin(), baselines_.end(), baselinesBefore_[at], isBefore);
        return found != baselines_.end() && !isBefore(baselinesBefore_[at], *found)
                   ? static_cast<int>(found - baselines_.begin()) + 1
                   : 0;
    }
    // a scan may have grown at both ends, or together with another
    if (at >= foundBefore_.size())
        return 0;
    const UvScan& old = foundBefore_[at];
    auto next = std::upper_bound(found_.begin(), found_.end(), old.start,
                                 [](double start, const UvScan& s) { return start < s.start; });
    while (next != found_.begin())
        if (--next; next->subarray == old.subarray && next->source == old.source &&
                    next->selection == old.selection && next->end >= old.start)
            return static_cast<int>(next - found_.begin()) + 1;
    return 0;
}

CString UvObservation::partText(UvTable table) const
{
    if (isWhole(table) || !file_.isOpen())
        return {};
    return std::to_string(static_cast<int>(std::min(std::floor(done_ * 100), 99.0))) + " %";
}

CString UvObservation::stateText(UvTable table) const
{
    const CString part = partText(table);
    if (part.empty())
        return {};
    const CString why = !error_.empty() ? ": the file " + error_ : stopped_ ? ", stopped" : "";
    return part + " of the visibilities" + why;
}

int UvObservation::rows(UvTable table) const
{
    switch (table) {
    case UvTable::telescopes:
        return rowCount(file_.telescopes().size());
    case UvTable::baselines:
        return rowCount(baselines_.size());
    case UvTable::sources:
        return rowCount(file_.sources().size());
    case UvTable::stokes:
        return rowCount(file_.header().stokes.size());
    case UvTable::frequencies:
        return rowCount(ifs_.size());
    case UvTable::scans:
        return rowCount(scans().size());
    }
    return 0;
}

int UvObservation::columns(UvTable table)
{
    return static_cast<int>(uvTableLook(table).columns.size());
}

CString UvObservation::text(UvTable table, int row, int column) const
{
    if (row < 0 || row > rows(table) || column < 0 || column > columns(table))
        return {};
    if (column == 0)
        return row == 0 ? partText(table) : std::to_string(row);
    const UvColumn& of = uvTableLook(table).columns[static_cast<std::size_t>(column) - 1];
    return row == 0 ? of.title : of.text(*this, row - 1);
}

int UvObservation::number(UvTable table, int row, int column, double& value) const
{
    if (row < 1 || row > rows(table) || column < 1 || column > columns(table))
        return 0;
    const UvColumn& of = uvTableLook(table).columns[static_cast<std::size_t>(column) - 1];
    const double found =
        of.number ? of.number(*this, row - 1) : std::numeric_limits<double>::quiet_NaN();
    if (std::isnan(found))
        return 0;
    value = found;
    return 1;
}

int UvObservation::writeTsv(UvTable table, std::ostream& stream) const
{
    Texts texts(*this, table);
    Sink sink(stream);
    return writeTableText(texts, allCells(texts.extent()), sink);
}

}  // namespace pavane
