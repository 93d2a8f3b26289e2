#include "tessel/fits_planes.h"

#include "tessel/fits_cells.h"
#include "tessel/fits_header.h"
#include "tessel/PackedReader.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace pavane
{

namespace
{

constexpr int floatBits = -32;

/// All digits of a cell of 64 bits, which a double could not hold.
int readInteger(std::string_view text, std::int64_t& value)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc{} && result.ptr == text.data() + text.size();
}

/// Cells as they stand in the file.
class PlainReader : public PlaneReader
{
public:
    PlainReader(AFile& file, const HeaderCards& header, const FitsImage& image, int plane)
        : file_(file), bitpix_(image.bitpix), columns_(image.lengths[0]),
          start_(image.dataStart + plane * columns_ * image.lengths[1] * cellBytes())
    {
        (void)header.number("BSCALE", scale_.scale);
        (void)header.number("BZERO", scale_.zero);
        scale_.hasBlank = readInteger(header.value("BLANK"), scale_.blank);
    }
    int read(int first, int rows, float* cells) override
    {
        const std::int64_t count = rows * columns_;
        void* stored = cells;
        if (bitpix_ != floatBits) {
            bytes_.resize(static_cast<std::size_t>(count * cellBytes()));
            stored = bytes_.data();
        }
        if (!file_.seek(start_ + first * columns_ * cellBytes()) ||
            !file_.read(stored, count * cellBytes()))
            return 0;
        convertCells(stored, bitpix_, count, scale_, cells);
        return 1;
    }

private:
    std::int64_t cellBytes() const { return std::abs(bitpix_) / 8; }
    AFile& file_;
    int bitpix_;
    std::int64_t columns_;
    std::int64_t start_;
    CellScale scale_;
    std::vector<unsigned char> bytes_;
};

}  // namespace

std::unique_ptr<PlaneReader> planeReader(AFile& file, const HeaderCards& header,
                                         const FitsImage& image, int plane, std::string& error)
{
    if (!image.packed)
        return std::make_unique<PlainReader>(file, header, image, plane);
    auto packed = std::make_unique<PackedReader>(file.name(), image, plane);
    double scale = 1;
    double zero = 0;
    // here, since CFITSIO reads numbers by the locale
    const int hasScale = header.number("BSCALE", scale) && scale != 0;
    const int hasZero = header.number("BZERO", zero);
    if (image.bitpix > 0 && (hasScale || hasZero))
        packed->setScale(scale, zero);
    if (!packed->start(error))
        packed.reset();
    return packed;
}

}  // namespace pavane
