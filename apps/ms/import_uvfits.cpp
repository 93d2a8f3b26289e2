#include "apps/ms/Failure.h"
#include "apps/ms/import_data.h"
#include "apps/ms/MsBuilder.h"
#include "apps/ms/OutputPath.h"
#include "apps/ms/text.h"
#include "apps/ms/UvFile.h"
#include "apps/ms/Watch.h"

#include <algorithm>
#include <casacore/measures/Measures/MDirection.h>
#include <casacore/measures/Measures/MFrequency.h>
#include <casacore/ms/MeasurementSets/MSColumns.h>
#include <cmath>
#include <map>
#include <numeric>
#include <tuple>
#include <utility>

namespace pavane_ms
{

using namespace casacore;  // NOLINT

namespace
{

constexpr double speedOfLight = 299792458.0;
constexpr double secondsPerDay = 86400.0;
constexpr double radiansPerDegree = 3.14159265358979323846 / 180;

/// Numbers of antennas, fields and windows are given as the groups name them.
class UvImport
{
public:
    UvImport(UvFile& file, const Selection& selection);

    const HandPlan& plan() const { return plan_; }
    const std::vector<MsWindow>& windows() const { return windows_; }
    int isTaken(const UvGroup& group) const;
    /// The first pass: what there will be.
    void count(ImportCount& count, Watch& watch);
    void fill(MsBuilder& builder, Watch& watch);
    void writeTables(MsBuilder& builder, WorkFacts& facts);

private:
    int antennaOf(int subarray, int number);
    int fieldOf(int source);
    int scanOf(std::int64_t index, const UvGroup& group);
    void takeCells(std::int64_t i, int ifIndex, MsBuilder::Block& block) const;
    void writeAntennas(MeasurementSet& ms);
    void writeFields(MeasurementSet& ms);

    UvFile& file_;
    const Selection& selection_;
    HandPlan plan_;
    std::vector<int> ifs_;  ///< from 0
    std::vector<MsWindow> windows_;
    std::map<int, int> windowOf_;  ///< first one of a selection of frequencies
    std::map<std::pair<int, int>, int> antennaOf_;
    std::vector<UvAntenna> antennas_;
    std::map<int, int> fieldOf_;
    std::vector<UvSource> fields_;
    std::size_t scan_ = 0;
    int ownScan_ = 0, lastSource_ = -1;
    double lastTime_ = 0, shortest_ = 1, first_ = 1e300, last_ = -1e300;
};

UvImport::UvImport(UvFile& file, const Selection& selection) : file_(file), selection_(selection)
{
    std::vector<int> codes;
    for (const int code : file.stokes())
        codes.push_back(storedHand(code));
    plan_ = planHands(codes, selection.hands);
    if (!selection.column.empty() && selection.column != "DATA")
        throw Failure("a UVFITS file has no column " + selection.column);
    for (const int number : selection.ifs) {
        if (number > file.ifs())
            throw Failure("the data have no IF " + std::to_string(number) + ", only " +
                          std::to_string(file.ifs()));
        ifs_.push_back(number - 1);
    }
    if (ifs_.empty()) {
        ifs_.resize(static_cast<std::size_t>(file.ifs()));
        std::iota(ifs_.begin(), ifs_.end(), 0);
    }
    const std::string frame = file.header().text("SPECSYS");
    MFrequency::Types type = MFrequency::TOPO;
    if (frame.compare(0, 4, "LSRK") == 0)
        type = MFrequency::LSRK;
    else if (frame.compare(0, 4, "BARY") == 0)
        type = MFrequency::BARY;
    else if (frame.compare(0, 4, "GEOC") == 0)
        type = MFrequency::GEO;
    for (const UvSelection& frequencies : file.selections()) {
        windowOf_.try_emplace(frequencies.id, static_cast<int>(windows_.size()));
        for (const int i : ifs_) {
            const UvIf& one = frequencies.ifs[static_cast<std::size_t>(i)];
            MsWindow window;
            window.ifNumber = i + 1;
            window.name = "IF " + std::to_string(i + 1);
            window.reference = one.frequency;
            window.frame = type;
            window.sideband = one.sideband;
            for (int c = 0; c < file.channels(); ++c)
                window.frequencies.push_back(one.frequency + c * one.width);
            window.widths.assign(static_cast<std::size_t>(file.channels()), one.width);
            windows_.push_back(window);
        }
    }
    for (const UvAntenna& antenna : file.antennas())
        if (antennaOf_
                .try_emplace({antenna.subarray, antenna.number}, static_cast<int>(antennas_.size()))
                .second)
            antennas_.push_back(antenna);
    if (!selection.source.empty() &&
        std::none_of(file.sources().begin(), file.sources().end(), [&](const UvSource& source) {
            return source.name == selection.source || std::to_string(source.id) == selection.source;
        }))
        throw Failure("the data have no source " + selection.source);
}

int UvImport::isTaken(const UvGroup& group) const
{
    if (!selection_.hasTime(group.time))
        return 0;
    if (selection_.source.empty())
        return 1;
    return std::any_of(file_.sources().begin(), file_.sources().end(), [&](const UvSource& source) {
        return source.id == group.source &&
               (source.name == selection_.source || std::to_string(source.id) == selection_.source);
    });
}

void UvImport::count(ImportCount& count, Watch& watch)
{
    const std::int64_t step = file_.blockGroups();
    double before = 0, shortest = 1e300;
    for (std::int64_t first = 0; first < file_.groups(); first += step) {
        watch.step(static_cast<std::uint64_t>(first) / 4);
        const std::int64_t block = std::min(step, file_.groups() - first);
        file_.readGroups(first, block);
        for (std::int64_t i = 0; i < block; ++i) {
            const UvGroup group = file_.group(i);
            if (!isWhole(group)) {
                ++count.leftOut;
                continue;
            }
            if (const double gap = (group.time - before) * secondsPerDay; gap > 1e-3)
                shortest = std::min(shortest, gap);
            before = group.time;
            count.rows += isTaken(group) ? ifs_.size() : 0;
        }
    }
    shortest_ = shortest < secondsPerDay ? shortest : 1;
    count.cells = count.rows * plan_.stored.size() * static_cast<std::uint64_t>(file_.channels());
    count.notes = file_.notes();
}

int UvImport::antennaOf(int subarray, int number)
{
    const auto [place, isNew] =
        antennaOf_.try_emplace({subarray, number}, static_cast<int>(antennas_.size()));
    if (isNew) {
        UvAntenna antenna;
        antenna.subarray = subarray;
        antenna.number = number;
        antennas_.push_back(antenna);
    }
    return place->second;
}

int UvImport::fieldOf(int source)
{
    const auto [place, isNew] = fieldOf_.try_emplace(source, static_cast<int>(fields_.size()));
    if (isNew) {
        const auto found = std::find_if(file_.sources().begin(), file_.sources().end(),
                                        [&](const UvSource& one) { return one.id == source; });
        if (found == file_.sources().end())
            throw Failure("the data name a source " + std::to_string(source) +
                          " that their table of sources lacks");
        if (!std::isfinite(found->ra) || !std::isfinite(found->dec))
            throw Failure("the data do not tell where " + found->name + " lies on the sky");
        fields_.push_back(*found);
    }
    return place->second;
}

/// That of the index of scans; without one a pause or another source begins a new one.
int UvImport::scanOf(std::int64_t index, const UvGroup& group)
{
    const std::vector<UvScan>& scans = file_.scans();
    while (scan_ + 1 < scans.size() && scans[scan_].last < index)
        ++scan_;
    if (scan_ < scans.size() && scans[scan_].first <= index && index <= scans[scan_].last)
        return static_cast<int>(scan_) + 1;
    constexpr double pause = 120, times = 5;
    const double gap = std::abs(group.time - lastTime_) * secondsPerDay;
    if (ownScan_ == 0 || group.source != lastSource_ ||
        gap > std::max(pause, times * group.integration))
        ++ownScan_;
    return static_cast<int>(scans.size()) + ownScan_;
}

void UvImport::takeCells(std::int64_t i, int ifIndex, MsBuilder::Block& block) const
{
    for (int c = 0; c < file_.channels(); ++c)
        for (const int from : plan_.from) {
            if (from < 0) {
                block.data.emplace_back(0, 0);
                block.weights.push_back(0);
                block.flags.push_back(1);
                continue;
            }
            const std::array<float, 3> one = file_.visibility(i, ifIndex, c, from);
            const int isGood = std::isfinite(one[0]) && std::isfinite(one[1]) &&
                               std::isfinite(one[2]) && one[2] > 0;
            const float weight = std::isfinite(one[2]) ? std::abs(one[2]) : 0;
            block.data.emplace_back(one[0], one[1]);
            block.weights.push_back(plan_.isIntensity ? weight / 2 : weight);
            block.flags.push_back(!isGood);
        }
}

void UvImport::fill(MsBuilder& builder, Watch& watch)
{
    const std::int64_t step = file_.blockGroups();
    MsBuilder::Block block;
    for (std::int64_t first = 0; first < file_.groups(); first += step) {
        const auto total = static_cast<std::uint64_t>(file_.groups());
        watch.step(total / 4 + static_cast<std::uint64_t>(first) * 3 / 4);
        const std::int64_t groups = std::min(step, file_.groups() - first);
        file_.readGroups(first, groups);
        block.clear();
        for (std::int64_t i = 0; i < groups; ++i) {
            const UvGroup group = file_.group(i);
            if (!isWhole(group) || !isTaken(group))
                continue;
            const auto window = windowOf_.find(group.selection);
            if (window == windowOf_.end())
                throw Failure("the data name a selection of frequencies " +
                              std::to_string(group.selection) + " that their table lacks");
            MsRow row;
            row.hostTime = group.time;
            row.time = (file_.referenceDay() - modifiedZero + group.time) * secondsPerDay -
                       file_.aheadOfUtc();
            row.interval = row.exposure = group.integration > 0 ? group.integration : shortest_;
            row.uvw = {group.u * speedOfLight, group.v * speedOfLight, group.w * speedOfLight};
            row.first = antennaOf(group.subarray, group.first);
            row.second = antennaOf(group.subarray, group.second);
            row.array = group.subarray - 1;
            row.field = fieldOf(group.source);
            row.scan = scanOf(first + i, group);
            lastTime_ = group.time;
            lastSource_ = group.source;
            first_ = std::min(first_, row.time);
            last_ = std::max(last_, row.time);
            for (std::size_t k = 0; k < ifs_.size(); ++k) {
                row.window = window->second + static_cast<int>(k);
                block.rows.push_back(row);
                takeCells(i, ifs_[k], block);
            }
        }
        builder.add(block);
    }
    watch.step(static_cast<std::uint64_t>(file_.groups()));
}

void UvImport::writeAntennas(MeasurementSet& ms)
{
    MSAntenna table = ms.antenna();
    MSFeed feedTable = ms.feed();
    table.addRow(antennas_.size());
    feedTable.addRow(antennas_.size());
    MSAntennaColumns columns(table);
    MSFeedColumns feeds(feedTable);
    const double middle = first_ <= last_ ? (first_ + last_) / 2 : 0;
    for (std::size_t i = 0; i < antennas_.size(); ++i) {
        const UvAntenna& antenna = antennas_[i];
        const String name =
            antenna.name.empty() ? "ANT" + std::to_string(antenna.number) : antenna.name;
        columns.name().put(i, name);
        columns.station().put(i, name);
        columns.type().put(i, antenna.mount == 2 ? "SPACE-BASED" : "GROUND-BASED");
        const char* const mounts[] = {"ALT-AZ", "EQUATORIAL", "ORBITING", "X-Y"};
        columns.mount().put(i, antenna.mount >= 0 && antenna.mount < 4 ? mounts[antenna.mount]
                                                                       : "ALT-AZ");
        columns.position().put(i, Vector<Double>(std::vector<double>(antenna.position.begin(),
                                                                     antenna.position.end())));
        columns.offset().put(i, Vector<Double>(3, 0.0));
        columns.dishDiameter().put(i, antenna.diameter);
        columns.flagRow().put(i, False);
        feeds.antennaId().put(i, static_cast<Int>(i));
        feeds.feedId().put(i, 0);
        feeds.spectralWindowId().put(i, -1);
        feeds.beamId().put(i, -1);
        feeds.time().put(i, middle);
        feeds.interval().put(i, 0.0);
        feeds.numReceptors().put(i, 2);
        feeds.beamOffset().put(i, Matrix<Double>(2, 2, 0.0));
        Vector<String> types(2);
        Vector<Double> angles(2);
        for (std::size_t f = 0; f < 2; ++f) {
            types[f] = String(1, antenna.feeds[f]);
            angles[f] = antenna.feedAngles[f] * radiansPerDegree;
        }
        Matrix<Complex> response(2, 2, Complex(0));
        response(0, 0) = response(1, 1) = Complex(1);
        feeds.polarizationType().put(i, types);
        feeds.polResponse().put(i, response);
        feeds.position().put(i, Vector<Double>(3, 0.0));
        feeds.receptorAngle().put(i, angles);
    }
}

void UvImport::writeFields(MeasurementSet& ms)
{
    MSField table = ms.field();
    MSFieldColumns columns(table);
    const int isOld = !fields_.empty() && fields_[0].equinox < 1975;
    columns.setDirectionRef(isOld ? MDirection::B1950 : MDirection::J2000);
    table.addRow(fields_.size());
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        Matrix<Double> place(2, 1);
        // longitudes as casacore has them, from -180 to 180 degrees
        place(0, 0) = std::remainder(fields_[i].ra, 360.0) * radiansPerDegree;
        place(1, 0) = fields_[i].dec * radiansPerDegree;
        columns.name().put(i, fields_[i].name);
        columns.code().put(i, "");
        columns.time().put(i, first_);
        columns.numPoly().put(i, 0);
        columns.delayDir().put(i, place);
        columns.phaseDir().put(i, place);
        columns.referenceDir().put(i, place);
        columns.sourceId().put(i, -1);
        columns.flagRow().put(i, False);
    }
}

void UvImport::writeTables(MsBuilder& builder, WorkFacts& facts)
{
    MeasurementSet& ms = builder.ms();
    writeAntennas(ms);
    writeFields(ms);
    builder.writeWindows();
    MSObservation table = ms.observation();
    table.addRow();
    MSObservationColumns columns(table);
    const FitsHeader& header = file_.header();
    const std::string telescope = header.text("TELESCOP");
    columns.telescopeName().put(0, telescope.empty() ? "UNKNOWN" : telescope);
    columns.observer().put(0, header.text("OBSERVER"));
    columns.project().put(0, header.text("OBSERVER"));
    Vector<Double> range(2);
    range[0] = first_;
    range[1] = last_;
    columns.timeRange().put(0, range);
    columns.releaseDate().put(0, 0.0);
    columns.scheduleType().put(0, "");
    columns.schedule().put(0, Vector<String>());
    columns.log().put(0, Vector<String>());
    columns.flagRow().put(0, False);
    builder.writeHistory(header.history, "UVFITS HISTORY");
    facts.hands = plan_.names;
    facts.isIntensity = plan_.isIntensity;
    facts.referenceDay = file_.referenceDay();
    facts.kind = "UVFITS";
    for (const MsWindow& window : windows_)
        facts.ifs.push_back(window.ifNumber);
    for (const UvAntenna& antenna : antennas_) {
        facts.antennaNumbers.push_back(antenna.number);
        facts.antennaSubarrays.push_back(antenna.subarray);
    }
    for (const UvSource& field : fields_)
        facts.sources.push_back(field.id);
}

}  // namespace

void importUvFits(const std::string& input, const std::string& part, const std::string& output,
                  const Selection& selection, ImportCount& count)
{
    UvFile file(input);
    UvImport work(file, selection);
    Watch watch(static_cast<std::uint64_t>(file.groups()), part.empty());
    work.count(count, watch);
    for (const std::string& hand : work.plan().leftOut)
        count.notes.push_back("its hand " + hand + " is left out");
    if (part.empty())
        return;
    if (count.rows == 0)
        throw Failure(input + " has no visibilities in what is to be taken");
    if (count.leftOut > 0 && !selection.leavesOut)
        throw Failure(std::to_string(count.leftOut) + " groups of " + input +
                      " have no antennas, time or place; --leave-out takes the others");
    needSpace(output, workingSize(count.rows, count.cells));
    auto* const builder = new MsBuilder(part, work.plan(), work.windows());  // NOLINT: see newMs
    work.fill(*builder, watch);
    WorkFacts facts;
    facts.input = input;
    work.writeTables(*builder, facts);
    builder->writeHistory({"pavane-ms import " + plain(input)}, "pavane-ms");
    builder->finish(facts);
    delete builder;  // NOLINT
}

}  // namespace pavane_ms
