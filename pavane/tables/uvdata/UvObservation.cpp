#include "pavane/tables/uvdata/UvObservation.h"

#include "pavane/tables/grid/table_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <ostream>

namespace pavane
{

namespace
{

constexpr const char* noMemory = "needs more memory than there is";

int rowCount(std::size_t items)
{
    return static_cast<int>(std::min<std::size_t>(items, std::numeric_limits<int>::max()));
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

void UvObservation::close()
{
    scan_.reset();
    file_.close();
    ifs_.clear();
    baselines_.clear();
    found_.clear();
    totals_ = UvTotals();
    error_.clear();
    done_ = nextRefresh_ = 0;
    stopped_ = whole_ = 0;
    ++changes_;
}

int UvObservation::open(const std::string& name, std::string& error, int also)
{
    close();
    if (!file_.open(name, error))
        return 0;
    if (begin(also))
        return 1;
    close();
    error = noMemory;
    return 0;
}

int UvObservation::begin(int also)
{
    try {
        int selection = 0;
        for (const AUVXFreqs& each : file_.fqTbl().selections()) {
            for (int i = 0; i < static_cast<int>(each.ifs.size()); ++i)
                ifs_.push_back({selection, i});
            ++selection;
        }
        const int scans = file_.hasIndex() ? 0 : UvGroupScan::scans;
        scan_ = std::make_unique<UvGroupScan>(file_, UvGroupScan::baselines | scans | also);
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
    // each time the part has doubled: the sorting of what was found costs no more than its end
    if (!more || done_ >= nextRefresh_)
        refresh();
    if (more)
        return error_.empty();
    whole_ = error_.empty();
    scan_.reset();
    return 0;
}

void UvObservation::stop()
{
    if (!isFilling())
        return;
    stopped_ = 1;
    refresh();
}

void UvObservation::refresh()
{
    nextRefresh_ = 2 * done_;
    try {
        baselines_ = scan_->foundBaselines();
        if (!file_.hasIndex())
            found_ = scan_->foundScans();
        totals_ = scan_->foundTotals();
    } catch (const std::bad_alloc&) {
        error_ = noMemory;
    }
    ++changes_;
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
