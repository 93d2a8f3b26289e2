#include "pavane/axes/maps/cells/cell_memory.h"

#include "pavane/axes/maps/cells/AByteSwappedAccess.h"

#include <new>
#include <type_traits>

namespace pavane
{

namespace
{

/// A run of cells: where the first is, bytes from one to the next, how many.
struct Run {
    const unsigned char* from;
    std::int64_t step;
    int count;
};

template <typename T>
float asCell(T stored)
{
    if constexpr (std::is_same_v<T, double>)
        return cellValue(stored);
    else
        return static_cast<float>(stored);
}

template <typename T, bool Swapped>
void copyRun(const Run& run, const CellMemory& memory, float* to)
{
    const auto storedAt = [&](std::int64_t i, std::int64_t step) {
        return storedItem<T, Swapped>(run.from + i * step);
    };
    constexpr std::int64_t bytes = sizeof(T);
    const bool asStored = memory.blank != memory.blank && memory.scale == 1 && memory.zero == 0;
    if (asStored && run.step == bytes) {  // a step that the compiler knows
        for (int i = 0; i < run.count; ++i)
            to[i] = asCell(storedAt(i, bytes));
    } else if (asStored) {
        for (int i = 0; i < run.count; ++i)
            to[i] = asCell(storedAt(i, run.step));
    } else {
        for (int i = 0; i < run.count; ++i) {
            const auto stored = static_cast<double>(storedAt(i, run.step));
            to[i] = stored == memory.blank ? std::numeric_limits<float>::quiet_NaN()
                                           : cellValue(stored * memory.scale + memory.zero);
        }
    }
}

using CopyRun = void (*)(const Run&, const CellMemory&, float*);

template <typename T>
CopyRun copyOf(int swapped)
{
    return swapped && sizeof(T) > 1 ? copyRun<T, true> : copyRun<T, false>;
}

CopyRun copyOf(CellType type, int swapped)
{
    switch (type) {
    case CellType::float32:
        return copyOf<float>(swapped);
    case CellType::float64:
        return copyOf<double>(swapped);
    case CellType::int8:
        return copyOf<std::int8_t>(swapped);
    case CellType::uint8:
        return copyOf<std::uint8_t>(swapped);
    case CellType::int16:
        return copyOf<std::int16_t>(swapped);
    case CellType::uint16:
        return copyOf<std::uint16_t>(swapped);
    case CellType::int32:
        return copyOf<std::int32_t>(swapped);
    case CellType::uint32:
        return copyOf<std::uint32_t>(swapped);
    case CellType::int64:
        return copyOf<std::int64_t>(swapped);
    case CellType::uint64:
        return copyOf<std::uint64_t>(swapped);
    }
    return nullptr;
}

class MemoryAccess : public AMatrixAccess
{
public:
    MemoryAccess(const CellMemory& memory, CopyRun copy) : memory_(memory), copy_(copy) {}
    int rows() const override { return memory_.rows; }
    int columns() const override { return memory_.columns; }
    void copyRow(int row, int first, int count, float* to) const override
    {
        const auto* const cells = static_cast<const unsigned char*>(memory_.first);
        copy_({cells + row * memory_.rowBytes + first * memory_.columnBytes, memory_.columnBytes,
               count},
              memory_, to);
        if (!memory_.maskFirst)
            return;
        const unsigned char* const mask =
            memory_.maskFirst + row * memory_.maskRowBytes + first * memory_.maskColumnBytes;
        for (int i = 0; i < count; ++i)
            to[i] =
                mask[i * memory_.maskColumnBytes] ? std::numeric_limits<float>::quiet_NaN() : to[i];
    }

private:
    CellMemory memory_;
    CopyRun copy_;
};

/// Whether rows of floats can be handed out as they lie.
int isPlain(const CellMemory& m)
{
    constexpr std::int64_t bytes = sizeof(float);
    return m.type == CellType::float32 && !m.swapped && !m.maskFirst && m.blank != m.blank &&
           m.scale == 1 && m.zero == 0 && m.columnBytes == bytes && m.rowBytes % bytes == 0 &&
           reinterpret_cast<std::uintptr_t>(m.first) % alignof(float) == 0;
}

}  // namespace

int cellBytes(CellType type)
{
    switch (type) {
    case CellType::int8:
    case CellType::uint8:
        return 1;
    case CellType::int16:
    case CellType::uint16:
        return 2;
    case CellType::float32:
    case CellType::int32:
    case CellType::uint32:
        return 4;
    default:
        return 8;
    }
}

int makeCellAccess(const CellMemory& memory, std::unique_ptr<AMatrixAccess>& access, CString& error)
{
    access.reset();
    error.clear();
    CellMemory cells = memory;
    // the step of an axis of one cell means nothing, and arrays have anything there
    if (cells.columns == 1) {
        cells.columnBytes = cellBytes(cells.type);
        cells.maskColumnBytes = 1;
    }
    if (cells.rows == 1)
        cells.rowBytes = cells.maskRowBytes = 0;
    const CopyRun copy = copyOf(cells.type, cells.swapped);
    if (!cells.first || cells.rows < 1 || cells.columns < 1)
        error = "there are no cells";
    else if (!copy)
        error = "cells of this type cannot be read";
    else if (!std::isfinite(cells.scale) || !std::isfinite(cells.zero))
        error = "the scale of the cells is no finite number";
    else if (isPlain(cells))
        access.reset(new (std::nothrow) AStridedAccess<float>(
            static_cast<const float*>(cells.first), cells.rows, cells.columns,
            cells.rowBytes / static_cast<std::int64_t>(sizeof(float))));
    else
        access.reset(new (std::nothrow) MemoryAccess(cells, copy));
    if (!access && error.empty())
        error = "there is no memory for the access to the cells";
    return access != nullptr;
}

}  // namespace pavane
