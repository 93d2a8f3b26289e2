#pragma once

namespace pavane
{

/// Reads blocks of whole rows of one plane of an image, one after the other.
class PlaneReader
{
public:
    virtual ~PlaneReader() = default;
    /// Reads `rows` rows from row `first` on. Non-zero on success.
    virtual int read(int first, int rows, float* cells) = 0;
};

}  // namespace pavane
