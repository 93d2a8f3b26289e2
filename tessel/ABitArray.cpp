#include "tessel/ABitArray.h"

#include "tessel/little_endian.h"

#include <bit>
#include <cstring>
#include <new>
#include <utility>

namespace pavane
{

ABitArray::ABitArray(int count)
{
    if (count < 1)
        return;
    count_ = count;
    bytes_ = new (std::nothrow) std::uint8_t[static_cast<std::size_t>(byteCount())]();
    if (!bytes_)
        count_ = 0;
}

ABitArray::ABitArray(const ABitArray& other) { *this = other; }

ABitArray& ABitArray::operator=(const ABitArray& other)
{
    if (this == &other)
        return *this;
    ABitArray copy(other.count_);
    if (copy.bytes_)
        std::memcpy(copy.bytes_, other.bytes_, static_cast<std::size_t>(copy.byteCount()));
    return *this = std::move(copy);
}

ABitArray::ABitArray(ABitArray&& other) noexcept { *this = std::move(other); }

ABitArray& ABitArray::operator=(ABitArray&& other) noexcept
{
    std::swap(count_, other.count_);
    std::swap(bytes_, other.bytes_);
    return *this;
}

ABitArray::~ABitArray() { delete[] bytes_; }

void ABitArray::set(int i, int value)
{
    if (!inside(i))
        return;
    const auto bit = static_cast<std::uint8_t>(1u << (i % 8));
    std::uint8_t& byte = bytes_[i / 8];
    byte = static_cast<std::uint8_t>(value ? byte | bit : byte & ~bit);
}

void ABitArray::setAll(int value)
{
    if (!bytes_)
        return;
    std::memset(bytes_, value ? 0xFF : 0, static_cast<std::size_t>(byteCount()));
    clearPadding();
}

void ABitArray::clearPadding()
{
    if (count_ % 8 != 0)
        bytes_[count_ / 8] &= static_cast<std::uint8_t>((1u << (count_ % 8)) - 1);
}

int ABitArray::ones() const
{
    int bits = 0;
    for (int i = 0; i < byteCount(); ++i)
        bits += std::popcount(bytes_[i]);
    return bits;
}

int ABitArray::firstOne() const
{
    for (int i = 0; i < byteCount(); ++i) {
        if (bytes_[i])
            return i * 8 + std::countr_zero(bytes_[i]);
    }
    return -1;
}

int ABitArray::operator==(const ABitArray& other) const
{
    return count_ == other.count_ &&
           (!bytes_ || !std::memcmp(bytes_, other.bytes_, static_cast<std::size_t>(byteCount())));
}

int ABitArray::Store(AFile& file) const
{
    return writeInt32(file, count_) && file.write(bytes_, byteCount());
}

int ABitArray::Load(AFile& file)
{
    *this = ABitArray();
    std::int32_t count = 0;
    if (!readInt32(file, count))
        return 0;
    if (count < 1)
        return 1;
    if ((std::int64_t{count} + 7) / 8 > file.left())
        return 0;
    ABitArray loaded(count);
    if (!loaded.bytes_ || !file.read(loaded.bytes_, loaded.byteCount()))
        return 0;
    loaded.clearPadding();
    *this = std::move(loaded);
    return 1;
}

}  // namespace pavane
