#include "tessel/uvfits/UvRewriter.h"

#include "tessel/big_endian.h"
#include "tessel/uvfits/UvLayout.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <new>
#include <system_error>
#include <type_traits>
#include <utility>

namespace pavane
{

namespace
{

constexpr std::int64_t copyBytes = std::int64_t{1} << 20;

/// A number of the file: NaN where it is blank.
template <class Stored>
double valueOf(const unsigned char* from, const CellScale& scale)
{
    const Stored stored = bigEndianItem<Stored>(from);
    if constexpr (std::is_integral_v<Stored>)
        if (scale.hasBlank && static_cast<std::int64_t>(stored) == scale.blank)
            return std::numeric_limits<double>::quiet_NaN();
    return static_cast<double>(stored) * scale.scale + scale.zero;
}

/// 0 when the type cannot hold it.
template <class Stored>
int keep(double value, const CellScale& scale, unsigned char* to)
{
    const double wanted = (value - scale.zero) / scale.scale;
    if constexpr (std::is_integral_v<Stored>) {
        const double whole = std::nearbyint(wanted);
        constexpr auto least = static_cast<double>(std::numeric_limits<Stored>::min());
        // of 64 bits the greatest is no double: the power of two above it
        constexpr double beyond = static_cast<double>(std::numeric_limits<Stored>::max()) + 1;
        if (std::isnan(wanted)) {
            if (!scale.hasBlank ||
                scale.blank < static_cast<std::int64_t>(std::numeric_limits<Stored>::min()) ||
                scale.blank > static_cast<std::int64_t>(std::numeric_limits<Stored>::max()))
                return 0;
            putBigEndian(static_cast<Stored>(scale.blank), to);
            return 1;
        }
        if (!(whole >= least && whole < beyond))
            return 0;
        const auto stored = static_cast<Stored>(whole);
        if (scale.hasBlank && static_cast<std::int64_t>(stored) == scale.blank)
            return 0;  // it would be no number
        putBigEndian(stored, to);
        return 1;
    } else {
        if (std::abs(wanted) > static_cast<double>(std::numeric_limits<Stored>::max()))
            return 0;
        putBigEndian(static_cast<Stored>(wanted), to);
        return 1;
    }
}

/// Changes one visibility whose parts stand so many bytes from each other. 0 when the file cannot
/// hold what comes out.
template <class Stored>
int changeCell(unsigned char* at, std::int64_t part, int hasWeight, const CellScale& scale,
               const UvChange& change)
{
    const double x = valueOf<Stored>(at, scale);
    const double y = valueOf<Stored>(at + part, scale);
    const int isNumber = std::isfinite(x) && std::isfinite(y);
    const int loses = change.isFlagged && !hasWeight;
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (loses || (isNumber && change.factor != 1.0)) {
        const double re = change.factor.real(), im = change.factor.imag();
        if (!keep<Stored>(loses ? none : x * re - y * im, scale, at) ||
            !keep<Stored>(loses ? none : x * im + y * re, scale, at + part))
            return 0;
    }
    if (!hasWeight)
        return 1;
    unsigned char* const to = at + 2 * part;
    const double weight = valueOf<Stored>(to, scale);
    const int turns = change.isFlagged && weight > 0;
    if (!std::isfinite(weight) || (change.weight == 1 && !turns))
        return 1;
    const double now = weight * change.weight;
    return turns ? keep<Stored>(-now, scale, to) || keep<Stored>(0, scale, to)
                 : keep<Stored>(now, scale, to);
}

}  // namespace

UvRewriter::UvRewriter(AUVXFile& in, std::string out, std::shared_ptr<UvFilter> filter)
    : in_(in), out_(std::move(out)), filter_(std::move(filter))
{
}

int UvRewriter::fail(std::string reason)
{
    if (error_.empty())
        error_ = std::move(reason);
    safe_.discard();
    return 0;
}

double UvRewriter::done() const
{
    const std::int64_t size = in_.size();
    if (isOver_ || size <= 0)
        return isOver_;
    return static_cast<double>(position_) / static_cast<double>(size);
}

int UvRewriter::step(std::int64_t bytes)
{
    if (isOver_ || !error_.empty())
        return 0;
    try {
        if (!isBegun_ && !begin())
            return 0;
        return goOn(bytes);
    } catch (const std::bad_alloc&) {
        return fail("needs more memory than there is");
    }
}

int UvRewriter::begin()
{
    isBegun_ = 1;
    std::error_code failed;
    if (std::filesystem::equivalent(std::filesystem::path(in_.name()), std::filesystem::path(out_),
                                    failed))
        return fail("is the file that is read");
    const UvLayout& layout = in_.layout();
    if (layout.bitpix > 0)
        notes_.push_back("is of whole numbers, to which corrected values are rounded");
    if (!safe_.open(out_))
        return fail(safe_.fault());
    return 1;
}

/// Copies bytes as they are.
int UvRewriter::copy(std::int64_t count)
{
    block_.resize(static_cast<std::size_t>(count));
    if (!in_.readBytes(position_, block_.data(), count))
        return fail("cannot be made of a file that has become shorter while it was read");
    if (!safe_.file().write(block_.data(), count))
        return fail(safe_.fault());
    position_ += count;
    return 1;
}

int UvRewriter::change(unsigned char* cells, const UvChange& change)
{
    const UvLayout& layout = in_.layout();
    const std::int64_t bytes = std::abs(layout.bitpix) / 8;
    const std::int64_t part = layout.complexStep * bytes;
    const int hasWeight = layout.complexLength > 2;
    switch (layout.bitpix) {
    case 8:
        return changeCell<std::uint8_t>(cells, part, hasWeight, layout.scale, change);
    case 16:
        return changeCell<std::int16_t>(cells, part, hasWeight, layout.scale, change);
    case 32:
        return changeCell<std::int32_t>(cells, part, hasWeight, layout.scale, change);
    case 64:
        return changeCell<std::int64_t>(cells, part, hasWeight, layout.scale, change);
    case -32:
        return changeCell<float>(cells, part, hasWeight, layout.scale, change);
    default:
        return changeCell<double>(cells, part, hasWeight, layout.scale, change);
    }
}

int UvRewriter::writeGroups()
{
    const UvLayout& layout = in_.layout();
    const UvHeader& header = in_.header();
    const auto count =
        static_cast<int>(std::min<std::int64_t>(in_.blockGroups(), layout.groups - group_));
    constexpr int what = UvGroups::times | UvGroups::baselines | UvGroups::origins;
    const std::int64_t bytes = count * layout.groupBytes;
    block_.resize(static_cast<std::size_t>(bytes));
    if (!in_.readGroups(group_, count, what, groups_) ||
        !in_.readBytes(position_, block_.data(), bytes))
        return fail("cannot be made of a file that has become shorter while it was read");
    const std::int64_t step = std::abs(layout.bitpix) / 8;
    const auto stokes = static_cast<int>(header.stokes.size());
    for (int i = 0; i < count; ++i) {
        const UvChange* const changes =
            filter_ ? filter_->changesOf(in_, groups_, static_cast<std::size_t>(i)) : nullptr;
        unsigned char* const cells = block_.data() + i * layout.groupBytes + layout.parameterBytes;
        for (int f = 0; changes && f < header.ifs; ++f)
            for (int s = 0; s < stokes; ++s) {
                const UvChange& one = changes[f * stokes + s];
                if (one.isNothing())
                    continue;
                changed_ += header.channels;
                flagged_ += one.isFlagged ? header.channels : 0;
                for (int c = 0; c < header.channels; ++c)
                    if (!change(cells + (f * layout.ifStep + s * layout.stokesStep +
                                         c * layout.channelStep) *
                                            step,
                                one))
                        return fail(
                            "cannot hold the corrected visibilities in its numbers (BITPIX " +
                            std::to_string(layout.bitpix) + ")");
            }
    }
    if (!safe_.file().write(block_.data(), bytes))
        return fail(safe_.fault());
    group_ += count;
    position_ += bytes;
    return 1;
}

int UvRewriter::goOn(std::int64_t bytes)
{
    const UvLayout& layout = in_.layout();
    const std::int64_t size = in_.size();
    for (const std::int64_t end = position_ + std::max<std::int64_t>(bytes, 1); position_ < end;) {
        const bool isGroups = group_ < layout.groups && position_ >= layout.dataStart;
        if (isGroups) {
            if (!writeGroups())
                return 0;
            continue;
        }
        const std::int64_t until = group_ < layout.groups ? layout.dataStart : size;
        if (position_ >= until)
            break;
        if (!copy(std::min(copyBytes, until - position_)))
            return 0;
    }
    if (position_ < size)
        return 1;
    if (!safe_.commit())
        return fail(safe_.fault());
    isOver_ = 1;
    return 0;
}

}  // namespace pavane
