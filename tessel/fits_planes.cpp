#include "tessel/fits_planes.h"

#include "tessel/fits_cells.h"
#include "tessel/fits_header.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace pavane
{

namespace
{

/// Cells that the unpacking process hands over at a time.
constexpr std::int64_t packedBlockCells = 1 << 20;
/// Seconds of computing that unpacking may take, and cells that it does in one at the very least.
constexpr std::int64_t unpackSeconds = 5;
constexpr std::int64_t unpackedPerSecond = 1 << 20;

/// Cells as they stand in the file. Read here and not by CFITSIO, which refuses a file that is cut
/// in the padding behind a whole image.
class PlainReader : public PlaneReader
{
public:
    PlainReader(AFile& file, FitsHandle& fits, const FitsImage& image, int plane)
        : file_(file), bitpix_(image.bitpix), columns_(image.lengths[0]),
          start_(image.dataStart + plane * columns_ * image.lengths[1] * cellBytes())
    {
        (void)readNumber(fits, "BSCALE", scale_.scale);
        (void)readNumber(fits, "BZERO", scale_.zero);
        int status = 0;
        LONGLONG blank = 0;
        fits_read_key(fits.file, TLONGLONG, "BLANK", &blank, nullptr, &status);
        scale_.hasBlank = status == 0;
        scale_.blank = blank;
    }
    int read(int first, int rows, float* cells) override
    {
        const std::int64_t count = rows * columns_;
        void* stored = cells;
        if (bitpix_ != FLOAT_IMG) {
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

/// Tile-compressed cells, which CFITSIO unpacks. Its decoders trust what they read and run past
/// their buffers in a damaged file, so they work in a process of their own, which sends the rows
/// through a pipe: when it dies, the pipe ends early and nothing else has happened.
class PackedReader : public PlaneReader
{
public:
    PackedReader(FitsHandle& fits, const FitsImage& image, int plane)
        : fits_(fits), columns_(image.lengths[0]), rows_(image.lengths[1]),
          pixel_(image.lengths.size(), 1)
    {
        for (std::size_t i = 2; i < pixel_.size(); ++i) {
            pixel_[i] = plane % image.lengths[i] + 1;
            plane = static_cast<int>(plane / image.lengths[i]);
        }
        double scale = 1;
        double zero = 0;
        const int hasScale = readNumber(fits, "BSCALE", scale) && scale != 0;
        const int hasZero = readNumber(fits, "BZERO", zero);
        if (image.bitpix > 0 && (hasScale || hasZero))
            fits_set_bscale(fits.file, scale, zero, &fits.status);  // whatever the locale
        start();
    }
    ~PackedReader() override { stop(); }
    int read(int, int rows, float* cells) override
    {
        auto* to = reinterpret_cast<char*>(cells);
        std::int64_t left = rows * columns_ * static_cast<std::int64_t>(sizeof(float));
        while (left > 0) {
            const ssize_t some = ::read(pipe_, to, static_cast<std::size_t>(left));
            if (some == 0 || (some < 0 && errno != EINTR))
                return 0;
            to += std::max<ssize_t>(some, 0);
            left -= std::max<ssize_t>(some, 0);
        }
        return 1;
    }

private:
    void start()
    {
        int ends[2] = {-1, -1};
        if (fits_.status || pipe2(ends, O_CLOEXEC) != 0)
            return;
        process_ = fork();
        if (process_ == 0) {
            (void)close(ends[0]);
            unpack(ends[1]);
            _exit(0);
        }
        (void)close(ends[1]);
        pipe_ = ends[0];
    }
    void stop()
    {
        if (pipe_ >= 0)
            (void)close(pipe_);
        if (process_ <= 0)
            return;
        (void)kill(process_, SIGKILL);
        while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    /// What the process does; it never returns to the caller's code.
    void unpack(int out)
    {
        becomeQuiet();
        float blank = std::numeric_limits<float>::quiet_NaN();
        const std::int64_t blockRows = std::max<std::int64_t>(packedBlockCells / columns_, 1);
        std::vector<float> cells(static_cast<std::size_t>(std::min(blockRows, rows_) * columns_));
        for (std::int64_t row = 0; row < rows_; row += blockRows) {
            const std::int64_t count = std::min(blockRows, rows_ - row) * columns_;
            int anyBlank = 0;
            pixel_[1] = row + 1;
            fits_read_pixll(fits_.file, TFLOAT, pixel_.data(), count, &blank, cells.data(),
                            &anyBlank, &fits_.status);
            if (fits_.status == NUM_OVERFLOW)
                fits_.status = 0;  // every cell is there, too great ones cut to the range of floats
            if (fits_.status || !send(out, cells.data(), count))
                return;
        }
    }
    /// A death here is nobody's business: default signals, no messages, no core, no endless work.
    void becomeQuiet() const
    {
        for (const int deadly : {SIGSEGV, SIGBUS, SIGFPE, SIGABRT, SIGILL, SIGPIPE, SIGXCPU})
            (void)std::signal(deadly, SIG_DFL);
        const int nothing = ::open("/dev/null", O_WRONLY);
        if (nothing >= 0)
            (void)dup2(nothing, STDERR_FILENO);
        const auto seconds =
            static_cast<rlim_t>(unpackSeconds + rows_ * columns_ / unpackedPerSecond);
        const rlimit none{0, 0};
        const rlimit time{seconds, seconds};
        (void)setrlimit(RLIMIT_CORE, &none);
        (void)setrlimit(RLIMIT_CPU, &time);
    }
    static int send(int out, const float* cells, std::int64_t count)
    {
        const auto* from = reinterpret_cast<const char*>(cells);
        auto left = static_cast<std::size_t>(count) * sizeof(float);
        while (left > 0) {
            const ssize_t some = ::write(out, from, left);
            if (some < 0 && errno != EINTR)
                return 0;
            from += std::max<ssize_t>(some, 0);
            left -= static_cast<std::size_t>(std::max<ssize_t>(some, 0));
        }
        return 1;
    }

    FitsHandle& fits_;
    std::int64_t columns_;
    std::int64_t rows_;
    std::vector<LONGLONG> pixel_;
    int pipe_ = -1;
    pid_t process_ = -1;
};

}  // namespace

std::unique_ptr<PlaneReader> planeReader(AFile& file, FitsHandle& fits, const FitsImage& image,
                                         int plane)
{
    if (image.packed)
        return std::make_unique<PackedReader>(fits, image, plane);
    return std::make_unique<PlainReader>(file, fits, image, plane);
}

}  // namespace pavane
