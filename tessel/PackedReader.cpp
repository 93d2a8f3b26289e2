#include "tessel/PackedReader.h"

#include "tessel/cfitsio.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace pavane
{

namespace
{

/// Cells that the process hands over at a time.
constexpr std::int64_t blockCells = 1 << 20;
/// Bytes of memory beyond those of the image: for CFITSIO itself and its small buffers.
constexpr std::int64_t spareBytes = std::int64_t{64} << 20;
/// Bytes that the decoders hold for a cell of a tile: the cell as it comes out, up to 8 as they
/// compute with it, and 4 where they put its bytes in order.
constexpr std::int64_t tileCellBytes = 16;
/// Milliseconds of computing: at the least, and for each million cells and packed bytes beyond. A
/// small file gets the least.
constexpr std::int64_t leastMilliseconds = 1500;
constexpr std::int64_t millisecondsPerMillion = 60;
/// Seconds by which the system's own limit comes later than the timer.
constexpr std::int64_t graceSeconds = 2;
/// A process that waits rather than computes is ended as well, however busy the machine may be.
constexpr std::int64_t waitingFactor = 20;

std::int64_t planeCells(const FitsImage& image) { return image.lengths[0] * image.lengths[1]; }

/// Bytes that the process has mapped, the host's included, of which it is a copy.
std::int64_t mappedBytes()
{
    long long pages = 0;
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    const int read = file && std::fscanf(file, "%lld", &pages) == 1;
    if (file)
        (void)std::fclose(file);
    return read ? pages * sysconf(_SC_PAGESIZE) : 0;
}

/// A sanitizer keeps what was freed, which grows without bound in some decoders.
constexpr int isChecked()
{
#ifdef __SANITIZE_ADDRESS__
    return 1;
#elif defined __has_feature
    return __has_feature(address_sanitizer);
#else
    return 0;
#endif
}

void limitMemory(const FitsImage& image)
{
    const std::int64_t now = mappedBytes();
    if (!now || isChecked())
        return;
    const std::int64_t promised = image.tileCells * tileCellBytes + image.packedBytes +
                                  std::max(blockCells, image.lengths[0]) * 4;
    const auto most = static_cast<rlim_t>(now + promised + spareBytes);
    const rlimit memory{most, most};
    (void)setrlimit(RLIMIT_AS, &memory);
}

void limitTime(const FitsImage& image)
{
    std::int64_t milliseconds = leastMilliseconds;
    if (image.packedBytes >= smallPacked)
        milliseconds += (planeCells(image) + image.packedBytes) / 1000000 * millisecondsPerMillion;
    itimerval timer{};
    timer.it_value.tv_sec = milliseconds / 1000;
    timer.it_value.tv_usec = milliseconds % 1000 * 1000;
    (void)setitimer(ITIMER_PROF, &timer, nullptr);
    (void)alarm(static_cast<unsigned>(milliseconds * waitingFactor / 1000));
    const auto seconds = static_cast<rlim_t>(milliseconds / 1000 + graceSeconds);
    const rlimit time{seconds, seconds};
    (void)setrlimit(RLIMIT_CPU, &time);
}

/// Leaves `out` and the standard streams open. Pipes of other readers, which this process has only
/// because it is a copy, would stay open after their own process has died.
int keepOnly(int out)
{
    constexpr int kept = STDERR_FILENO + 1;
    if (out != kept && dup2(out, kept) < 0)
        return out;
    if (close_range(kept + 1, ~0U, 0) != 0)
        for (int other = kept + 1; other < sysconf(_SC_OPEN_MAX); ++other)
            (void)close(other);
    return kept;
}

/// A death here is nobody's business: default signals, no messages, no core, nothing without end.
/// A key that stops the host stops it alone: it ends this process when it has done with it.
void becomeQuiet(const FitsImage& image)
{
    (void)std::signal(SIGINT, SIG_IGN);
    for (const int deadly :
         {SIGSEGV, SIGBUS, SIGFPE, SIGABRT, SIGILL, SIGPIPE, SIGXCPU, SIGPROF, SIGALRM})
        (void)std::signal(deadly, SIG_DFL);
    sigset_t all;
    (void)sigemptyset(&all);
    (void)sigprocmask(SIG_SETMASK, &all, nullptr);
    const int nothing = ::open("/dev/null", O_WRONLY);
    if (nothing >= 0)
        (void)dup2(nothing, STDERR_FILENO);
    const rlimit none{0, 0};
    (void)setrlimit(RLIMIT_CORE, &none);
    limitMemory(image);
    limitTime(image);
}

int send(int out, const float* cells, std::int64_t count)
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

/// The first pixel, from 1, of the plane.
std::vector<LONGLONG> firstPixel(const FitsImage& image, int plane)
{
    std::vector<LONGLONG> pixel(image.lengths.size(), 1);
    for (std::size_t i = 2; i < pixel.size(); ++i) {
        pixel[i] = plane % image.lengths[i] + 1;
        plane = static_cast<int>(plane / image.lengths[i]);
    }
    return pixel;
}

/// Opens the image as the current one, named so that CFITSIO takes the name as it is: a blank or
/// '~' in front would be its business.
fitsfile* openImage(const Cfitsio& library, const std::string& name, const FitsImage& image,
                    int& status)
{
    fitsfile* file = nullptr;
    const std::string plain = name[0] == '/' ? name : "./" + name;
    library.openDiskFile(&file, plain.c_str(), READONLY, &status);
    if (image.hdu > 1)
        library.moveToHdu(file, image.hdu, nullptr, &status);
    return file;
}

void sendRows(const Cfitsio& library, fitsfile* file, const FitsImage& image, int plane, int out)
{
    const std::int64_t columns = image.lengths[0];
    const std::int64_t rows = image.lengths[1];
    const std::int64_t blockRows = std::max<std::int64_t>(blockCells / columns, 1);
    std::vector<float> cells(static_cast<std::size_t>(std::min(blockRows, rows) * columns));
    std::vector<LONGLONG> pixel = firstPixel(image, plane);
    float blank = std::numeric_limits<float>::quiet_NaN();
    int status = 0;
    for (std::int64_t row = 0; row < rows; row += blockRows) {
        const std::int64_t count = std::min(blockRows, rows - row) * columns;
        int anyBlank = 0;
        pixel[1] = row + 1;
        library.readPixels(file, TFLOAT, pixel.data(), count, &blank, cells.data(), &anyBlank,
                           &status);
        if (status == NUM_OVERFLOW)
            status = 0;  // every cell is there, too great ones cut to the range of floats
        if (status || !send(out, cells.data(), count))
            return;
    }
}

}  // namespace

PackedReader::PackedReader(const std::string& name, const FitsImage& image, int plane)
    : name_(name), image_(image), plane_(plane)
{
}

PackedReader::~PackedReader()
{
    if (pipe_ >= 0)
        (void)close(pipe_);
    if (process_ <= 0)
        return;
    (void)kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void PackedReader::setScale(double scale, double zero)
{
    isScaled_ = 1;
    scale_ = scale;
    zero_ = zero;
}

int PackedReader::start(std::string& error)
{
    // in this process: loading is safe only where no other thread can have been in the middle of it
    const Cfitsio& library = cfitsio(error);
    if (!library.isLoaded) {
        error = "is packed, and CFITSIO, which unpacks it, is missing: " + error;
        return 0;
    }
    int ends[2] = {-1, -1};
    // What the child needs of this process is usable in it whatever other threads do: malloc and
    // stdio by the C library, CFITSIO by cfitsio(). It starts no thread, loads nothing, throws
    // nothing that it could catch, and ends by itself should it ever wait.
    const int hasPipe = pipe2(ends, O_CLOEXEC) == 0;
    process_ = hasPipe ? fork() : -1;
    const int fault = errno;
    if (process_ == 0) {
        const int out = keepOnly(ends[1]);
        becomeQuiet(image_);
        int status = 0;
        fitsfile* const file = openImage(library, name_, image_, status);
        if (isScaled_)
            library.setScale(file, scale_, zero_, &status);
        if (!status)
            sendRows(library, file, image_, plane_, out);
        _exit(0);
    }
    if (process_ < 0)
        error = std::string(hasPipe ? "cannot be unpacked, for that needs a process of its own: "
                                    : "cannot be unpacked: ") +
                std::strerror(fault);
    if (ends[1] >= 0)
        (void)close(ends[1]);
    pipe_ = ends[0];
    return process_ > 0;
}

int PackedReader::read(int, int rows, float* cells)
{
    auto* to = reinterpret_cast<char*>(cells);
    std::int64_t left = rows * image_.lengths[0] * static_cast<std::int64_t>(sizeof(float));
    while (left > 0) {
        const ssize_t some = ::read(pipe_, to, static_cast<std::size_t>(left));
        if (some == 0 || (some < 0 && errno != EINTR))
            return 0;
        to += std::max<ssize_t>(some, 0);
        left -= std::max<ssize_t>(some, 0);
    }
    return 1;
}

}  // namespace pavane
