#include "apps/ms/Cells.h"
#include "apps/ms/commands.h"
#include "apps/ms/Failure.h"
#include "apps/ms/FlagFile.h"
#include "apps/ms/GainChain.h"
#include "apps/ms/hand_form.h"
#include "apps/ms/OutputPath.h"
#include "apps/ms/Watch.h"
#include "apps/ms/Words.h"
#include "apps/ms/WorkTable.h"

#include <algorithm>
#include <casacore/casa/Arrays/Matrix.h>
#include <casacore/tables/DataMan/TiledColumnStMan.h>
#include <casacore/tables/DataMan/TiledShapeStMan.h>
#include <casacore/tables/Tables/ArrColDesc.h>
#include <cmath>

namespace pavane_ms
{

using namespace casacore;  // NOLINT

namespace
{

constexpr const char* corrected = "CORRECTED_DATA";

/// Parallel hands that the data have, channel by channel.
struct Counts {
    std::uint64_t all = 0, used = 0, good = 0, automatic = 0, flagged = 0, byUser = 0, lost = 0;
    std::uint64_t uncorrected = 0;  ///< of those that are good
};

class Correction
{
public:
    Correction(WorkTable& work, const Words& words);
    Counts run();

private:
    struct Block {
        WorkTable::Rows rows;
        Vector<Complex> data;
        Vector<Bool> flags;
        Vector<Float> weights;
    };
    void addColumn();
    void correctBlock(Block& block, Counts& counts);
    void correctRow(Block& block, std::size_t row, std::size_t at, Counts& counts);
    void write(std::size_t first, Block& block);

    WorkTable& work_;
    HandForm form_;
    GainChain gains_;
    FlagFile flags_;
    int keepsFailed_, keepsWeights_;
    std::vector<Visibility> cell_;
};

Correction::Correction(WorkTable& work, const Words& words)
    : work_(work), form_(words.value("form"), work.hands(), work.facts().isIntensity),
      keepsFailed_(words.has("keep-failed")), keepsWeights_(words.has("keep-weights")),
      cell_(work.hands().size())
{
    for (const std::string& name : words.all("gains"))
        gains_.add(name, work.facts().referenceDay);
    if (words.has("flags"))
        flags_ = FlagFile(words.value("flags"), work.facts().referenceDay);
}

void Correction::addColumn()
{
    Table& table = work_.table();
    if (table.tableDesc().isColumn(corrected))
        return;
    const ColumnDesc& like = table.tableDesc().columnDesc("DATA");
    if (like.isFixedShape()) {
        const IPosition shape = like.shape();
        table.addColumn(ArrayColumnDesc<Complex>(corrected, shape, ColumnDesc::FixedShape),
                        TiledColumnStMan("TiledCorrected",
                                         tileShape(static_cast<int>(shape[0]),
                                                   static_cast<int>(shape[1]), sizeof(Complex))));
    } else {
        table.addColumn(
            ArrayColumnDesc<Complex>(corrected, 2),
            TiledShapeStMan("TiledCorrected", tileShape(work_.handCount(), 64, sizeof(Complex))));
    }
}

void Correction::correctRow(Block& block, std::size_t row, std::size_t at, Counts& counts)
{
    const auto hands = work_.hands().size();
    GainPlace place;
    place.subarray = block.rows.array[row] + 1;
    place.first = work_.antennaNumber(block.rows.first[row]);
    place.second = work_.antennaNumber(block.rows.second[row]);
    place.time = block.rows.time[row];
    place.source = work_.source(block.rows.field[row]);
    place.ifNumber = work_.ifNumber(block.rows.window[row]);
    flags_.setPlace(
        {place.subarray, place.first, place.second, place.ifNumber, place.source, place.time});
    const int isAuto = block.rows.first[row] == block.rows.second[row];
    const int isIntensity = work_.facts().isIntensity;
    constexpr std::size_t mostHands = 4;
    std::complex<double> factor[mostHands];
    int hasFactor[mostHands] = {}, isByUser[mostHands] = {};
    for (std::size_t h = 0; h < hands; ++h) {
        const std::string& hand = work_.hands()[h];
        place.firstHand = isIntensity ? 'I' : hand[0];
        place.secondHand = isIntensity ? 'I' : hand[1];
        hasFactor[h] = gains_.factor(place, factor[h]);
        isByUser[h] = flags_.isFlagged(isIntensity ? "I" : hand);
    }
    for (int c = 0; c < block.rows.channels[row]; ++c, at += hands) {
        for (std::size_t h = 0; h < hands; ++h) {
            Visibility& cell = cell_[h];
            cell.value = block.data[at + h];
            cell.weight = block.weights[at + h];
            const int isFinite = std::isfinite(cell.value.real()) &&
                                 std::isfinite(cell.value.imag()) && std::isfinite(cell.weight);
            const int isOut = block.flags[at + h] || !isFinite || !(cell.weight > 0);
            const int isLost = !hasFactor[h] && !keepsFailed_;
            cell.isFlagged = isAuto || isOut || isByUser[h] || isLost;
            if (!isFinite) {
                cell.value = 0;
                cell.weight = 0;
            } else if (hasFactor[h] && !gains_.isEmpty()) {
                cell.value = std::complex<float>(std::complex<double>(cell.value) / factor[h]);
                if (!keepsWeights_)
                    cell.weight =
                        static_cast<float>(static_cast<double>(cell.weight) * std::norm(factor[h]));
            }
            // gains as small as that make numbers that no float holds
            if (!std::isfinite(cell.value.real()) || !std::isfinite(cell.value.imag()) ||
                !(cell.weight > 0) || !std::isfinite(cell.weight)) {
                cell.value = 0;
                cell.weight = 0;
                cell.isFlagged = true;
            }
            const int isCounted = (h == 0 || (h == hands - 1 && !isIntensity)) && work_.hasHand(h);
            if (!isCounted)
                continue;
            ++counts.all;
            ++(isAuto        ? counts.automatic
               : isOut       ? counts.flagged
               : isByUser[h] ? counts.byUser
               : isLost      ? counts.lost
                             : counts.good);
            counts.uncorrected += !cell_[h].isFlagged && !hasFactor[h];
        }
        const int used = applyForm(form_, cell_[0], cell_[hands - 1]);
        counts.used += static_cast<std::uint64_t>(isIntensity ? used / 2 : used);
        for (std::size_t h = 0; h < hands; ++h) {
            block.data[at + h] = cell_[h].value;
            block.weights[at + h] = cell_[h].weight;
            block.flags[at + h] = cell_[h].isFlagged;
        }
    }
}

void Correction::correctBlock(Block& block, Counts& counts)
{
    std::size_t at = 0;
    for (std::size_t row = 0; row < block.rows.channels.size(); ++row) {
        correctRow(block, row, at, counts);
        at += work_.hands().size() * static_cast<std::size_t>(block.rows.channels[row]);
    }
}

void Correction::write(std::size_t first, Block& block)
{
    Table& table = work_.table();
    const int hands = work_.handCount();
    const std::vector<int>& channels = block.rows.channels;
    Cells<Complex>(table, corrected).put(first, hands, channels, block.data);
    Cells<Bool>(table, "FLAG").put(first, hands, channels, block.flags);
    Cells<Float>(table, "WEIGHT_SPECTRUM").put(first, hands, channels, block.weights);
    const std::size_t count = channels.size();
    Matrix<Float> means(static_cast<std::size_t>(hands), count), sigmas(means.shape());
    Vector<Bool> rowFlags(count);
    std::size_t at = 0;
    for (std::size_t row = 0; row < count; ++row) {
        const std::size_t begin = row * static_cast<std::size_t>(hands);
        meanWeights(block.weights.data() + at, block.flags.data() + at, hands, channels[row],
                    means.data() + begin);
        for (std::size_t h = 0; h < static_cast<std::size_t>(hands); ++h) {
            const float mean = means(h, row);
            sigmas(h, row) = mean > 0 ? 1 / std::sqrt(mean) : 0;
        }
        const auto cells =
            static_cast<std::size_t>(hands) * static_cast<std::size_t>(channels[row]);
        rowFlags[row] = std::all_of(block.flags.data() + at, block.flags.data() + at + cells,
                                    [](bool flag) { return flag; });
        at += cells;
    }
    const Slicer range = rowRange(first, count);
    ArrayColumn<Float>(table, "WEIGHT").putColumnRange(range, means);
    ArrayColumn<Float>(table, "SIGMA").putColumnRange(range, sigmas);
    ScalarColumn<Bool>(table, "FLAG_ROW").putColumnRange(range, rowFlags);
}

Counts Correction::run()
{
    const auto rows = static_cast<std::size_t>(work_.table().nrow());
    addColumn();
    Watch watch(rows);
    Counts counts;
    Block block;
    for (std::size_t first = 0; first < rows; first += work_.blockRows()) {
        watch.step(first);
        const std::size_t count = std::min(work_.blockRows(), rows - first);
        work_.read(first, count, block.rows);
        const int hands = work_.handCount();
        Cells<Complex>(work_.table(), "DATA").get(first, hands, block.rows.channels, block.data);
        Cells<Bool>(work_.table(), "ORIGINAL_FLAG")
            .get(first, hands, block.rows.channels, block.flags);
        Cells<Float>(work_.table(), "ORIGINAL_WEIGHT")
            .get(first, hands, block.rows.channels, block.weights);
        correctBlock(block, counts);
        write(first, block);
    }
    watch.step(rows);
    return counts;
}

}  // namespace

void correctData(const std::vector<std::string>& words)
{
    const Words given(words, {"form=", "gains=", "flags=", "keep-failed", "keep-weights"}, 1, 1);
    const std::string name = safePath(given.names()[0]);
    auto& work = *new WorkTable(name, 1);  // NOLINT: ended by finish() alone
    Correction correction(work, given);
    const int isNew = !work.table().tableDesc().isColumn(corrected);
    if (isNew)
        needSpace(name, sizeOf(name) / 3);
    const Counts counts = correction.run();
    work.finish();
    delete &work;  // NOLINT
    say("visibilities", counts.all);
    say("used", counts.used);
    say("flagged-before", counts.flagged);
    say("flagged-by-user", counts.byUser);
    say("lost-to-gains", counts.lost);
    say("left-by-form", counts.good - counts.used);
    say("autocorrelations", counts.automatic);
    say("uncorrected", counts.uncorrected);
    if (counts.used == 0)
        throw Failure(name + " has no visibility left to make a map of");
}

}  // namespace pavane_ms
