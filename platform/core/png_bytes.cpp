#include "platform/core/png_bytes.h"

#include "platform/core/pixel_rounding.h"
#include "platform/core/png_rows.h"
#include "posix/StopFlag.h"

#include <algorithm>
#include <initializer_list>
#include <libdeflate.h>
#include <memory>
#include <new>
#include <string_view>
#include <zlib.h>

namespace pavane
{

namespace
{

using Bytes = std::vector<unsigned char>;

/// The packers of a speed.
struct Levels {
    int whole;              ///< of libdeflate
    int streamed;           ///< of zlib
    std::size_t wholeMost;  ///< bytes that the first packs in some 40 ms: it cannot be stopped
};

Levels levelsOf(PngSpeed speed)
{
    constexpr std::size_t mega = std::size_t{1} << 20;
    switch (speed) {
    case PngSpeed::smallest:
        return {9, 9, mega};
    case PngSpeed::fastest:
        return {1, 1, 8 * mega};
    default:
        return {4, 5, 4 * mega};
    }
}

void appendNumber(Bytes& bytes, std::uint32_t v)
{
    for (const int shift : {24, 16, 8, 0})
        bytes.push_back(static_cast<unsigned char>(v >> shift));
}

/// Begins a part of the file, whose bytes follow; `endPart` takes what this returns.
std::size_t beginPart(Bytes& bytes, std::string_view type)
{
    appendNumber(bytes, 0);
    const std::size_t start = bytes.size();
    bytes.insert(bytes.end(), type.begin(), type.end());
    return start;
}

void endPart(Bytes& bytes, std::size_t start)
{
    constexpr std::size_t typeLength = 4;
    Bytes length;
    appendNumber(length, static_cast<std::uint32_t>(bytes.size() - start - typeLength));
    std::copy(length.begin(), length.end(),
              bytes.begin() + static_cast<std::ptrdiff_t>(start - typeLength));
    appendNumber(bytes, libdeflate_crc32(0, bytes.data() + start, bytes.size() - start));
}

void appendHead(Bytes& bytes, const ImageView& image, const PngLook& look)
{
    const unsigned char signature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    bytes.insert(bytes.end(), std::begin(signature), std::end(signature));
    std::size_t part = beginPart(bytes, "IHDR");
    appendNumber(bytes, static_cast<std::uint32_t>(image.width));
    appendNumber(bytes, static_cast<std::uint32_t>(image.height));
    const unsigned char colors = look.isTransparent ? 6 : 2;
    // bits of a channel, kind of colours, packing, filters, no interlace
    for (const unsigned char v : std::initializer_list<unsigned char>{8, colors, 0, 0, 0})
        bytes.push_back(v);
    endPart(bytes, part);
    part = beginPart(bytes, "pHYs");
    const auto perMetre = static_cast<std::uint32_t>(std::max(0, nearestInt(look.dpi / 0.0254)));
    appendNumber(bytes, perMetre);
    appendNumber(bytes, perMetre);
    bytes.push_back(1);  // the unit is the metre
    endPart(bytes, part);
}

enum class Packed { done, stopped, noMemory };

struct FreeCompressor {
    void operator()(libdeflate_compressor* c) const { libdeflate_free_compressor(c); }
};

/// Packs all rows in one go.
Packed packWhole(PngRows& rows, int count, int level, Bytes& bytes, const StopFlag* stop)
{
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> packer(
        libdeflate_alloc_compressor(level));
    if (!packer)
        return Packed::noMemory;
    const std::size_t rowBytes = rows.rowBytes();
    Bytes plain(rowBytes * static_cast<std::size_t>(count));
    unsigned char* to = plain.data();
    for (int y = 0; y < count; ++y, to += rowBytes)
        rows.next(to);
    if (isStopped(stop))
        return Packed::stopped;
    const std::size_t most = libdeflate_zlib_compress_bound(packer.get(), plain.size());
    const std::size_t part = beginPart(bytes, "IDAT");
    const std::size_t start = bytes.size();
    bytes.resize(start + most);
    const std::size_t packed = libdeflate_zlib_compress(packer.get(), plain.data(), plain.size(),
                                                        bytes.data() + start, most);
    bytes.resize(start + packed);
    endPart(bytes, part);
    return packed > 0 ? Packed::done : Packed::noMemory;
}

/// A stream of zlib that ends with its scope.
struct PackStream {
    z_stream z{};
    int isOpen = 0;
    explicit PackStream(int level) { isOpen = deflateInit(&z, level) == Z_OK; }
    PackStream(const PackStream&) = delete;
    PackStream& operator=(const PackStream&) = delete;
    ~PackStream()
    {
        if (isOpen)
            (void)deflateEnd(&z);
    }
};

/// Packs some rows at a time; looks at `stop` between them.
Packed packStreamed(PngRows& rows, int count, int level, Bytes& bytes, const StopFlag* stop)
{
    constexpr std::size_t plainBytes = std::size_t{1} << 18;
    constexpr std::size_t partBytes = std::size_t{1} << 20;
    PackStream stream(level);
    if (!stream.isOpen)
        return Packed::noMemory;
    const std::size_t rowBytes = rows.rowBytes();
    const int atOnce = static_cast<int>(std::max<std::size_t>(1, plainBytes / rowBytes));
    Bytes plain(rowBytes * static_cast<std::size_t>(std::min(atOnce, count)));
    Bytes packed(partBytes);
    const auto write = [&] {
        const std::size_t part = beginPart(bytes, "IDAT");
        bytes.insert(bytes.end(), packed.data(), stream.z.next_out);
        endPart(bytes, part);
        stream.z.next_out = packed.data();
        stream.z.avail_out = static_cast<unsigned>(packed.size());
    };
    stream.z.next_out = packed.data();
    stream.z.avail_out = static_cast<unsigned>(packed.size());
    for (int y = 0; y < count; y += atOnce) {
        if (isStopped(stop))
            return Packed::stopped;
        const int some = std::min(atOnce, count - y);
        for (int i = 0; i < some; ++i)
            rows.next(plain.data() + rowBytes * static_cast<std::size_t>(i));
        stream.z.next_in = plain.data();
        stream.z.avail_in = static_cast<unsigned>(rowBytes * static_cast<std::size_t>(some));
        const int flush = y + some == count ? Z_FINISH : Z_NO_FLUSH;
        for (int state = Z_OK; state == Z_OK;) {
            state = deflate(&stream.z, flush);
            if (state == Z_STREAM_END || stream.z.avail_out == 0)
                write();
            else if (stream.z.avail_in == 0 && flush == Z_NO_FLUSH)
                break;
        }
    }
    return Packed::done;
}

}  // namespace

int writePNG(const ImageView& image, const PngLook& look, Bytes& bytes, std::string& error,
             const StopFlag* stop)
{
    error.clear();
    const std::size_t before = bytes.size();
    Packed packed = Packed::noMemory;
    // vectors have no other way to say that memory ran out
    try {
        appendHead(bytes, image, look);
        PngRows rows(image, look.isTransparent);
        const Levels levels = levelsOf(look.speed);
        const std::size_t all = rows.rowBytes() * static_cast<std::size_t>(image.height);
        packed = all <= levels.wholeMost
                     ? packWhole(rows, image.height, levels.whole, bytes, stop)
                     : packStreamed(rows, image.height, levels.streamed, bytes, stop);
        endPart(bytes, beginPart(bytes, "IEND"));
    } catch (const std::bad_alloc&) {
        packed = Packed::noMemory;
    }
    if (packed == Packed::done && !isStopped(stop))
        return 1;
    bytes.resize(before);
    error = packed == Packed::noMemory ? "Out of memory" : pictureGivenUp;
    return 0;
}

int PNGBytes(const CPicture& picture, std::vector<unsigned char>& bytes, CString& error, int dpi,
             PngSpeed speed, const StopFlag* stop)
{
    if (picture.width() < 1) {
        error = "The picture is empty: there was no memory for it, or its size is not 1 to 32768 a "
                "side";
        return 0;
    }
    Bytes made;
    if (!writePNG({picture.row(0), picture.width(), picture.height()},
                  {dpi, speed, picture.ground() == PictureGround::transparent}, made, error, stop))
        return 0;
    bytes.swap(made);
    return 1;
}

}  // namespace pavane
