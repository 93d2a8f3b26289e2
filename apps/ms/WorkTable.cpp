#include "apps/ms/WorkTable.h"

#include "apps/ms/Cells.h"
#include "apps/ms/Failure.h"
#include "apps/ms/import_data.h"

#include <algorithm>
#include <casacore/tables/Tables/TableLock.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace pavane_ms
{

using namespace casacore;  // NOLINT

namespace
{

int valueAt(const std::vector<int>& values, int i, const std::string& name)
{
    if (i < 0 || static_cast<std::size_t>(i) >= values.size())
        throw Failure(name + " names antennas, fields or windows that its tables lack");
    return values[static_cast<std::size_t>(i)];
}

}  // namespace

WorkTable::WorkTable(const std::string& name, int isWritten) : name_(name)
{
    std::error_code error;
    if (!std::filesystem::exists(name, error))
        throw Failure("there is no " + name);
    if (!isTable(name))
        throw Failure(name + " is no MeasurementSet");
    if (isWritten &&
        (::access(name.c_str(), W_OK) != 0 || ::access((name + "/table.dat").c_str(), W_OK) != 0))
        throw Failure(name + " is read-only");
    try {
        constexpr uInt once = 1;
        const TableLock lock(isWritten ? TableLock::PermanentLocking : TableLock::NoLocking, 0.1,
                             once);
        table_ = new Table(name, lock, isWritten ? Table::Update : Table::Old,  // NOLINT: see above
                           TSMOption(TSMOption::Cache, 0, 4));
    } catch (const std::exception& failure) {
        const std::string what = failure.what();
        if (what.find("lock") != std::string::npos)
            throw Failure(name + " is in use by another program");
        throw Failure(name + " cannot be opened: " + what);
    }
    int isWork = 0;
    try {
        isWork = facts_.read(*table_);
    } catch (const std::exception& failure) {
        throw Failure(name + " " + failure.what());
    }
    if (!isWork)
        throw Failure(name + " is no working copy: make one with \"pavane-ms import\"");
    const Table windows(name + "/SPECTRAL_WINDOW", TableLock(TableLock::NoLocking));
    const Table polarizations(name + "/POLARIZATION", TableLock(TableLock::NoLocking));
    const ScalarColumn<Int> counts(windows, "NUM_CHAN");
    for (rownr_t i = 0; i < windows.nrow(); ++i)
        channels_.push_back(counts(i));
    if (polarizations.nrow() != 1 || facts_.ifs.size() != channels_.size())
        throw Failure(name + " was changed since it was made: import the data again");
    for (const Int code : ArrayColumn<Int>(polarizations, "CORR_TYPE").get(0))
        hands_.push_back(handName(code));
    if (hands_.size() != 2 && hands_.size() != 4)
        throw Failure(name + " was changed since it was made: import the data again");
    constexpr std::size_t blockBytes = std::size_t{1} << 22;
    const int most = channels_.empty() ? 1 : *std::max_element(channels_.begin(), channels_.end());
    blockRows_ = std::clamp<std::size_t>(
        blockBytes / (hands_.size() * 24 * static_cast<std::size_t>(std::max(most, 1))), 8, 16384);
}

int WorkTable::hasHand(std::size_t i) const
{
    return facts_.isIntensity ||
           std::find(facts_.hands.begin(), facts_.hands.end(), hands_[i]) != facts_.hands.end();
}

void WorkTable::read(std::size_t from, std::size_t count, Rows& rows) const
{
    const Slicer range = rowRange(from, count);
    const auto ints = [&](const char* column, Vector<Int>& values) {
        values.resize(count);
        ScalarColumn<Int>(*table_, column).getColumnRange(range, values);
    };
    ints("ANTENNA1", rows.first);
    ints("ANTENNA2", rows.second);
    ints("DATA_DESC_ID", rows.window);
    ints("ARRAY_ID", rows.array);
    ints("FIELD_ID", rows.field);
    rows.time.resize(count);
    ScalarColumn<Double>(*table_, "PAVANE_TIME").getColumnRange(range, rows.time);
    rows.channels.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        rows.channels[i] = valueAt(channels_, rows.window[i], name_);
}

int WorkTable::antennaNumber(int row) const { return valueAt(facts_.antennaNumbers, row, name_); }
int WorkTable::source(int field) const { return valueAt(facts_.sources, field, name_); }
int WorkTable::ifNumber(int window) const { return valueAt(facts_.ifs, window, name_); }

void WorkTable::finish()
{
    table_->flush(True, True);
    delete table_;  // NOLINT
    table_ = nullptr;
}

}  // namespace pavane_ms
