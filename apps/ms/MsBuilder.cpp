#include "apps/ms/MsBuilder.h"

#include "apps/ms/Cells.h"
#include "apps/ms/Failure.h"

#include <algorithm>
#include <casacore/ms/MeasurementSets/MSColumns.h>
#include <casacore/tables/DataMan/IncrementalStMan.h>
#include <casacore/tables/DataMan/StandardStMan.h>
#include <casacore/tables/DataMan/TiledColumnStMan.h>
#include <casacore/tables/DataMan/TiledShapeStMan.h>
#include <casacore/tables/Tables/ArrColDesc.h>
#include <casacore/tables/Tables/ScaColDesc.h>
#include <casacore/tables/Tables/SetupNewTab.h>
#include <casacore/tables/Tables/TableRecord.h>
#include <cmath>
#include <utility>

namespace pavane_ms
{

using namespace casacore;  // NOLINT: half of the words below are its

namespace
{

template <typename T>
void bindCells(TableDesc& desc, SetupNewTable& setup, const String& name, int isNew, int hands,
               int channels)
{
    const int isFixed = channels > 0;
    const IPosition shape(2, hands, channels);
    if (isNew)
        desc.addColumn(isFixed ? ArrayColumnDesc<T>(name, shape, ColumnDesc::FixedShape)
                               : ArrayColumnDesc<T>(name, 2));
    const String group = "Tiled" + name;
    const IPosition tile = tileShape(hands, std::max(channels, 64), sizeof(T));
    if (isFixed)
        setup.bindColumn(name, TiledColumnStMan(group, tileShape(hands, channels, sizeof(T))));
    else
        setup.bindColumn(name, TiledShapeStMan(group, tile));
}

MeasurementSet* newMs(const std::string& name, int hands, int channels)
{
    TableDesc desc = MS::requiredTableDesc();
    for (const MS::PredefinedColumns each : {MS::DATA, MS::WEIGHT_SPECTRUM})
        MS::addColumnToDesc(desc, each, 2);
    if (channels > 0) {
        const auto fix = [&](const char* column, const IPosition& shape) {
            ColumnDesc& one = desc.rwColumnDesc(column);
            one.setShape(shape, True);
            one.setOptions(ColumnDesc::FixedShape);
        };
        for (const char* column : {"DATA", "FLAG", "WEIGHT_SPECTRUM"})
            fix(column, IPosition(2, hands, channels));
        for (const char* column : {"WEIGHT", "SIGMA"})
            fix(column, IPosition(1, hands));
    }
    const auto add = [&](auto one, const char* column) {
        using Type = decltype(one);
        if (channels > 0)
            desc.addColumn(ArrayColumnDesc<Type>(column, IPosition(2, hands, channels),
                                                 ColumnDesc::FixedShape));
        else
            desc.addColumn(ArrayColumnDesc<Type>(column, 2));
    };
    add(Bool{}, "ORIGINAL_FLAG");
    add(Float{}, "ORIGINAL_WEIGHT");
    desc.addColumn(ScalarColumnDesc<Double>(
        "PAVANE_TIME", "days since 0h of the reference day, as in the file of visibilities"));
    SetupNewTable setup(name, desc, Table::New);
    IncrementalStMan slow("Slow");
    setup.bindAll(slow);
    StandardStMan quick("Quick", 32768);
    for (const char* column : {"ANTENNA1", "ANTENNA2", "DATA_DESC_ID", "UVW", "WEIGHT", "SIGMA",
                               "FLAG_ROW", "FLAG_CATEGORY"})
        setup.bindColumn(column, quick);
    TableDesc none;
    bindCells<Complex>(none, setup, "DATA", 0, hands, channels);
    bindCells<Bool>(none, setup, "FLAG", 0, hands, channels);
    bindCells<Float>(none, setup, "WEIGHT_SPECTRUM", 0, hands, channels);
    bindCells<Bool>(none, setup, "ORIGINAL_FLAG", 0, hands, channels);
    bindCells<Float>(none, setup, "ORIGINAL_WEIGHT", 0, hands, channels);
    // never freed on the way of a failure: what its end would write to the disk fails again
    auto* const ms = new MeasurementSet(setup, 0);  // NOLINT
    ms->createDefaultSubtables(Table::New);
    return ms;
}

int commonChannels(const std::vector<MsWindow>& windows)
{
    const std::size_t first = windows.empty() ? 0 : windows[0].frequencies.size();
    for (const MsWindow& window : windows)
        if (window.frequencies.size() != first)
            return 0;
    return static_cast<int>(first);
}

}  // namespace

IPosition tileShape(int hands, int channels, std::size_t bytes)
{
    constexpr std::size_t tile = std::size_t{1} << 17;
    const auto row = static_cast<std::size_t>(hands) * static_cast<std::size_t>(channels) * bytes;
    const auto rows = std::clamp<std::size_t>(tile / std::max<std::size_t>(row, 1), 1, 8192);
    // flags are bits, eight of them a byte
    return {3, hands, channels, static_cast<ssize_t>((rows + 7) / 8 * 8)};
}

void meanWeights(const float* weights, const bool* flags, int hands, int channels, float* means)
{
    for (int h = 0; h < hands; ++h) {
        double sum = 0, all = 0;
        int count = 0;
        for (int c = 0; c < channels; ++c) {
            const int at = c * hands + h;
            all += static_cast<double>(weights[at]);
            if (!flags[at]) {
                sum += static_cast<double>(weights[at]);
                ++count;
            }
        }
        means[h] = static_cast<float>(count > 0 ? sum / count : channels > 0 ? all / channels : 0);
    }
}

void MsBuilder::Block::clear()
{
    rows.clear();
    data.clear();
    flags.clear();
    weights.clear();
}

MsBuilder::MsBuilder(const std::string& name, const HandPlan& plan, std::vector<MsWindow> windows)
    : plan_(plan), windows_(std::move(windows)),
      ms_(*newMs(name, static_cast<int>(plan.stored.size()), commonChannels(windows_)))
{
    ArrayColumn<Bool> categories(ms_, "FLAG_CATEGORY");
    categories.rwKeywordSet().define("CATEGORY", Vector<String>());
}

void MsBuilder::add(const Block& block)
{
    const std::size_t count = block.rows.size();
    if (count == 0)
        return;
    const rownr_t first = ms_.nrow();
    ms_.addRow(count);
    const Slicer range = rowRange(first, count);
    const auto putInt = [&](const char* name, auto get) {
        Vector<Int> values(count);
        for (std::size_t i = 0; i < count; ++i)
            values[i] = get(block.rows[i]);
        ScalarColumn<Int>(ms_, name).putColumnRange(range, values);
    };
    const auto putDouble = [&](const char* name, auto get) {
        Vector<Double> values(count);
        for (std::size_t i = 0; i < count; ++i)
            values[i] = get(block.rows[i]);
        ScalarColumn<Double>(ms_, name).putColumnRange(range, values);
    };
    putInt("ANTENNA1", [](const MsRow& row) { return row.first; });
    putInt("ANTENNA2", [](const MsRow& row) { return row.second; });
    putInt("ARRAY_ID", [](const MsRow& row) { return row.array; });
    putInt("DATA_DESC_ID", [](const MsRow& row) { return row.window; });
    putInt("FIELD_ID", [](const MsRow& row) { return row.field; });
    putInt("SCAN_NUMBER", [](const MsRow& row) { return row.scan; });
    putInt("OBSERVATION_ID", [](const MsRow& row) { return row.observation; });
    for (const char* name : {"FEED1", "FEED2"})
        putInt(name, [](const MsRow&) { return 0; });
    for (const char* name : {"PROCESSOR_ID", "STATE_ID"})
        putInt(name, [](const MsRow&) { return -1; });
    for (const char* name : {"TIME", "TIME_CENTROID"})
        putDouble(name, [](const MsRow& row) { return row.time; });
    putDouble("INTERVAL", [](const MsRow& row) { return row.interval; });
    putDouble("EXPOSURE", [](const MsRow& row) { return row.exposure; });
    putDouble("PAVANE_TIME", [](const MsRow& row) { return row.hostTime; });

    const int hands = static_cast<int>(plan_.stored.size());
    std::vector<int> channels(count);
    Matrix<Double> uvw(3, count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto window = static_cast<std::size_t>(block.rows[i].window);
        channels[i] = static_cast<int>(windows_[window].frequencies.size());
        for (std::size_t axis = 0; axis < 3; ++axis)
            uvw(axis, i) = block.rows[i].uvw[axis];
    }
    ArrayColumn<Double>(ms_, "UVW").putColumnRange(range, uvw);
    Vector<Complex> data(block.data.size());
    Vector<Bool> flags(block.flags.size());
    Vector<Float> weights(block.weights.size());
    std::copy(block.data.begin(), block.data.end(), data.data());
    std::transform(block.flags.begin(), block.flags.end(), flags.data(),
                   [](unsigned char flag) { return flag != 0; });
    std::copy(block.weights.begin(), block.weights.end(), weights.data());
    Cells<Complex>(ms_, "DATA").put(first, hands, channels, data);
    for (const char* name : {"FLAG", "ORIGINAL_FLAG"})
        Cells<Bool>(ms_, name).put(first, hands, channels, flags);
    for (const char* name : {"WEIGHT_SPECTRUM", "ORIGINAL_WEIGHT"})
        Cells<Float>(ms_, name).put(first, hands, channels, weights);

    Matrix<Float> means(static_cast<std::size_t>(hands), count), sigmas(means.shape());
    Vector<Bool> rowFlags(count);
    std::size_t at = 0;
    for (std::size_t i = 0; i < count; ++i) {
        float* const mean = means.data() + i * static_cast<std::size_t>(hands);
        meanWeights(weights.data() + at, flags.data() + at, hands, channels[i], mean);
        for (int h = 0; h < hands; ++h)
            sigmas(static_cast<std::size_t>(h), i) = mean[h] > 0 ? 1 / std::sqrt(mean[h]) : 0;
        const std::size_t cells =
            static_cast<std::size_t>(hands) * static_cast<std::size_t>(channels[i]);
        rowFlags[i] = std::all_of(flags.data() + at, flags.data() + at + cells,
                                  [](bool flag) { return flag; });
        at += cells;
    }
    ArrayColumn<Float>(ms_, "WEIGHT").putColumnRange(range, means);
    ArrayColumn<Float>(ms_, "SIGMA").putColumnRange(range, sigmas);
    ScalarColumn<Bool>(ms_, "FLAG_ROW").putColumnRange(range, rowFlags);
}

void MsBuilder::writeWindows()
{
    MSPolarization polarization = ms_.polarization();
    polarization.addRow();
    MSPolarizationColumns hands(polarization);
    const auto count = plan_.stored.size();
    Vector<Int> types(count);
    Matrix<Int> products(2, count);
    for (std::size_t i = 0; i < count; ++i) {
        types[i] = plan_.stored[i];
        // RR, RL, LR, LL and XX.. follow each other
        const int place = (plan_.stored[i] - 5) % 4;
        products(0, i) = place / 2;
        products(1, i) = place % 2;
    }
    hands.numCorr().put(0, static_cast<Int>(count));
    hands.corrType().put(0, types);
    hands.corrProduct().put(0, products);
    hands.flagRow().put(0, False);

    MSSpectralWindow spectral = ms_.spectralWindow();
    MSDataDescription descriptions = ms_.dataDescription();
    MSSpWindowColumns windows(spectral);
    MSDataDescColumns links(descriptions);
    for (const MsWindow& window : windows_) {
        const rownr_t row = spectral.nrow();
        spectral.addRow();
        descriptions.addRow();
        const Vector<Double> frequencies(window.frequencies), widths(window.widths);
        Vector<Double> sizes(widths.size());
        double total = 0;
        for (std::size_t i = 0; i < widths.size(); ++i)
            total += sizes[i] = std::abs(widths[i]);
        windows.numChan().put(row, static_cast<Int>(frequencies.size()));
        windows.name().put(row, window.name);
        windows.refFrequency().put(row, window.reference);
        windows.chanFreq().put(row, frequencies);
        windows.chanWidth().put(row, widths);
        windows.effectiveBW().put(row, sizes);
        windows.resolution().put(row, sizes);
        windows.totalBandwidth().put(row, total);
        windows.measFreqRef().put(row, window.frame);
        windows.netSideband().put(row, window.sideband);
        windows.freqGroup().put(row, 0);
        windows.freqGroupName().put(row, "");
        windows.ifConvChain().put(row, 0);
        windows.flagRow().put(row, False);
        links.spectralWindowId().put(row, static_cast<Int>(row));
        links.polarizationId().put(row, 0);
        links.flagRow().put(row, False);
    }
}

void MsBuilder::writeHistory(const std::vector<std::string>& lines, const std::string& origin)
{
    MSHistory history = ms_.history();
    const rownr_t first = history.nrow();
    history.addRow(lines.size());
    MSHistoryColumns columns(history);
    const double now = ms_.nrow() > 0 ? ScalarColumn<Double>(ms_, "TIME")(0) : 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const rownr_t row = first + i;
        columns.time().put(row, now);
        columns.observationId().put(row, 0);
        columns.message().put(row, lines[i]);
        columns.priority().put(row, "NORMAL");
        columns.origin().put(row, origin);
        columns.objectId().put(row, 0);
        columns.application().put(row, "pavane-ms");
        columns.cliCommand().put(row, Vector<String>());
        columns.appParams().put(row, Vector<String>());
    }
}

void MsBuilder::finish(const WorkFacts& facts)
{
    facts.write(ms_);
    ms_.flush(True);
    delete &ms_;  // NOLINT: see newMs
}

void WorkFacts::write(Table& table) const
{
    TableRecord record;
    Vector<String> names(hands.size());
    std::copy(hands.begin(), hands.end(), names.begin());
    record.define("VERSION", 1);
    record.define("HANDS", names);
    record.define("IFS", Vector<Int>(ifs));
    record.define("ANTENNA_NUMBERS", Vector<Int>(antennaNumbers));
    record.define("ANTENNA_SUBARRAYS", Vector<Int>(antennaSubarrays));
    record.define("SOURCES", Vector<Int>(sources));
    record.define("REFERENCE_DAY", referenceDay);
    record.define("INTENSITY", isIntensity != 0);
    record.define("INPUT", String(input));
    record.define("KIND", String(kind));
    table.rwKeywordSet().defineRecord(key, record);
}

int WorkFacts::read(const Table& table)
{
    const TableRecord& keys = table.keywordSet();
    const TableDesc& desc = table.tableDesc();
    if (!keys.isDefined(key) || !desc.isColumn("ORIGINAL_FLAG") ||
        !desc.isColumn("ORIGINAL_WEIGHT") || !desc.isColumn("PAVANE_TIME"))
        return 0;
    const TableRecord& record = keys.subRecord(key);
    if (record.asInt("VERSION") != 1)
        throw Failure("was made by a newer version of pavane-ms");
    hands.clear();
    for (const String& name : record.asArrayString("HANDS"))
        hands.push_back(name);
    const auto ints = [&](const char* name) {
        if (!record.isDefined(name))
            return std::vector<int>();
        const Array<Int> values = record.asArrayInt(name);
        return std::vector<int>(values.begin(), values.end());
    };
    ifs = ints("IFS");
    antennaNumbers = ints("ANTENNA_NUMBERS");
    antennaSubarrays = ints("ANTENNA_SUBARRAYS");
    sources = ints("SOURCES");
    referenceDay = record.asDouble("REFERENCE_DAY");
    isIntensity = record.asBool("INTENSITY");
    input = record.asString("INPUT");
    kind = record.asString("KIND");
    return 1;
}

}  // namespace pavane_ms
