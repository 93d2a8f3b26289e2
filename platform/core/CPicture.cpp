#include "platform/core/DeviceBackend.h"
#include "platform/picture.h"
#include "posix/huge_pages.h"
#include "posix/StopFlag.h"

#include <algorithm>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr int greatestSide = 32768;
constexpr std::size_t pixelsOfLook = std::size_t{1} << 20;

}  // namespace

CPicture::CPicture(int width, int height, PictureGround ground)
    : CPicture(width, height, ground, nullptr)
{
}

CPicture::CPicture(int width, int height, PictureGround ground, const StopFlag* stop)
{
    if (width < 1 || height < 1 || width > greatestSide || height > greatestSide)
        return;
    // a vector has no other way to say that memory ran out
    try {
        const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        pixels_.reserve(count);
        // or the first touch of a poster's pixels takes longer than all that stops in between
        hintHugePages(pixels_.data(), static_cast<std::int64_t>(count * sizeof(pixels_[0])));
        const std::uint32_t empty = ground == PictureGround::transparent ? 0xFF000000u : 0xFFFFFFu;
        while (pixels_.size() < count && !isStopped(stop))
            pixels_.resize(std::min(count, pixels_.size() + pixelsOfLook), empty);
    } catch (const std::bad_alloc&) {
        return;
    }
    if (isStopped(stop)) {
        pixels_ = {};
        return;
    }
    width_ = width;
    height_ = height;
    ground_ = ground;
}

CPicture& CPicture::operator=(CPicture&& other) noexcept
{
    pixels_ = std::exchange(other.pixels_, {});
    width_ = std::exchange(other.width_, 0);
    height_ = std::exchange(other.height_, 0);
    ground_ = std::exchange(other.ground_, PictureGround::white);
    return *this;
}

std::unique_ptr<CDC> CPicture::dc()
{
    PixelSurface surface{pixels_.data(), width_, height_, width_};
    surface.isTransparent = ground_ == PictureGround::transparent;
    return std::make_unique<CDC>(std::make_unique<SurfaceBackend>(surface));
}

int CPicture::CanDrawText(CString* why)
{
    const int can = graphicsHook() != nullptr;
    if (why)
        *why = can ? "" : noPlatformText();
    return can;
}

}  // namespace pavane
