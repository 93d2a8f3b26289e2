#include "pavane/axes/maps/cells/AByteSwappedAccess.h"
#include "pavane/axes/maps/cells/cell_memory.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace pavane
{

namespace
{

constexpr int rows = 3, columns = 5;

/// The value of a cell that every type holds.
int valueAt(int row, int column) { return 7 * row + 3 * column; }

/// Cells of one type laid out in some way, behind `offset` stray bytes.
struct Laid {
    std::vector<unsigned char> bytes;
    CellMemory memory;
};

template <typename T>
Laid laid(CellType type, int swapped, std::int64_t rowStep, std::int64_t columnStep, int offset)
{
    Laid made;
    const auto start = static_cast<std::int64_t>(1000 + offset);
    made.bytes.resize(4000, 0xee);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) {
            const T value = static_cast<T>(valueAt(r, c));
            unsigned char* const at = made.bytes.data() + start + r * rowStep + c * columnStep;
            std::memcpy(at, &value, sizeof value);
            if (swapped)
                std::reverse(at, at + sizeof value);
        }
    made.memory = {made.bytes.data() + start, rows, columns, rowStep, columnStep, type, swapped};
    return made;
}

template <typename T>
void check(CellType type)
{
    constexpr std::int64_t b = sizeof(T);
    ASSERT_EQ(cellBytes(type), b);
    const struct {
        std::int64_t rowStep, columnStep;
        int offset;
    } layouts[] = {{columns * b, b, 0}, {-columns * b, b, 0}, {b, rows * b, 0},
                   {-b, -rows * b, 1},  {60 * b, 3 * b, 3},   {71, 13, 0}};
    for (const auto& layout : layouts)
        for (const int swapped : {0, 1}) {
            const Laid made =
                laid<T>(type, swapped, layout.rowStep, layout.columnStep, layout.offset);
            CellMemory memory = made.memory;
            std::unique_ptr<AMatrixAccess> access;
            CString error;
            ASSERT_TRUE(makeCellAccess(memory, access, error)) << error;
            RowReader reader(*access);
            for (int r = 0; r < rows; ++r)
                for (int c = 0; c < columns; ++c) {
                    EXPECT_EQ(access->cell(r, c), valueAt(r, c))
                        << static_cast<int>(type) << ' ' << swapped << ' ' << layout.rowStep;
                    EXPECT_EQ(reader.row(r)[c], valueAt(r, c));
                }
            const unsigned char mask[] = {0, 0, 1, 0, 0, 0};  // every second counts, twice a row
            memory.blank = valueAt(1, 1);
            memory.scale = 0.5;
            memory.zero = -1;
            memory.maskFirst = mask;
            memory.maskColumnBytes = 1;
            ASSERT_TRUE(makeCellAccess(memory, access, error)) << error;
            for (int r = 0; r < rows; ++r)
                for (int c = 0; c < columns; ++c)
                    if (c == 2 || valueAt(r, c) == valueAt(1, 1))
                        EXPECT_TRUE(std::isnan(access->cell(r, c)));
                    else
                        EXPECT_EQ(access->cell(r, c), static_cast<float>(valueAt(r, c) * 0.5 - 1));
        }
}

}  // namespace

TEST(CellMemory, IsReadInEveryTypeOrderAndLayout)
{
    check<float>(CellType::float32);
    check<double>(CellType::float64);
    check<std::int8_t>(CellType::int8);
    check<std::uint8_t>(CellType::uint8);
    check<std::int16_t>(CellType::int16);
    check<std::uint16_t>(CellType::uint16);
    check<std::int32_t>(CellType::int32);
    check<std::uint32_t>(CellType::uint32);
    check<std::int64_t>(CellType::int64);
    check<std::uint64_t>(CellType::uint64);
}

TEST(CellMemory, IsOneCellRepeatedOrRefused)
{
    const float cell = 4;
    std::unique_ptr<AMatrixAccess> access;
    CString error;
    CellMemory memory{&cell, 1000, 2000, 0, 0};
    ASSERT_TRUE(makeCellAccess(memory, access, error));
    EXPECT_EQ(access->cell(999, 1999), 4);
    memory.rows = memory.columns = 1;
    memory.rowBytes = memory.columnBytes = -77;  // of an axis of one cell, where numpy has anything
    ASSERT_TRUE(makeCellAccess(memory, access, error));
    EXPECT_EQ(access->floatRow(0), &cell);
    const auto refused = [&](const auto& change) {
        CellMemory bad = memory;
        change(bad);
        error.clear();
        EXPECT_FALSE(makeCellAccess(bad, access, error));
        EXPECT_FALSE(access);
        EXPECT_FALSE(error.empty());
    };
    refused([](CellMemory& m) { m.first = nullptr; });
    refused([](CellMemory& m) { m.rows = 0; });
    refused([](CellMemory& m) { m.columns = -1; });
    refused([](CellMemory& m) { m.scale = NAN; });
    refused([](CellMemory& m) { m.type = static_cast<CellType>(99); });
    const double wide[] = {1e300, -1e300, INFINITY};
    ASSERT_TRUE(makeCellAccess({wide, 1, 3, 0, 8, CellType::float64}, access, error));
    EXPECT_EQ(access->cell(0, 0), std::numeric_limits<float>::max());
    EXPECT_EQ(access->cell(0, 2), INFINITY);
    const unsigned char big[] = {0xff, 0, 1, 0xff, 0xfe};
    const AByteSwappedAccess<std::int16_t> odd(big + 1, 1, 2, 2, 1, -2);
    EXPECT_EQ(odd.cell(0, 0), 1);
    EXPECT_TRUE(std::isnan(odd.cell(0, 1)));
}

}  // namespace pavane
