#pragma once

#include "tessel/fits_scan.h"
#include "tessel/PlaneReader.h"

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace pavane
{

/// Tile-compressed cells, which CFITSIO unpacks. Its decoders trust what they read and run past
/// their buffers in a damaged file, so they work in a process of their own, which sends the rows
/// through a pipe: when it dies, the pipe ends early and nothing else has happened. The process may
/// take the memory and the time that the image's header asks for and little more.
class PackedReader : public PlaneReader
{
public:
    /// Reads `plane`, from 0 over all further axes, of the image in the file called `name`.
    PackedReader(const std::string& name, const FitsImage& image, int plane);
    PackedReader(const PackedReader&) = delete;
    PackedReader& operator=(const PackedReader&) = delete;
    ~PackedReader() override;
    /// What stored cells become before they are sent: stored * scale + zero. Before `start`.
    void setScale(double scale, double zero);
    /// Starts the process. Non-zero on success, else `error`.
    int start(std::string& error);
    int read(int first, int rows, float* cells) override;

private:
    std::string name_;
    FitsImage image_;
    int plane_;
    int isScaled_ = 0;
    double scale_ = 1;
    double zero_ = 0;
    int pipe_ = -1;
    pid_t process_ = -1;
};

}  // namespace pavane
