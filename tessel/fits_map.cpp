#include "tessel/fits_map.h"

#include "tessel/AFile.h"
#include "tessel/fits_header.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace pavane
{

namespace
{

constexpr int mostAxes = 99;
/// Cells read at a time: large enough to be quick, small enough to cancel and to show progress.
constexpr LONGLONG blockCells = 1 << 20;
/// No codec of tile-compressed images packs more than about a thousand bytes of cells into one.
constexpr LONGLONG mostPacked = 4096;

/// An image found in a file: its type and the lengths of its axes.
struct ImageShape {
    int bitpix = 0;
    std::vector<LONGLONG> lengths;
};

/// Looks at the first bytes, so that the commonest slips get a clear answer.
int checkStart(const std::string& name, LONGLONG& size, std::string& error)
{
    if (IsFolderExists(name)) {
        error = "is a folder";
        return 0;
    }
    errno = 0;
    AFile file(name, AFile::readOnly);
    if (!file.isOpen()) {
        error = std::string("cannot be opened: ") + std::strerror(errno ? errno : ENOENT);
        return 0;
    }
    size = file.size();
    char start[9] = {};
    const int whole = file.read(start, 9);
    if (static_cast<unsigned char>(start[0]) == 0x1f &&
        (static_cast<unsigned char>(start[1]) == 0x8b ||
         static_cast<unsigned char>(start[1]) == 0x9d)) {
        error = "is packed as a whole; unpack it first (gunzip)";
        return 0;
    }
    if (!whole || std::memcmp(start, "SIMPLE  =", 9) != 0) {
        error = "is not a FITS file";
        return 0;
    }
    return 1;
}

/// Non-zero when the current HDU is one of random groups, as visibilities are kept.
int isVisibilities(FitsHandle& fits)
{
    int groups = 0;
    int status = 0;
    fits_read_key(fits.file, TLOGICAL, "GROUPS", &groups, nullptr, &status);
    return status == 0 && groups;
}

/// Makes the first HDU that holds an image of two axes or more the current one.
int findImage(FitsHandle& fits, ImageShape& shape, std::string& error)
{
    error = "holds no image of two axes";
    for (int hdu = 1;; ++hdu) {
        int type = 0;
        if (hdu > 1 && fits_movabs_hdu(fits.file, hdu, &type, &fits.status)) {
            if (fits.status != END_OF_FILE)
                error += ": " + fits.statusText();
            return 0;
        }
        fits_get_hdu_type(fits.file, &type, &fits.status);
        int axes = 0;
        LONGLONG lengths[mostAxes] = {};
        if (fits.status || type != IMAGE_HDU)
            continue;
        if (fits_get_img_paramll(fits.file, mostAxes, &shape.bitpix, &axes, lengths,
                                 &fits.status)) {
            error = "has an image header that cannot be read: " + fits.statusText();
            return 0;
        }
        if (axes < 2)
            continue;
        shape.lengths.assign(lengths, lengths + std::min(axes, mostAxes));
        const auto zero = std::find_if(shape.lengths.begin(), shape.lengths.end(),
                                       [](LONGLONG n) { return n < 1; });
        if (zero == shape.lengths.end())
            return 1;
        error = isVisibilities(fits) ? "holds visibilities, not a map"
                                     : "has an image axis of length 0";
        if (hdu > 1)
            return 0;
    }
}

/// Product of the lengths, cut at a number that no file can hold.
LONGLONG product(const std::vector<LONGLONG>& lengths, std::size_t from)
{
    LONGLONG result = 1;
    constexpr LONGLONG limit = LONGLONG{1} << 56;
    for (std::size_t i = from; i < lengths.size(); ++i)
        result = lengths[i] > limit / result ? limit : result * lengths[i];
    return result;
}

/// Refuses an image that is larger than what the file has behind its header.
int checkSize(FitsHandle& fits, const ImageShape& shape, LONGLONG fileSize, std::string& error)
{
    LONGLONG head = 0;
    LONGLONG data = 0;
    LONGLONG end = 0;
    fits_get_hduaddrll(fits.file, &head, &data, &end, &fits.status);
    const LONGLONG held = std::max<LONGLONG>(fileSize - data, 0);
    const int packed = fits_is_compressed_image(fits.file, &fits.status);
    const LONGLONG bytes = product(shape.lengths, 0);
    const LONGLONG cellBytes = std::abs(shape.bitpix) / 8;
    if (fits.status) {
        error = "has an image that cannot be read: " + fits.statusText();
        return 0;
    }
    const LONGLONG most = packed ? std::min(held, end - data) * mostPacked : held / cellBytes;
    if (bytes > most || shape.lengths[0] > std::numeric_limits<int>::max() ||
        shape.lengths[1] > std::numeric_limits<int>::max()) {
        error = "ends before its image of " + std::to_string(shape.lengths[0]) + " x " +
                std::to_string(shape.lengths[1]) + " cells does";
        return 0;
    }
    return 1;
}

int checkPlane(const ImageShape& shape, int& plane, std::string& error)
{
    const LONGLONG planes = product(shape.lengths, 2);
    if (plane < 0 && planes > 1) {
        error = "has " + std::to_string(planes) + " planes; choose one";
        return 0;
    }
    plane = std::max(plane, 0);
    if (plane >= planes) {
        error = "has no plane " + std::to_string(plane) + ": there are " + std::to_string(planes) +
                ", counted from 0";
        return 0;
    }
    return 1;
}

/// Reads `count` cells from `pixel` on. Doubles are cut to the range of floats.
void readCells(FitsHandle& fits, int bitpix, std::vector<LONGLONG>& pixel, LONGLONG count,
               float* cells)
{
    int anyBlank = 0;
    if (bitpix != DOUBLE_IMG) {
        float blank = std::numeric_limits<float>::quiet_NaN();
        fits_read_pixll(fits.file, TFLOAT, pixel.data(), count, &blank, cells, &anyBlank,
                        &fits.status);
        return;
    }
    double blank = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> wide(static_cast<std::size_t>(count));
    fits_read_pixll(fits.file, TDOUBLE, pixel.data(), count, &blank, wide.data(), &anyBlank,
                    &fits.status);
    static constexpr double limit = std::numeric_limits<float>::max();
    std::transform(wide.begin(), wide.end(), cells, [](double v) {
        return static_cast<float>(std::isfinite(v) ? std::clamp(v, -limit, limit) : v);
    });
}

int readPlane(FitsHandle& fits, const ImageShape& shape, FitsMap& map, std::string& error,
              const ProgressFunction& progress)
{
    const int rows = static_cast<int>(shape.lengths[1]);
    const int columns = static_cast<int>(shape.lengths[0]);
    if (!map.cells.allocate(rows, columns)) {
        error = "there is no memory for its " + std::to_string(columns) + " x " +
                std::to_string(rows) + " cells";
        return 0;
    }
    std::vector<LONGLONG> pixel(shape.lengths.size(), 1);
    const std::vector<int> at = planePixels(map.header.axes, map.header.plane);
    std::copy(at.begin() + 2, at.end(), pixel.begin() + 2);
    std::for_each(pixel.begin() + 2, pixel.end(), [](LONGLONG& p) { ++p; });
    const int blockRows = static_cast<int>(std::max<LONGLONG>(blockCells / columns, 1));
    for (int row = 0; row < rows; row += blockRows) {
        const int some = std::min(blockRows, rows - row);
        pixel[1] = row + 1;
        readCells(fits, shape.bitpix, pixel, LONGLONG{some} * columns, map.cells.row(row));
        if (fits.status) {
            error = "has an image that cannot be read whole: " + fits.statusText();
            return 0;
        }
        if (progress && !progress(double(row + some) / rows)) {
            error = "reading was given up";
            return 0;
        }
    }
    return 1;
}

int readOpened(const std::string& name, LONGLONG size, int plane, FitsMap& map, std::string& error,
               const ProgressFunction& progress)
{
    FitsHandle fits;
    ImageShape shape;
    if (fits_open_diskfile(&fits.file, name.c_str(), READONLY, &fits.status)) {
        error = "cannot be read as FITS: " + fits.statusText();
        return 0;
    }
    if (!findImage(fits, shape, error) || !checkSize(fits, shape, size, error) ||
        !checkPlane(shape, plane, error))
        return 0;
    map.header = readMapHeader(fits, shape.lengths, plane);
    map.header.planes = static_cast<int>(
        std::min<LONGLONG>(product(shape.lengths, 2), std::numeric_limits<int>::max()));
    return readPlane(fits, shape, map, error, progress);
}

}  // namespace

int readFitsMap(const std::string& file, int plane, FitsMap& map, std::string& error,
                const ProgressFunction& progress)
{
    map = FitsMap();
    error.clear();
    LONGLONG size = 0;
    if (checkStart(file, size, error) && readOpened(file, size, plane, map, error, progress)) {
        error.clear();
        return 1;
    }
    map = FitsMap();
    return 0;
}

}  // namespace pavane
