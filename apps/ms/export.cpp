#include "apps/ms/Cells.h"
#include "apps/ms/commands.h"
#include "apps/ms/ExportPlan.h"
#include "apps/ms/Failure.h"
#include "apps/ms/FitsOutput.h"
#include "apps/ms/OutputPath.h"
#include "apps/ms/text.h"
#include "apps/ms/Watch.h"
#include "apps/ms/Words.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace pavane_ms
{

using namespace casacore;  // NOLINT

namespace
{

constexpr double speedOfLight = 299792458.0;

/// A group that is being filled with the rows of its IFs.
struct Group {
    int first = -1, second = -1, array = 0, field = 0, selection = 0, scan = 0;
    double time = 0, interval = 0;
    std::array<double, 3> uvw{};
    std::vector<int> isFilled;
    std::vector<float> cells;

    auto key() const
    {
        return std::tie(first, second, array, field, selection, scan, time, interval, uvw);
    }
};

class Export
{
public:
    Export(WorkTable& work, const std::string& column);
    void write(const std::string& name);
    std::int64_t groups() const { return groups_; }
    /// What the file does not hold of the copy, and of what this was made of.
    std::vector<std::string> lost() const { return plan_.lost(); }

private:
    void takeRows(std::size_t from, std::size_t count, FitsOutput& file);
    void takeCells(Group& group, int ifPlace, const Complex* data, const Bool* flags,
                   const Float* weights, int channels) const;
    void endGroup(FitsOutput& file);

    WorkTable& work_;
    std::string column_, flagColumn_, weightColumn_;
    ExportPlan plan_;
    Group group_;
    FitsBytes bytes_;
    std::vector<ExportScan> scans_;
    std::int64_t groups_ = 0;
};

Export::Export(WorkTable& work, const std::string& column)
    : work_(work), column_(column),
      flagColumn_(column == "CORRECTED_DATA" ? "FLAG" : "ORIGINAL_FLAG"),
      weightColumn_(column == "CORRECTED_DATA" ? "WEIGHT_SPECTRUM" : "ORIGINAL_WEIGHT"), plan_(work)
{
    if (!work.table().tableDesc().isColumn(column))
        throw Failure("there is no column " + column);
}

void Export::endGroup(FitsOutput& file)
{
    if (group_.first < 0)
        return;
    bytes_.clear();
    for (const double axis : group_.uvw)
        bytes_.add(static_cast<float>(axis / speedOfLight));
    // two floats hold what one cannot
    const auto high = static_cast<float>(group_.time);
    bytes_.add(high);
    bytes_.add(static_cast<float>(group_.time - static_cast<double>(high)));
    const int a = work_.antennaNumber(group_.first), b = work_.antennaNumber(group_.second);
    if (plan_.hasWideNumbers()) {
        bytes_.add(static_cast<float>(group_.array + 1));
        bytes_.add(static_cast<float>(a));
        bytes_.add(static_cast<float>(b));
    } else {
        bytes_.add(static_cast<float>(256 * a + b) + static_cast<float>(group_.array) / 100);
    }
    bytes_.add(static_cast<float>(group_.interval));
    bytes_.add(static_cast<float>(work_.source(group_.field)));
    bytes_.add(static_cast<float>(group_.selection + 1));
    for (const float cell : group_.cells)
        bytes_.add(cell);
    file.data(bytes_.bytes());
    ++groups_;
    if (scans_.empty() || scans_.back().number != group_.scan ||
        scans_.back().field != group_.field || scans_.back().array != group_.array)
        scans_.push_back(
            {group_.scan, group_.field, group_.array, groups_, groups_, group_.time, group_.time});
    ExportScan& scan = scans_.back();
    scan.lastGroup = groups_;
    scan.start = std::min(scan.start, group_.time);
    scan.end = std::max(scan.end, group_.time);
    group_ = {};
}

void Export::takeCells(Group& group, int ifPlace, const Complex* data, const Bool* flags,
                       const Float* weights, int channels) const
{
    const auto hands = static_cast<std::size_t>(work_.handCount());
    const std::size_t out = plan_.hands().size();
    float* at = group.cells.data() + static_cast<std::size_t>(ifPlace) *
                                         static_cast<std::size_t>(plan_.channels()) * out * 3;
    for (int c = 0; c < channels; ++c, data += hands, flags += hands, weights += hands)
        for (std::size_t k = 0; k < out; ++k, at += 3) {
            const auto h = static_cast<std::size_t>(plan_.hands()[k].from);
            float weight = weights[h];
            int isFlagged = flags[h];
            if (plan_.isSingle()) {
                // what stands in both columns has its weight shared out
                const std::size_t other = h == 0 ? hands - 1 : 0;
                if (plan_.isShared(column_))
                    weight += weights[other];
                isFlagged = flags[h];
            }
            const int isGood = std::isfinite(data[h].real()) && std::isfinite(data[h].imag()) &&
                               std::isfinite(weight);
            at[0] = isGood ? data[h].real() : 0;
            at[1] = isGood ? data[h].imag() : 0;
            at[2] = !isGood ? 0 : isFlagged ? -weight : weight;
        }
}

void Export::takeRows(std::size_t from, std::size_t count, FitsOutput& file)
{
    WorkTable::Rows rows;
    work_.read(from, count, rows);
    const Slicer range = rowRange(from, count);
    const Table& table = work_.table();
    const Array<Double> uvw = ArrayColumn<Double>(table, "UVW").getColumnRange(range);
    const Vector<Double> intervals = ScalarColumn<Double>(table, "INTERVAL").getColumnRange(range);
    const Vector<Int> scans = ScalarColumn<Int>(table, "SCAN_NUMBER").getColumnRange(range);
    Vector<Complex> data;
    Vector<Bool> flags;
    Vector<Float> weights;
    const int hands = work_.handCount();
    Cells<Complex>(table, column_).get(from, hands, rows.channels, data);
    Cells<Bool>(table, flagColumn_).get(from, hands, rows.channels, flags);
    Cells<Float>(table, weightColumn_).get(from, hands, rows.channels, weights);
    std::size_t at = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const ExportPlan::Place place = plan_.placeOf(rows.window[i]);
        Group next;
        next.first = rows.first[i];
        next.second = rows.second[i];
        next.array = rows.array[i];
        next.field = rows.field[i];
        next.selection = place.selection;
        next.scan = scans[i];
        next.time = rows.time[i];
        next.interval = intervals[i];
        std::copy_n(uvw.data() + 3 * i, 3, next.uvw.begin());
        const auto ifPlace = static_cast<std::size_t>(place.ifPlace);
        if (group_.first < 0 || group_.key() != next.key() || group_.isFilled[ifPlace]) {
            endGroup(file);
            group_ = next;
            group_.isFilled.assign(plan_.ifs().size(), 0);
            group_.cells.assign(plan_.ifs().size() * static_cast<std::size_t>(plan_.channels()) *
                                    plan_.hands().size() * 3,
                                0);
        }
        group_.isFilled[ifPlace] = 1;
        takeCells(group_, place.ifPlace, data.data() + at, flags.data() + at, weights.data() + at,
                  rows.channels[i]);
        at += static_cast<std::size_t>(hands) * static_cast<std::size_t>(rows.channels[i]);
    }
}

void Export::write(const std::string& name)
{
    FitsOutput file(name);
    FitsCards cards;
    const std::size_t countPlace = plan_.writeHeader(cards, column_);
    file.header(cards);
    const auto rows = static_cast<std::size_t>(work_.table().nrow());
    Watch watch(rows);
    for (std::size_t first = 0; first < rows; first += work_.blockRows()) {
        watch.step(first);
        takeRows(first, std::min(work_.blockRows(), rows - first), file);
    }
    endGroup(file);
    file.endData();
    plan_.writeTables(file, scans_);
    FitsCards count;
    count.whole("GCOUNT", groups_);
    file.replace(countPlace, count);
    file.finish();
    watch.step(rows);
}

}  // namespace

void exportData(const std::vector<std::string>& words)
{
    const Words given(words, {"column="}, 2, 2);
    const std::string input = safePath(given.names()[0]), output = safePath(given.names()[1]);
    const std::string column = given.value("column");
    if (column != "DATA" && column != "CORRECTED_DATA" && column != "MODEL_DATA")
        throw WrongUse("--column takes DATA, CORRECTED_DATA or MODEL_DATA");
    refuseSame(input, output);
    auto& work = *new WorkTable(input, 0);  // NOLINT: ended by finish() alone
    OutputPath place(output, 0, 1);
    Export out(work, column);
    // each visibility takes 12 bytes, less than the working copy has for it
    needSpace(output, sizeOf(input) / 2);
    out.write(place.partName());
    const std::vector<std::string> lost = out.lost();
    place.commit();
    work.finish();
    delete &work;  // NOLINT
    say("groups", static_cast<std::uint64_t>(out.groups()));
    say("size", sizeOf(output));
    for (const std::string& each : lost)
        say("lost", each);
}

}  // namespace pavane_ms
