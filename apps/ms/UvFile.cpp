#include "apps/ms/UvFile.h"

#include "apps/ms/Failure.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace pavane_ms
{

namespace
{

constexpr double speedOfLight = 299792458.0;
constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t mostGroupBytes = std::int64_t{1} << 30;

int isNamed(std::string_view text, std::string_view name)
{
    return text.substr(0, name.size()) == name &&
           (text.size() == name.size() || text[name.size()] == '-');
}

struct Axis {
    std::string name;
    std::int64_t length, step;
    double value, width, pixel;
};

/// The nearest whole number from `least` to `most`, else -1.
int wholeOf(double value, int least, int most)
{
    return value > least - 0.5 && value < most + 0.5 ? static_cast<int>(std::lround(value)) : -1;
}

}  // namespace

int isWhole(const UvGroup& group)
{
    constexpr double mostSeconds = 1e6, mostDays = 1e5;
    return group.first >= 0 && group.second >= 0 && std::abs(group.time) < mostDays &&
           std::abs(group.u) < mostSeconds && std::abs(group.v) < mostSeconds &&
           std::abs(group.w) < mostSeconds;
}

UvFile::UvFile(const std::string& name) : file_(name)
{
    if (!readHeader(file_, 0, header_))
        throw Failure(name + " is no UVFITS file: its header cannot be read");
    try {
        readLayout();
        readTables();
        settle();
    } catch (const Failure& failure) {
        throw Failure(name + " " + failure.what());
    }
}

void UvFile::readLayout()
{
    const std::int64_t axisCount = header_.whole("NAXIS", 0);
    const std::int64_t parameters = header_.whole("PCOUNT", 0);
    if (header_.text("GROUPS") != "T" || header_.whole("NAXIS1", -1) != 0)
        throw Failure("holds no visibilities (no random groups)");
    bitpix_ = static_cast<int>(header_.whole("BITPIX", 0) % 1000);
    groups_ = header_.whole("GCOUNT", 1);
    const int types[] = {8, 16, 32, 64, -32, -64};
    if (std::find(std::begin(types), std::end(types), bitpix_) == std::end(types) ||
        axisCount < 2 || axisCount > 99 || parameters < 0 || parameters > 999 || groups_ < 0)
        throw Failure("has a header that cannot be true");
    std::vector<Axis> axes;
    std::int64_t step = 1;
    for (std::int64_t i = 2; i <= axisCount; ++i) {
        const std::string n = std::to_string(i);
        axes.push_back({header_.text("CTYPE" + n), header_.whole("NAXIS" + n, 0), step,
                        header_.number("CRVAL" + n, nothing), header_.number("CDELT" + n, 1),
                        header_.number("CRPIX" + n, 1)});
        if (axes.back().length < 1 || axes.back().length > mostGroupBytes / step)
            throw Failure("has an axis of a length that cannot be true");
        step *= axes.back().length;
    }
    const std::int64_t bytes = std::abs(bitpix_) / 8;
    parameterBytes_ = parameters * bytes;
    groupBytes_ = parameterBytes_ + step * bytes;
    if (groupBytes_ > mostGroupBytes)
        throw Failure("has groups of a length that cannot be true");
    if (groups_ > (file_.size() - header_.dataStart) / groupBytes_)
        throw Failure("ends before its " + std::to_string(groups_) + " groups do");
    const auto find = [&](std::string_view name) -> const Axis* {
        for (const Axis& axis : axes)
            if (isNamed(axis.name, name))
                return &axis;
        return nullptr;
    };
    const Axis* const complex = find("COMPLEX");
    const Axis* const stokes = find("STOKES");
    const Axis* const channels = find("FREQ");
    const Axis* ifs = find("IF");
    for (const Axis& axis : axes)
        if (!ifs && axis.name.empty() && axis.length > 1)
            ifs = &axis;
    if (!complex || complex->length < 2 || complex->length > 1000)
        throw Failure("has no axis of complex numbers");
    const std::int64_t hands = stokes ? stokes->length : 1;
    if (hands > 16 || (ifs && ifs->length > 65536))
        throw Failure("has polarisations or IFs in a number that cannot be true");
    for (std::int64_t i = 0; i < hands; ++i) {
        const double code =
            stokes ? stokes->value + (static_cast<double>(i) + 1 - stokes->pixel) * stokes->width
                   : 1;
        stokes_.push_back(std::abs(code) < 1000 ? static_cast<int>(std::lround(code)) : 0);
    }
    complexStep_ = complex->step;
    complexLength_ = static_cast<int>(complex->length);
    stokesStep_ = stokes ? stokes->step : 0;
    channelStep_ = channels ? channels->step : 0;
    ifStep_ = ifs ? ifs->step : 0;
    ifs_ = ifs ? static_cast<int>(ifs->length) : 1;
    channels_ = channels ? static_cast<int>(channels->length) : 1;
    frequency_ = channels ? channels->value : nothing;
    channelWidth_ = channels ? channels->width : 0;
    referenceChannel_ = channels ? channels->pixel : 1;
    scale_ = header_.number("BSCALE", 1);
    scale_ = scale_ == 0 ? 1 : scale_;
    zero_ = header_.number("BZERO", 0);
    hasBlank_ = bitpix_ > 0 && header_.has("BLANK");
    blank_ = header_.number("BLANK", 0);
    readParameters(parameters);
    const Axis *const ra = find("RA"), *const dec = find("DEC");
    double equinox = header_.number("EQUINOX", 0);
    equinox = equinox > 0 ? equinox : header_.number("EPOCH", 2000);
    sources_ = {{1, header_.text("OBJECT"), ra ? ra->value : nothing, dec ? dec->value : nothing,
                 equinox > 0 ? equinox : 2000}};
}

void UvFile::readParameters(std::int64_t count)
{
    struct Kind {
        std::string_view name;
        Terms* terms;
        std::string first;
    };
    Kind kinds[] = {{"UU", &u_, {}},
                    {"VV", &v_, {}},
                    {"WW", &w_, {}},
                    {"BASELINE", &baseline_, {}},
                    {"DATE", &date_, {}},
                    {"ANTENNA1", &antenna1_, {}},
                    {"ANTENNA2", &antenna2_, {}},
                    {"SUBARRAY", &subarray_, {}},
                    {"SOURCE", &source_, {}},
                    {"FREQSEL", &selection_, {}},
                    {"FREQ ID", &selection_, {}},
                    {"FREQID", &selection_, {}},
                    {"INTTIM", &integration_, {}}};
    for (std::int64_t i = 0; i < count; ++i) {
        const std::string n = std::to_string(i + 1);
        std::string name = header_.text("PTYPE" + n), plainName = name;
        for (const char* axis : {"UU", "VV", "WW"})
            if (isNamed(name, axis))
                plainName = axis;
        if (name == "_DATE")
            plainName = name = "DATE";
        const std::string unit =
            plainName.size() == 2 && name.size() > 3 ? name.substr(2, 2) : std::string();
        for (Kind& kind : kinds) {
            if (kind.name != plainName || (!kind.first.empty() && kind.first != name))
                continue;
            kind.first = name;
            if (plainName.size() == 2)
                secondsOfU_ = unit == "-L"   ? (frequency_ > 0 ? 1 / frequency_ : 1)
                              : unit == "-M" ? 1 / speedOfLight
                                             : 1;
            const double scale = header_.number("PSCAL" + n, 1);
            kind.terms->push_back({i * std::abs(bitpix_) / 8, scale == 0 ? 1 : scale,
                                   header_.number("PZERO" + n, 0)});
        }
    }
    if (u_.empty() || v_.empty() || w_.empty())
        throw Failure("does not tell u, v and w of its visibilities");
    if (baseline_.empty() && (antenna1_.empty() || antenna2_.empty()))
        throw Failure("does not tell which antennas its visibilities are of");
    if (date_.empty())
        throw Failure("does not tell the times of its visibilities");
}

void UvFile::readTables()
{
    referenceDay_ = julianDay(header_.text("DATE-OBS"));
    FitsHeader header;
    int hasSelections = 0, hasSources = 0, hasScans = 0;
    constexpr int mostTables = 10000;
    std::int64_t start = header_.next;
    for (int i = 0; i < mostTables && start < file_.size(); ++i, start = header.next) {
        if (!readHeader(file_, start, header)) {
            // other records may follow, but no header that is cut
            char begin[8] = {};
            file_.read(start, begin,
                       std::min<std::size_t>(sizeof begin,
                                             static_cast<std::size_t>(file_.size() - start)));
            if (std::string_view(begin, sizeof begin) == "XTENSION")
                throw Failure("has a damaged header behind its groups");
            break;
        }
        const std::string name = header.text("EXTNAME");
        const int isKnown =
            name == "AIPS AN" || name == "AIPS FQ" || name == "AIPS SU" || name == "AIPS NX";
        FitsTable table;
        if (!isKnown)
            continue;
        if (!table.read(file_, header))
            throw Failure("has a damaged table " + name);
        if (name == "AIPS AN")
            readAntennas(table, header);
        else if (name == "AIPS FQ" && !hasSelections++)
            readSelections(table);
        else if (name == "AIPS SU" && !hasSources++)
            readSources(table);
        else if (name == "AIPS NX" && !hasScans++)
            readScans(table);
    }
    if (antennas_.empty())
        notes_.emplace_back("no table tells of its antennas");
}

void UvFile::readAntennas(const FitsTable& table, const FitsHeader& header)
{
    ++antennaTables_;
    const std::int64_t version = header.whole("EXTVER", antennaTables_);
    const int subarray =
        version > 0 && version < 65536 ? static_cast<int>(version) : antennaTables_;
    if (antennaTables_ == 1) {
        if (const double day = julianDay(header.text("RDATE")); day > 0)
            referenceDay_ = day;
        std::string system = header.text("TIMSYS");
        if (system.empty())
            system = header.text("TIMESYS");
        if (system == "IAT" || system == "TAI")
            aheadOfUtc_ = header.number("IATUTC", 0);
    }
    const double centre[] = {header.number("ARRAYX", 0), header.number("ARRAYY", 0),
                             header.number("ARRAYZ", 0)};
    // stations of an array with a centre stand in a frame whose x axis points to its meridian
    const int isLocal = std::hypot(centre[0], centre[1], centre[2]) > 1000;
    const double longitude =
        isLocal && header.text("FRAME") != "ITRF" ? std::atan2(centre[1], centre[0]) : 0;
    const double hand = header.text("XYZHAND") == "LEFT" ? -1 : 1;
    const int place = table.column("STABXYZ"), diameter = table.column("DIAMETER");
    for (std::int64_t row = 0; row < table.rows(); ++row) {
        UvAntenna antenna;
        antenna.subarray = subarray;
        antenna.number = wholeOf(table.number(row, table.column("NOSTA")), 0, 1 << 20);
        antenna.name = table.text(row, table.column("ANNAME"));
        const double x = table.number(row, place, 0), y = hand * table.number(row, place, 1);
        antenna.position = {std::cos(longitude) * x - std::sin(longitude) * y,
                            std::sin(longitude) * x + std::cos(longitude) * y,
                            table.number(row, place, 2)};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            antenna.position[axis] += isLocal ? centre[axis] : 0;
            if (!std::isfinite(antenna.position[axis]))
                antenna.position[axis] = 0;
        }
        antenna.mount = wholeOf(table.number(row, table.column("MNTSTA")), 0, 9);
        const double size = table.number(row, diameter);
        antenna.diameter = size > 0 && size < 1e6 ? size : 0;
        const char* const names[] = {"POLTYA", "POLTYB"};
        const char* const angles[] = {"POLAA", "POLAB"};
        for (int f = 0; f < 2; ++f) {
            const std::string feed = table.text(row, table.column(names[f]));
            if (!feed.empty())
                antenna.feeds[f] = feed[0];
            const double angle = table.number(row, table.column(angles[f]));
            antenna.feedAngles[f] = std::isfinite(angle) ? angle : 0;
        }
        if (antenna.number >= 0)
            antennas_.push_back(antenna);
    }
}

void UvFile::readSelections(const FitsTable& table)
{
    const int offset = table.column("IF FREQ"), width = table.column("CH WIDTH");
    const int sideband = table.column("SIDEBAND"), id = table.column("FRQSEL");
    for (std::int64_t row = 0; row < table.rows(); ++row) {
        UvSelection selection;
        selection.id = wholeOf(table.number(row, id), 0, 1 << 20);
        for (int i = 0; i < std::min(ifs_, table.count(offset)); ++i) {
            UvIf one;
            const double own = table.number(row, width, i);
            one.width = std::isfinite(own) && own != 0 ? own : channelWidth_;
            // an offset is that of the channel at the reference pixel
            one.frequency =
                frequency_ + table.number(row, offset, i) + (1 - referenceChannel_) * one.width;
            one.sideband = table.number(row, sideband, i) < 0 ? -1 : 1;
            selection.ifs.push_back(one);
        }
        if (static_cast<int>(selection.ifs.size()) != ifs_)
            notes_.push_back("its table AIPS FQ has " + std::to_string(selection.ifs.size()) +
                             " IFs where the data have " + std::to_string(ifs_));
        selections_.push_back(selection);
    }
}

void UvFile::readSources(const FitsTable& table)
{
    std::vector<UvSource> sources;
    for (std::int64_t row = 0; row < table.rows(); ++row) {
        UvSource source;
        source.id = wholeOf(table.number(row, table.column("ID. NO.")), 0, 1 << 20);
        source.name = table.text(row, table.column("SOURCE"));
        source.ra = table.number(row, table.column("RAEPO"));
        source.dec = table.number(row, table.column("DECEPO"));
        const double equinox = table.number(row, table.column("EPOCH"));
        source.equinox = equinox > 0 ? equinox : 2000;
        if (source.id >= 0)
            sources.push_back(source);
    }
    if (!sources.empty())
        sources_ = sources;
}

void UvFile::readScans(const FitsTable& table)
{
    const int first = table.column("START VIS"), last = table.column("END VIS");
    for (std::int64_t row = 0; row < table.rows(); ++row) {
        const double from = table.number(row, first), to = table.number(row, last);
        if (from >= 1 && to >= from && to <= static_cast<double>(groups_))
            scans_.push_back(
                {static_cast<std::int64_t>(from) - 1, static_cast<std::int64_t>(to) - 1});
    }
    std::sort(scans_.begin(), scans_.end(),
              [](const UvScan& a, const UvScan& b) { return a.first < b.first; });
}

void UvFile::settle()
{
    if (selections_.empty())
        selections_.push_back({1, {}});
    for (UvSelection& selection : selections_)
        while (static_cast<int>(selection.ifs.size()) < ifs_)
            selection.ifs.push_back(
                {frequency_ + (1 - referenceChannel_) * channelWidth_, channelWidth_, 1});
    for (const UvSelection& selection : selections_)
        for (const UvIf& one : selection.ifs)
            if (!(one.frequency > 0) || !(one.frequency < 1e18) || !std::isfinite(one.width))
                throw Failure("does not tell the frequencies of its IFs");
    if (referenceDay_ == 0 && groups_ > 0) {
        readGroups(0, 1);
        const double time = group(0).time;
        if (!(std::abs(time) < 1e9))
            throw Failure("has no date");
        referenceDay_ = std::floor(time - 0.5) + 0.5;
    }
}

std::int64_t UvFile::blockGroups() const
{
    constexpr std::int64_t blockBytes = std::int64_t{1} << 22;
    return std::max<std::int64_t>(blockBytes / groupBytes_, 1);
}

void UvFile::readGroups(std::int64_t first, std::int64_t count)
{
    block_.resize(static_cast<std::size_t>(count * groupBytes_));
    file_.read(header_.dataStart + first * groupBytes_, block_.data(), block_.size());
}

/// What the terms add up to. The great numbers meet first, so that Julian dates keep their
/// fractions.
double UvFile::sum(const unsigned char* group, const Terms& terms, double start) const
{
    for (const Term& term : terms)
        start += term.zero;
    for (const Term& term : terms)
        start += storedNumber(group + term.offset, bitpix_) * term.scale;
    return start;
}

UvGroup UvFile::group(std::int64_t i) const
{
    const unsigned char* const at = block_.data() + i * groupBytes_;
    UvGroup group;
    group.time = sum(at, date_, -referenceDay_);
    group.u = sum(at, u_, 0) * secondsOfU_;
    group.v = sum(at, v_, 0) * secondsOfU_;
    group.w = sum(at, w_, 0) * secondsOfU_;
    group.first = group.second = -1;
    if (!baseline_.empty()) {
        // 256 a + b, with hundredths that count the subarrays from 0
        double value = sum(at, baseline_, 0);
        if (bitpix_ > 0 && std::abs(baseline_[0].scale) > 0.01)
            value = std::floor(value + 0.5);
        constexpr double half = 0.005, wide = 65536;
        if (value > -half && value < wide - half) {
            const auto hundredths = static_cast<int>((value + half) * 100);
            group.first = hundredths / 100 / 256;
            group.second = hundredths / 100 % 256;
            group.subarray = hundredths % 100 + 1;
        } else if (value > -half && value < 1e9) {
            const long packed = std::lround(value - wide);
            group.first = static_cast<int>(packed / 2048);
            group.second = static_cast<int>(packed % 2048);
        }
    }
    if (!antenna1_.empty() && !antenna2_.empty()) {
        group.first = wholeOf(sum(at, antenna1_, 0), 0, 1 << 20);
        group.second = wholeOf(sum(at, antenna2_, 0), 0, 1 << 20);
    }
    if (!subarray_.empty())
        group.subarray = std::max(wholeOf(sum(at, subarray_, 0), 1, 65535), 1);
    group.source = source_.empty() || sources_.size() == 1
                       ? sources_.front().id
                       : wholeOf(sum(at, source_, 0), 0, 1 << 20);
    group.selection = selections_.size() < 2 || selection_.empty()
                          ? (selections_.empty() ? 1 : selections_.front().id)
                          : wholeOf(sum(at, selection_, 0), 0, 1 << 20);
    if (!integration_.empty()) {
        const double seconds = sum(at, integration_, 0);
        group.integration = seconds > 0 && seconds < 1e7 ? seconds : 0;
    }
    return group;
}

double UvFile::cell(const unsigned char* group, std::int64_t index) const
{
    const double stored =
        storedNumber(group + parameterBytes_ + index * std::abs(bitpix_) / 8, bitpix_);
    if (hasBlank_ && stored == blank_)
        return nothing;
    return stored * scale_ + zero_;
}

std::array<float, 3> UvFile::visibility(std::int64_t i, int ifIndex, int channel, int stokes) const
{
    const unsigned char* const at = block_.data() + i * groupBytes_;
    const std::int64_t first = ifIndex * ifStep_ + channel * channelStep_ + stokes * stokesStep_;
    std::array<float, 3> values{0, 0, 1};
    for (int part = 0; part < std::min(complexLength_, 3); ++part) {
        const double value = cell(at, first + part * complexStep_);
        // doubles that no float holds are no visibilities
        values[static_cast<std::size_t>(part)] =
            std::abs(value) <= std::numeric_limits<float>::max()
                ? static_cast<float>(value)
                : std::numeric_limits<float>::quiet_NaN();
    }
    return values;
}

}  // namespace pavane_ms
