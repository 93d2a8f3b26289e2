#include "apps/ms/Failure.h"
#include "apps/ms/import_data.h"
#include "apps/ms/MsBuilder.h"
#include "apps/ms/MsInput.h"
#include "apps/ms/OutputPath.h"
#include "apps/ms/text.h"
#include "apps/ms/Watch.h"

#include <algorithm>
#include <casacore/tables/Tables/ScalarColumn.h>
#include <casacore/tables/Tables/TableColumn.h>
#include <casacore/tables/Tables/TableCopy.h>
#include <cmath>
#include <map>
#include <tuple>

namespace pavane_ms
{

using namespace casacore;  // NOLINT

namespace
{

/// Two floats, as which a UVFITS file holds it: hosts read of both forms the same to the last bit.
double storedTime(double days)
{
    const float high = static_cast<float>(days);
    const float low = static_cast<float>(days - static_cast<double>(high));
    return static_cast<double>(high) + static_cast<double>(low);
}

/// Rows of a subtable are added to one of the copy, with what its columns tell of units and frames.
void copyRows(const Table& from, Table& to)
{
    const Vector<String> names = from.tableDesc().columnNames();
    for (const String& name : names) {
        if (!to.tableDesc().isColumn(name))
            to.addColumn(from.tableDesc().columnDesc(name));
        TableColumn column(to, name);
        if (to.nrow() == 0)
            column.rwKeywordSet().assign(TableColumn(from, name).keywordSet());
    }
    TableCopy::copyRows(to, from);
}

class MsImport
{
public:
    MsImport(MsInput& input, const Selection& selection) : input_(input), selection_(selection) {}

    /// The first pass: what there will be.
    void count(ImportCount& count, Watch& watch);
    void fill(MsBuilder& builder, Watch& watch);
    void writeTables(MsBuilder& builder, WorkFacts& facts);

private:
    int isTaken(const MsRow& row) const;
    void takeRun(const std::vector<MsRow>& rows, const std::vector<rownr_t>& places,
                 MsBuilder& builder, MsBuilder::Block& block);
    int fieldOf(int field);

    MsInput& input_;
    const Selection& selection_;
    int isSorted_ = 1;
    std::map<int, int> fieldOf_;
    std::vector<int> fields_;  ///< rows of the input's FIELD
};

int MsImport::isTaken(const MsRow& row) const
{
    return row.window >= 0 && selection_.hasTime(row.hostTime) && input_.hasField(row.field);
}

void MsImport::count(ImportCount& count, Watch& watch)
{
    std::vector<MsRow> rows;
    double before = -1e300;
    for (rownr_t first = 0; first < input_.rows(); first += rows.size()) {
        watch.step(first / 4);
        input_.readRows(first, rows);
        for (const MsRow& row : rows) {
            isSorted_ = isSorted_ && row.time >= before;
            before = row.time;
            if (!std::isfinite(row.time) || !std::isfinite(row.uvw[0] + row.uvw[1] + row.uvw[2]))
                ++count.leftOut;
            else if (isTaken(row)) {
                ++count.rows;
                count.cells +=
                    input_.plan().stored.size() *
                    input_.windows()[static_cast<std::size_t>(row.window)].frequencies.size();
            }
        }
    }
}

int MsImport::fieldOf(int field)
{
    const auto [place, isNew] = fieldOf_.try_emplace(field, static_cast<int>(fields_.size()));
    if (isNew)
        fields_.push_back(field);
    return place->second;
}

void MsImport::takeRun(const std::vector<MsRow>& rows, const std::vector<rownr_t>& places,
                       MsBuilder& builder, MsBuilder::Block& block)
{
    // windows of one baseline follow each other, as IFs do in a group of UVFITS
    std::vector<std::size_t> order(rows.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    const auto key = [&](std::size_t i) {
        const MsRow& row = rows[i];
        return std::tuple(row.array, row.first, row.second, row.field, row.window);
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
    constexpr std::size_t mostCells = std::size_t{1} << 18;
    for (const std::size_t i : order) {
        block.rows.push_back(rows[i]);
        block.rows.back().field = fieldOf(rows[i].field);
        input_.readCells(places[i], rows[i], block);
        if (block.data.size() >= mostCells) {
            builder.add(block);
            block.clear();
        }
    }
}

void MsImport::fill(MsBuilder& builder, Watch& watch)
{
    if (!isSorted_)
        input_.sortByTime();
    std::vector<MsRow> rows, run;
    std::vector<rownr_t> places;
    MsBuilder::Block block;
    const auto flush = [&] {
        takeRun(run, places, builder, block);
        run.clear();
        places.clear();
    };
    for (rownr_t first = 0; first < input_.rows(); first += rows.size()) {
        watch.step(input_.rows() / 4 + first * 3 / 4);
        input_.readRows(first, rows);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const MsRow& row = rows[i];
            if (!isTaken(row) || !std::isfinite(row.uvw[0] + row.uvw[1] + row.uvw[2]))
                continue;
            constexpr std::size_t longestRun = 1 << 18;
            if (!run.empty() && (run.back().time != row.time || run.size() >= longestRun))
                flush();
            run.push_back(row);
            run.back().hostTime = storedTime(row.hostTime);
            places.push_back(first + i);
        }
    }
    flush();
    builder.add(block);
    watch.step(input_.rows());
}

void MsImport::writeTables(MsBuilder& builder, WorkFacts& facts)
{
    MeasurementSet& ms = builder.ms();
    const Table& input = input_.table();
    builder.writeWindows();
    const auto copy = [&](const char* name, Table to) {
        if (input.keywordSet().isDefined(name))
            copyRows(input_.subtable(name), to);
    };
    copy("ANTENNA", ms.antenna());
    copy("OBSERVATION", ms.observation());
    copy("HISTORY", ms.history());
    Vector<rownr_t> fields(fields_.size());
    std::copy(fields_.begin(), fields_.end(), fields.begin());
    Table field = ms.field();
    copyRows(input_.subtable("FIELD")(RowNumbers(fields)), field);
    // the sources that it names are not copied
    ScalarColumn<Int>(field, "SOURCE_ID").fillColumn(-1);
    const Table feeds = input_.subtable("FEED");
    Table feed = ms.feed();
    const ScalarColumn<Int> window(feeds, "SPECTRAL_WINDOW_ID");
    for (rownr_t row = 0; row < feeds.nrow(); ++row) {
        const int own = window(row), mine = own < 0 ? -1 : input_.windowOfSpectral(own);
        if (own >= 0 && mine < 0)
            continue;
        copyRows(feeds(RowNumbers(Vector<rownr_t>(1, row))), feed);
        ScalarColumn<Int>(feed, "SPECTRAL_WINDOW_ID").put(feed.nrow() - 1, mine);
    }
    facts.hands = input_.plan().names;
    facts.isIntensity = input_.plan().isIntensity;
    facts.referenceDay = input_.referenceDay();
    facts.kind = "MS";
    for (const MsWindow& one : input_.windows())
        facts.ifs.push_back(one.ifNumber);
    for (rownr_t i = 0; i < ms.antenna().nrow(); ++i)
        facts.antennaNumbers.push_back(static_cast<int>(i) + 1);
    facts.antennaSubarrays.assign(facts.antennaNumbers.size(), 0);
    for (std::size_t i = 0; i < fields_.size(); ++i)
        facts.sources.push_back(static_cast<int>(i) + 1);
}

}  // namespace

void importMs(const std::string& input, const std::string& part, const std::string& output,
              const Selection& selection, ImportCount& count)
{
    MsInput ms(input, selection);
    MsImport work(ms, selection);
    Watch watch(ms.rows(), part.empty());
    work.count(count, watch);
    for (const std::string& hand : ms.plan().leftOut)
        count.notes.push_back("its hand " + hand + " is left out");
    if (part.empty())
        return;
    if (count.rows == 0)
        throw Failure(input + " has no visibilities in what is to be taken");
    if (count.leftOut > 0 && !selection.leavesOut)
        throw Failure(std::to_string(count.leftOut) + " rows of " + input +
                      " have no antennas, time or place; --leave-out takes the others");
    needSpace(output, workingSize(count.rows, count.cells));
    auto* const builder = new MsBuilder(part, ms.plan(), ms.windows());  // NOLINT: see newMs
    work.fill(*builder, watch);
    WorkFacts facts;
    facts.input = input;
    work.writeTables(*builder, facts);
    builder->writeHistory({"pavane-ms import " + plain(input)}, "pavane-ms");
    builder->finish(facts);
    delete builder;  // NOLINT
}

}  // namespace pavane_ms
