#pragma once

#include "platform/core/DeviceBackend.h"
#include "platform/picture_bytes.h"

#include <string>

namespace pavane
{

class StopFlag;

inline constexpr const char* pictureGivenUp = "The picture was given up";

/// How a PNG is written.
struct PngLook {
    int dpi = 96;
    PngSpeed speed = PngSpeed::usual;
    bool isTransparent = false;  ///< the byte above a colour tells how much of the ground shows
};

/// Appends a PNG file of `image` to `bytes`. Non-zero on success; else `error` says why, and
/// `bytes` has what it had.
int writePNG(const ImageView& image, const PngLook& look, std::vector<unsigned char>& bytes,
             std::string& error, const StopFlag* stop = nullptr);

}  // namespace pavane
