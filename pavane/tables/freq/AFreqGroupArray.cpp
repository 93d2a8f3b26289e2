#include "pavane/tables/freq/AFreqGroupArray.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace pavane
{

namespace
{

constexpr int growth = 256;
/// What an empty group has for its first cell.
constexpr int noFirst = 0x7FFFF;

int cut(std::int64_t cell)
{
    return static_cast<int>(std::min<std::int64_t>(cell, std::numeric_limits<int>::max()));
}

int isBefore(const ABitArray& a, const ABitArray& b)
{
    return std::max(a.firstOne(), 0) < std::max(b.firstOne(), 0);
}

}  // namespace

int lastOne(const ABitArray& bits)
{
    int i = bits.count() - 1;
    while (i >= 0 && !bits.get(i))
        --i;
    return i;
}

AFreqGroupArray::AFreqGroupArray() : AObjArray(0, 0, growth) {}

AFreqGroupArray::AFreqGroupArray(const AUVXFqTbl& frequencies)
    : AObjArray(0, 0, growth), frequencies_(frequencies), selections_(frequencies.selectionCount())
{
    selections_.setAll(1);
    for (int i = 0; i < frequencies.ifCount(); ++i) {
        ABitArray group(frequencies.ifCount());
        group.set(i);
        (void)Add(group);
    }
}

AFreqGroupArray::~AFreqGroupArray() = default;

int AFreqGroupArray::Store(AFile& file) const { return AObjArray::Store(file); }

int AFreqGroupArray::Load(AFile& file)
{
    AObjArray<ABitArray> read(0, 0, growth);
    if (!read.Load(file))
        return 0;
    for (int i = 0; i < read.count(); ++i)
        if (read(i).count() != frequencies_.ifCount())
            return 0;
    if (read.count() > 0)
        std::stable_sort(read.lpArray(), read.lpArray() + read.count(), isBefore);
    AObjArray::operator=(read);
    return count() == read.count();
}

int AFreqGroupArray::ItemToMatrix(int group, ABitMatrix& cells) const
{
    cells = ABitMatrix();
    if (group < 0 || group >= count())
        return 0;
    cells = ABitMatrix(frequencies_.ifCount(), frequencies_.channels());
    const ABitArray& bits = (*this)(group);
    for (int i = 0; i < cells.rows(); ++i)
        if (bits.get(i))
            cells.setSpan(i, 0, cells.columns() - 1);
    return cells.rows() > 0;
}

void AFreqGroupArray::GetFreqRange(int group, int& first, int& last) const
{
    first = noFirst;
    last = 0;
    const std::int64_t channels = frequencies_.channels();
    if (group < 0 || group >= count() || channels < 1 || (*this)(group).firstOne() < 0)
        return;
    // the ends of the matrix, without the matrix
    first = cut((*this)(group).firstOne() * channels);
    last = cut((lastOne((*this)(group)) + 1) * channels - 1);
}

}  // namespace pavane
