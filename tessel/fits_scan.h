#pragma once

#include "tessel/AFile.h"
#include "tessel/HeaderCards.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// An image that a file holds: which HDU (from 1), its type of cell and the lengths of its axes,
/// all at least 1, two axes or more.
struct FitsImage {
    int hdu = 0;
    int bitpix = 0;
    int packed = 0;                ///< tile-compressed
    std::int64_t headerStart = 0;  ///< where its first card stands
    std::int64_t dataStart = 0;    ///< where the first cell, or the table of tiles, begins
    std::int64_t packedBytes = 0;  ///< of the table and its heap, when packed
    std::int64_t tileCells = 0;    ///< cells of a tile, when packed
    std::vector<std::int64_t> lengths;
};

/// Packed images below this size are shown within two seconds or refused.
inline constexpr std::int64_t smallPacked = std::int64_t{4} << 20;

/// Finds the first image of two axes or more by reading nothing but headers, and makes sure that
/// the file holds what they promise, before anything else looks at the file: a header is only a
/// claim. Non-zero on success; else 0 and `error`, in one line, says what is wrong with the file.
int scanForImage(AFile& file, FitsImage& image, std::string& error);

/// The same of the header of cells that lie in memory: `lengths` is empty where it does not say how
/// long its axes are, as headers of coordinates alone do. 0 and `error` for a header of something
/// else than an image.
int imageOfCards(const HeaderCards& cards, FitsImage& image, std::string& error);

/// Makes `plane` one of the image's, counted from 0 over all axes beyond the second; -1 is the
/// first of one alone. 0 and `error` where the image has no such plane.
int choosePlane(const FitsImage& image, int& plane, std::string& error);

/// Non-zero for a BITPIX that cells can have.
int isCellType(std::int64_t bitpix);

/// Product of the lengths from item `from` on, cut at a number that no file can hold.
std::int64_t cellCount(const std::vector<std::int64_t>& lengths, std::size_t from = 0);

}  // namespace pavane
