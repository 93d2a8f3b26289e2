#pragma once

#include "tessel/AFile.h"
#include "tessel/api.h"

#include <cstdint>

namespace pavane
{

/// A row of bits, all 0 at first, packed. Bits are counted from 0. Owns its memory; an allocation
/// that fails leaves no bits.
class PAVANE_API ABitArray
{
public:
    ABitArray() = default;
    /// `count` bits, none when below 1.
    explicit ABitArray(int count);
    ABitArray(const ABitArray& other);
    ABitArray& operator=(const ABitArray& other);
    ABitArray(ABitArray&& other) noexcept;
    ABitArray& operator=(ABitArray&& other) noexcept;
    ~ABitArray();

    /// How many bits there are.
    int count() const { return count_; }
    /// The bit, 0 outside the array.
    int get(int i) const { return inside(i) ? (bytes_[i / 8] >> (i % 8)) & 1 : 0; }
    /// Sets (or clears, with value 0) a bit; nothing happens outside the array.
    void set(int i, int value = 1);
    /// Every bit to 0 or to 1.
    void setAll(int value);
    /// How many bits are 1.
    int ones() const;
    /// Index of the first bit that is 1, -1 when there is none.
    int firstOne() const;
    int operator==(const ABitArray& other) const;

    /// Writes the count (int32), then the bits in (count + 7) / 8 bytes: bit i is bit i % 8 of byte
    /// i / 8, bits beyond the count are 0. Non-zero on success.
    int Store(AFile& file) const;
    /// Reads what Store wrote. Non-zero on success; else 0 and no bits. A count below 1 gives no
    /// bits; one that the file is too short for fails before anything is allocated.
    int Load(AFile& file);

private:
    int inside(int i) const { return i >= 0 && i < count_; }
    int byteCount() const { return count_ / 8 + (count_ % 8 != 0); }
    void clearPadding();
    int count_ = 0;
    std::uint8_t* bytes_ = nullptr;
};

}  // namespace pavane
