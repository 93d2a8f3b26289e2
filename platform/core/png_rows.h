#pragma once

#include "platform/core/DeviceBackend.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pavane
{

/// The rows of a picture as PNG packs them: a byte for the filter, then three bytes a pixel, or
/// four with alpha. Rows that mostly repeat the row above are written as the difference to it, all
/// others as they are: drawings and maps have few colours, and differences to a neighbour make them
/// many.
class PngRows
{
public:
    PngRows(const ImageView& image, bool isTransparent);
    std::size_t rowBytes() const { return 1 + width_ * channels_; }
    /// The next row, from the top, into rowBytes() bytes.
    void next(unsigned char* to);

private:
    const std::uint32_t* pixelsOf(const std::uint32_t* row, std::vector<std::uint32_t>& made) const;

    const std::uint32_t* row_;
    std::size_t width_;
    std::size_t channels_;
    const std::uint32_t* above_ = nullptr;
    std::vector<std::uint32_t> made_[2];  ///< this row and the one above, straight alpha
    std::vector<std::uint32_t> differences_;
};

}  // namespace pavane
