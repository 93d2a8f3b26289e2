#include "pavane/calibration/EditedGains.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <utility>

namespace pavane
{

namespace
{

/// What edits change of a gain.
struct EditedPart {
    double real = 1, imaginary = 0, error = 0;
    std::uint64_t state = 0;  ///< of the gain in the low byte, above it the flag
};

EditedPart partOf(const Gain& gain)
{
    constexpr int flagShift = 8;
    return {gain.value.real(), gain.value.imag(), gain.error,
            static_cast<std::uint64_t>(gain.state) | std::uint64_t{gain.isFlagged} << flagShift};
}

void put(const EditedPart& part, Gain& gain)
{
    constexpr int flagShift = 8;
    constexpr std::uint64_t byte = 0xFF;
    gain.value = {part.real, part.imaginary};
    gain.error = part.error;
    gain.state = static_cast<GainState>(part.state & byte);
    gain.isFlagged = static_cast<unsigned char>(part.state >> flagShift & byte);
}

RecordBytes bytesOf(const EditedPart& part)
{
    return {reinterpret_cast<const std::uint8_t*>(&part), sizeof part};
}

}  // namespace

GainIndex gainIndexOf(const AGains& gains, std::size_t cell)
{
    GainIndex at;
    at.antenna = cell % gains.antennas().size();
    cell /= gains.antennas().size();
    at.hand = cell % gains.hands().size();
    cell /= gains.hands().size();
    at.group = cell % gains.groups().size();
    at.interval = cell / gains.groups().size();
    return at;
}

std::size_t cellOf(const AGains& gains, const GainIndex& at)
{
    return ((at.interval * gains.groups().size() + at.group) * gains.hands().size() + at.hand) *
               gains.antennas().size() +
           at.antenna;
}

void EditedGains::show(AGains& gains)
{
    array_ = &gains;
    chain_ = nullptr;
    showOthers();
}

void EditedGains::show(GainChain& chain, int link)
{
    array_ = nullptr;
    chain_ = &chain;
    link_ = link;
    showOthers();
}

void EditedGains::showNothing()
{
    array_ = nullptr;
    chain_ = nullptr;
    showOthers();
}

void EditedGains::replaced() { showOthers(); }

void EditedGains::showOthers()
{
    constexpr std::size_t any = std::numeric_limits<std::size_t>::max();
    size_ = any;
    size_ = gains().cells().size();
    history_.clear();
    depth_ = hasChanged_ = 0;
    tell();
}

void EditedGains::begin(std::string_view label)
{
    if (depth_++ == 0)
        history_.begin(label, {});
}

void EditedGains::end()
{
    if (depth_ == 0 || --depth_)
        return;
    if (!std::exchange(hasChanged_, 0))
        return history_.abandon();
    (void)history_.commit({});
    tell();
}

const AGains& EditedGains::gains() const
{
    static const AGains none;
    const AGains* found = array_;
    if (chain_)
        for (const GainChain::Link& link : chain_->links())
            if (link.id == link_)
                found = &link.gains;
    constexpr std::size_t any = std::numeric_limits<std::size_t>::max();
    return found && (size_ == any || found->cells().size() == size_) ? *found : none;
}

Gain* EditedGains::cell(std::size_t i)
{
    if (i >= gains().cells().size())
        return nullptr;
    if (array_)
        return &array_->cells()[i];
    const GainIndex at = gainIndexOf(gains(), i);
    return chain_->gain(link_, at.interval, at.group, at.hand, at.antenna);
}

template <typename Change>
std::size_t EditedGains::edit(const std::vector<std::size_t>& cells, std::string_view label,
                              const Change& change)
{
    std::size_t changed = 0;
    begin(label);
    for (const std::size_t i : cells) {
        Gain* const gain = i <= std::numeric_limits<int>::max() ? cell(i) : nullptr;
        if (!gain)
            continue;
        const EditedPart before = partOf(*gain);
        change(*gain);
        const EditedPart after = partOf(*gain);
        if (std::ranges::equal(bytesOf(before), bytesOf(after)))
            continue;
        history_.replace(static_cast<int>(i), 0, bytesOf(before), bytesOf(after));
        ++changed;
    }
    hasChanged_ |= changed > 0;
    end();
    return changed;
}

std::size_t EditedGains::setFlags(const std::vector<std::size_t>& cells, int on,
                                  std::string_view label)
{
    return edit(cells, label,
                [on](Gain& gain) { gain.isFlagged = static_cast<unsigned char>(on != 0); });
}

std::size_t EditedGains::setValue(std::size_t cell, std::complex<double> value,
                                  std::string_view label)
{
    if (!std::isfinite(value.real()) || !std::isfinite(value.imag()) || value == 0.0)
        return 0;
    return edit({cell}, label, [value](Gain& gain) {
        gain.value = value;
        gain.state = GainState::solved;
    });
}

std::size_t EditedGains::scaleAntenna(std::size_t antenna, double factor, std::string_view label)
{
    const std::size_t antennas = gains().antennas().size();
    if (!(factor > 0) || !std::isfinite(factor) || antenna >= antennas)
        return 0;
    std::vector<std::size_t> cells;
    for (std::size_t i = antenna; i < gains().cells().size(); i += antennas)
        if (gains().cells()[i].state == GainState::solved)
            cells.push_back(i);
    return edit(cells, label, [factor](Gain& gain) {
        gain.value *= factor;
        gain.error *= factor;
    });
}

int EditedGains::undo()
{
    const int done = depth_ == 0 && history_.undo(*this);
    if (done)
        tell();
    return done;
}

int EditedGains::redo()
{
    const int done = depth_ == 0 && history_.redo(*this);
    if (done)
        tell();
    return done;
}

int EditedGains::applyEdit(const EditChange& change)
{
    EditedPart part;
    Gain* const gain = change.index < 0 ? nullptr : cell(static_cast<std::size_t>(change.index));
    if (!gain || change.kind != EditKind::replace || change.after.size() != sizeof part)
        return 0;
    std::memcpy(&part, change.after.data(), sizeof part);
    put(part, *gain);
    return 1;
}

int EditedGains::applySelection(const EditSelection&) { return 1; }

}  // namespace pavane
