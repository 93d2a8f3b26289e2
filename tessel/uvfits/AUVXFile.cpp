#include "tessel/uvfits/AUVXFile.h"

#include "tessel/big_endian.h"
#include "tessel/plain_text.h"
#include "tessel/uvfits/FitsTable.h"
#include "tessel/uvfits/group_values.h"
#include "tessel/uvfits/uv_tables.h"
#include "tessel/uvfits/UvLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

/// Headers behind the groups; an observation has some ten.
constexpr int mostHeaders = 10000;
constexpr std::size_t mostNotes = 100;
/// Bytes read at a time: what the nearest memory holds while the parameters are taken from it.
constexpr std::int64_t blockBytes = 1 << 16;
/// Of groups longer than this the parameters are read alone, where no cells are asked for.
constexpr std::int64_t longGroup = 1 << 14;
constexpr std::int64_t mostBlock = std::int64_t{1} << 31;
constexpr double metresPerKilometre = 1000;

std::uint64_t telescopeKey(int subarray, int number)
{
    return std::uint64_t{static_cast<std::uint32_t>(subarray)} << 32 |
           static_cast<std::uint32_t>(number);
}

double fromOrigin(const AUVXTlscItem& item)
{
    return std::hypot(item.x.value, item.y.value, item.z.value);
}

/// Whether one of two telescopes has no place: writers that know none give the origin, which is
/// where a telescope stands only when positions count from the middle of an array.
int isNowhere(const AUVXTlscItem& item, const AUVXTlscItem& other)
{
    constexpr double leastEarth = 6.3e6;
    const double away = fromOrigin(other);
    return fromOrigin(item) == 0 && (away == 0 || away > leastEarth) && &item != &other;
}

/// The frequencies of a file without a table of them.
AUVXFreqs selectionOf(const UvHeader& header)
{
    AUVXFreqs selection;
    const double width = header.channelWidth;
    const UvIf each{{0, 0}, {width, 0}, {std::abs(width) * header.channels, 0}, width < 0 ? -1 : 1};
    selection.ifs.assign(static_cast<std::size_t>(std::max(header.ifs, 1)), each);
    return selection;
}

/// Infinite beyond the range of floats.
float floatOf(double value)
{
    constexpr double most = std::numeric_limits<float>::max();
    return std::abs(value) > most
               ? std::copysign(std::numeric_limits<float>::infinity(), value < 0 ? -1.0F : 1.0F)
               : static_cast<float>(value);
}

}  // namespace

UvFilter::~UvFilter() = default;

int holdsVisibilities(const std::string& name)
{
    AFile file;
    std::string error;
    FitsHdu first;
    try {
        return openFits(name, file, error) && readHdu(file, 0, first) &&
               first.cards.value("GROUPS") == "T" && wholeNumber(first.cards, "NAXIS1", -1) == 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

AUVXFile::AUVXFile() : layout_(std::make_unique<UvLayout>()) {}

AUVXFile::~AUVXFile() = default;

void AUVXFile::close()
{
    (void)file_.close();
    header_ = UvHeader();
    *layout_ = UvLayout();
    telescopes_.clear();
    fqTbl_ = AUVXFqTbl();
    selections_.clear();
    sources_.clear();
    scans_.clear();
    hasIndex_ = hasSources_ = antennaTables_ = 0;
    notes_.clear();
    telescopeOf_.clear();
    sourceOf_.clear();
    block_ = {};
    filter_.reset();
}

/// How far the tables are read, and whether somebody still wants them.
struct AUVXFile::Watch {
    const ProgressFunction& progress;
    std::int64_t from = 0, to = 0;
    int isOver = 0;
    int goesOn(std::int64_t position)
    {
        const auto part = static_cast<double>(position - from);
        if (!isOver && progress && from < to)
            isOver = !progress(part / static_cast<double>(to - from));
        return !isOver;
    }
};

int AUVXFile::open(const std::string& name, std::string& error, const ProgressFunction& progress)
{
    close();
    error.clear();
    Watch watch{progress};
    try {
        if (openFits(name, file_, error) && readHeaders(watch, error))
            return 1;
    } catch (const std::bad_alloc&) {
        error = "needs more memory than there is";
    }
    close();
    return 0;
}

void AUVXFile::note(const std::string& text)
{
    if (notes_.size() < mostNotes)
        notes_.push_back(text);
}

int AUVXFile::readHeaders(Watch& watch, std::string& error)
{
    const std::int64_t size = file_.size();
    FitsHdu groups;
    if (!readHdu(file_, 0, groups)) {
        error = "has a header that cannot be read";
        return 0;
    }
    if (!readUvLayout(groups, size, header_, *layout_, error))
        return 0;
    double day = 0;
    if (julianDay(groups.cards.text("DATE-OBS"), day))
        header_.referenceDay = day;
    readTables(endOf(groups), size, watch);
    if (watch.isOver) {
        error = readingGivenUp;
        return 0;
    }
    if (header_.referenceDay == 0)
        findReferenceDay();
    settle();
    return 1;
}

void AUVXFile::readTables(std::int64_t start, std::int64_t size, Watch& watch)
{
    FitsHdu hdu;
    watch.from = start;
    watch.to = size;
    for (int i = 0; start < size && watch.goesOn(start); ++i) {
        if (i >= mostHeaders || !readHdu(file_, start, hdu))
            return note("has something behind its groups and tables that cannot be read");
        if (hdu.dataBytes > size - hdu.dataStart)
            return note("ends before its table " + plainText(hdu.cards.text("EXTNAME")) +
                        " does, which is left out");
        if (hdu.kind == "BINTABLE" || hdu.kind == "A3DTABLE")
            readTable(hdu, watch);
        start = endOf(hdu);
    }
}

void AUVXFile::readTable(const FitsHdu& hdu, Watch& watch)
{
    const std::string name = hdu.cards.text("EXTNAME");
    const int isKnown =
        name == "AIPS AN" || name == "AIPS FQ" || name == "AIPS NX" || name == "AIPS SU";
    FitsTable table(file_, [&watch](std::int64_t position) { return watch.goesOn(position); });
    std::string error;
    if (!isKnown)
        return;
    int isRead = table.open(hdu, error);
    if (isRead && name == "AIPS AN") {
        const std::int64_t version = wholeNumber(hdu.cards, "EXTVER", antennaTables_ + 1);
        const int isNumber = version > 0 && version <= std::numeric_limits<int>::max();
        const int subarray = isNumber ? static_cast<int>(version) : antennaTables_ + 1;
        double day = 0;
        if (antennaTables_++ == 0 && julianDay(hdu.cards.text("RDATE"), day))
            header_.referenceDay = day;
        isRead = readTelescopes(table, subarray, telescopes_, error);
    } else if (isRead && name == "AIPS FQ" && selections_.empty())
        isRead = readSelections(table, selections_, error);
    else if (isRead && name == "AIPS SU" && sources_.empty())
        isRead = readSources(table, sources_, error);
    else if (isRead && name == "AIPS NX" && !hasIndex_)
        isRead = hasIndex_ = readScans(table, scans_, error);
    if (!isRead)
        note("has a damaged table " + name + ", which is left out: it " + error);
}

void AUVXFile::findReferenceDay()
{
    UvGroups groups;
    if (layout_->date.empty() || !readGroups(0, 1, UvGroups::times, groups) ||
        !(std::abs(groups.time[0]) < 1e9))
        return;
    header_.referenceDay = std::floor(groups.time[0] - 0.5) + 0.5;
}

void AUVXFile::settle()
{
    const int fromTable = !selections_.empty();
    if (!fromTable)
        selections_.push_back(selectionOf(header_));
    fqTbl_ = AUVXFqTbl(header_.frequency, header_.referenceChannel, header_.channels,
                       std::exchange(selections_, {}));
    if (fqTbl_.ifCount() != header_.ifs)
        note("has " + std::to_string(header_.ifs) + " IFs in its groups and " +
             std::to_string(fqTbl_.ifCount()) + " in its table");
    hasSources_ = !sources_.empty();
    if (!hasSources_) {
        const double equinox = header_.equinox;
        sources_.push_back({1, header_.object, {header_.ra, 0}, {header_.dec, 0}, equinox});
    }
    layout_->onlySource = sources_.front().id;
    layout_->onlySelection = fqTbl_.selections().front().id;
    const auto isBeyond = [&](const UvScan& scan) {
        return scan.first < 1 || scan.last < scan.first || scan.last > header_.groups;
    };
    if (const auto beyond = std::count_if(scans_.begin(), scans_.end(), isBeyond); beyond > 0)
        note("has " + std::to_string(beyond) + " scans in its index that name groups it lacks");
    for (std::size_t i = 0; i < telescopes_.size(); ++i)
        telescopeOf_.emplace(telescopeKey(telescopes_[i].subarray, telescopes_[i].number), i);
    for (std::size_t i = 0; i < sources_.size(); ++i)
        sourceOf_.emplace(sources_[i].id, i);
}

const AUVXTlscItem* AUVXFile::telescope(int subarray, int number) const
{
    const auto found = telescopeOf_.find(telescopeKey(subarray, number));
    return found == telescopeOf_.end() ? nullptr : &telescopes_[found->second];
}

const UvSource* AUVXFile::source(int id) const
{
    if (!hasSources_ && !sources_.empty())
        return &sources_.front();  // whatever an index calls it
    const auto found = sourceOf_.find(id);
    return found == sourceOf_.end() ? nullptr : &sources_[found->second];
}

double AUVXFile::lengthOf(const UvBaseline& baseline) const
{
    const AUVXTlscItem* const a = telescope(baseline.subarray, baseline.first);
    const AUVXTlscItem* const b = telescope(baseline.subarray, baseline.second);
    if (!a || !b || isNowhere(*a, *b) || isNowhere(*b, *a))
        return std::numeric_limits<double>::quiet_NaN();
    return std::hypot(b->x.value - a->x.value, b->y.value - a->y.value, b->z.value - a->z.value) /
           metresPerKilometre;
}

std::int64_t AUVXFile::groupBytes() const { return layout_->groupBytes; }

int AUVXFile::blockGroups() const
{
    return static_cast<int>(
        std::max<std::int64_t>(blockBytes / std::max<std::int64_t>(layout_->groupBytes, 1), 1));
}

int AUVXFile::seekTo(std::int64_t position)
{
    // a seek to where it stands would read the buffer anew
    return file_.tell() == position || file_.seek(position);
}

int AUVXFile::readGroups(std::int64_t first, int count, int what, UvGroups& groups)
{
    groups.clear();
    try {
        return takeGroups(first, count, what, groups);
    } catch (const std::bad_alloc&) {
        groups.clear();
        return 0;
    }
}

int AUVXFile::takeGroups(std::int64_t first, int count, int what, UvGroups& groups)
{
    const UvLayout& layout = *layout_;
    if (first < 0 || count < 0 || first > layout.groups - count)
        return 0;
    const int hasCells = what & UvGroups::cellValues;
    if (hasCells && filter_)  // which changes cells, and asks whose they are
        what = (what & ~UvGroups::storedCells) | UvGroups::times | UvGroups::baselines |
               UvGroups::origins;
    const int isWhole = hasCells || layout.groupBytes <= longGroup;
    const std::int64_t step = isWhole ? layout.groupBytes : layout.parameterBytes;
    if (step * count > mostBlock)
        return 0;
    block_.resize(static_cast<std::size_t>(step * count));
    for (int i = 0; i < (isWhole ? 1 : count); ++i)
        if (!seekTo(layout.dataStart + (first + i) * layout.groupBytes) ||
            !file_.read(block_.data() + i * step, isWhole ? step * count : step))
            return 0;
    groups.first = first;
    groups.count = count;
    takeGroupValues(layout, header_.referenceDay, {block_.data(), step, count}, what, groups);
    if (!hasCells)
        return 1;
    const int isPlain = layout.bitpix == -32 && layout.scale.scale == 1 && layout.scale.zero == 0;
    if (what & UvGroups::storedCells && isPlain) {
        groups.stored = block_.data() + layout.parameterBytes;
        groups.storedStep = step;
        return 1;
    }
    groups.cells.resize(static_cast<std::size_t>(layout.cells * count));
    for (int i = 0; i < count; ++i)
        convertCells(block_.data() + i * step + layout.parameterBytes, layout.bitpix, layout.cells,
                     layout.scale, groups.cells.data() + i * layout.cells);
    if (filter_)
        applyFilter(groups);
    return 1;
}

/// What is flagged gets a weight below 0, in files without weights it becomes no number.
void AUVXFile::applyFilter(UvGroups& groups) const
{
    const UvCellSteps steps = cellSteps();
    const auto stokes = static_cast<int>(header_.stokes.size());
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    for (int i = 0; i < groups.count; ++i) {
        const UvChange* const changes =
            filter_->changesOf(*this, groups, static_cast<std::size_t>(i));
        float* const cells = groups.cells.data() + i * steps.group;
        for (int f = 0; changes && f < header_.ifs; ++f)
            for (int s = 0; s < stokes; ++s) {
                const UvChange& change = changes[f * stokes + s];
                if (change.isNothing())
                    continue;
                const double re = change.factor.real(), im = change.factor.imag();
                float* at = cells + f * steps.ifIndex + s * steps.stokes;
                for (int c = 0; c < header_.channels; ++c, at += steps.channel) {
                    const double x = at[0], y = at[steps.part];
                    at[0] = floatOf(x * re - y * im);
                    at[steps.part] = floatOf(x * im + y * re);
                    if (!steps.hasWeights) {
                        if (change.isFlagged)
                            at[0] = at[steps.part] = none;
                        continue;
                    }
                    float& weight = at[2 * steps.part];
                    weight = floatOf(weight * change.weight);
                    if (change.isFlagged)
                        weight = weight > 0 ? -weight : weight;
                }
            }
    }
}

int AUVXFile::readBytes(std::int64_t position, void* bytes, std::int64_t count)
{
    return seekTo(position) && file_.read(bytes, count);
}

UvVisibility AUVXFile::visibility(const UvGroups& groups, int i, int ifIndex, int channel,
                                  int stokes) const
{
    const UvLayout& layout = *layout_;
    const int isInside = i >= 0 && i < groups.count && ifIndex >= 0 && ifIndex < header_.ifs &&
                         channel >= 0 && channel < header_.channels && stokes >= 0 &&
                         stokes < static_cast<int>(header_.stokes.size());
    const auto size = static_cast<std::int64_t>(groups.cells.size());
    const int hasCells = groups.stored || size == layout.cells * groups.count;
    if (!isInside || !hasCells || layout.cells == 0)
        return {};
    const std::int64_t at =
        ifIndex * layout.ifStep + channel * layout.channelStep + stokes * layout.stokesStep;
    const auto number = [&](std::int64_t part) {
        const std::int64_t cell = at + part * layout.complexStep;
        return groups.stored ? bigEndianItem<float>(groups.stored + i * groups.storedStep +
                                                    cell * static_cast<std::int64_t>(sizeof(float)))
                             : groups.cells[static_cast<std::size_t>(i * layout.cells + cell)];
    };
    return {number(0), number(1), layout.complexLength > 2 ? number(2) : 1.0f};
}

UvCellSteps AUVXFile::cellSteps() const
{
    const UvLayout& layout = *layout_;
    return {layout.cells,      layout.ifStep,      layout.channelStep,
            layout.stokesStep, layout.complexStep, layout.complexLength > 2};
}

}  // namespace pavane
