#pragma once

#include "tessel/AFile.h"
#include "tessel/fits_handle.h"
#include "tessel/fits_scan.h"

#include <memory>

namespace pavane
{

/// Reads blocks of whole rows of one plane, one after the other.
class PlaneReader
{
public:
    virtual ~PlaneReader() = default;
    /// Reads `rows` rows from row `first` on. Non-zero on success.
    virtual int read(int first, int rows, float* cells) = 0;
};

/// The reader of `plane`, from 0 over all further axes, of the image, which is the current one of
/// `fits`; `file` is the same file. Both outlive the reader.
std::unique_ptr<PlaneReader> planeReader(AFile& file, FitsHandle& fits, const FitsImage& image,
                                         int plane);

}  // namespace pavane
