#include "platform/core/DeviceBackend.h"
#include "platform/picture.h"

#include <new>

namespace pavane
{

namespace
{

constexpr int greatestSide = 32768;

}  // namespace

CPicture::CPicture(int width, int height)
{
    if (width < 1 || height < 1 || width > greatestSide || height > greatestSide)
        return;
    // a vector has no other way to say that memory ran out
    try {
        pixels_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                       0xFFFFFF);
    } catch (const std::bad_alloc&) {
        return;
    }
    width_ = width;
    height_ = height;
}

CPicture& CPicture::operator=(CPicture&& other) noexcept
{
    pixels_ = std::exchange(other.pixels_, {});
    width_ = std::exchange(other.width_, 0);
    height_ = std::exchange(other.height_, 0);
    return *this;
}

std::unique_ptr<CDC> CPicture::dc()
{
    return std::make_unique<CDC>(
        std::make_unique<SurfaceBackend>(PixelSurface{pixels_.data(), width_, height_, width_}));
}

int CPicture::CanDrawText(CString* why)
{
    const int can = graphicsHook() != nullptr;
    if (why)
        *why = can ? "" : noPlatformText;
    return can;
}

}  // namespace pavane
