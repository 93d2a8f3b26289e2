#include "pavane/images/ADIBase.h"

#include "pavane/containers/item_io.h"
#include "tessel/AFile.h"
#include "tessel/large_buffer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace pavane
{

namespace
{

// Neither sides nor buffers beyond what an int counts.
constexpr std::int64_t greatestSide = std::numeric_limits<std::int32_t>::max() - 3;
constexpr std::int64_t greatestBuffer = std::int64_t{1} << 40;

}  // namespace

ADIBase::ADIBase(const CRect& rect)
{
    cover(rect);
    allocate(false);
}

ADIBase::ADIBase(AFile& file, const MessageReceiver& messages)
{
    CRect rect;
    int whole = loadItem(file, rect.left) && loadItem(file, rect.top) &&
                loadItem(file, rect.right) && loadItem(file, rect.bottom);
    if (whole) {
        cover(rect);
        const std::int64_t bytes = std::int64_t{height_} * scanWidth_;
        const bool isInverted = rect.left > rect.right || rect.top > rect.bottom;
        if (bytes > file.left() || (bytes == 0 && !isInverted)) {
            cover(CRect(0, 0, -1, -1));
            whole = 0;
        } else {
            allocate(true);  // cleared: a read that fails shows no stale memory
            whole = bytes == 0 || (bits_ && file.read(bits_, bytes));
        }
    }
    if (!whole)
        (void)messages.tell("ADIBase::ADIBase(AFile& s)");
}

ADIBase::ADIBase(const ADIBase& other) { *this = other; }

ADIBase& ADIBase::operator=(const ADIBase& other)
{
    if (this == &other)
        return *this;
    delete[] bits_;
    bits_ = nullptr;
    rect_ = other.rect_;
    color_ = other.color_;
    lineWidth_ = other.lineWidth_;
    linePattern_ = other.linePattern_;
    width_ = other.width_;
    height_ = other.height_;
    scanWidth_ = other.scanWidth_;
    if (other.bits_)
        allocate(false);
    if (bits_)
        std::memcpy(bits_, other.bits_,
                    static_cast<std::size_t>(height_) * static_cast<std::size_t>(scanWidth_));
    return *this;
}

ADIBase& ADIBase::operator=(short index)
{
    if (bits_)
        std::memset(bits_, index & 255,
                    static_cast<std::size_t>(height_) * static_cast<std::size_t>(scanWidth_));
    return *this;
}

ADIBase::~ADIBase() { delete[] bits_; }

int ADIBase::Store(AFile& file) const
{
    const CRect rect = bits_ ? rect_ : CRect(0, 0, -1, -1);
    return storeItem(file, rect.left) && storeItem(file, rect.top) && storeItem(file, rect.right) &&
           storeItem(file, rect.bottom) && file.write(bits_, std::int64_t{height_} * scanWidth_);
}

void ADIBase::cover(const CRect& rect)
{
    const std::int64_t width = std::int64_t{rect.right} - rect.left + 1;
    const std::int64_t height = std::int64_t{rect.bottom} - rect.top + 1;
    rect_ = rect;
    width_ = height_ = scanWidth_ = 0;
    if (width < 1 || height < 1 || width > greatestSide || height > greatestSide)
        return;
    width_ = static_cast<std::int32_t>(width);
    height_ = static_cast<std::int32_t>(height);
    scanWidth_ = ScanLineWidth(width_);
}

void ADIBase::allocate(bool cleared)
{
    const std::int64_t bytes = std::int64_t{height_} * scanWidth_;
    if (bytes > 0 && bytes <= greatestBuffer)
        bits_ = new (std::nothrow) unsigned char[static_cast<std::size_t>(bytes)];
    if (!bits_) {
        width_ = height_ = scanWidth_ = 0;
        return;
    }
    adviseHugePages(bits_, bytes);
    if (cleared)
        std::memset(bits_, 0, static_cast<std::size_t>(bytes));
    else  // the bytes that pad a scan line are zero in every file
        for (int row = 0; row < height_ && scanWidth_ > width_; ++row)
            std::memset(bits_ + std::ptrdiff_t{row} * scanWidth_ + width_, 0,
                        static_cast<std::size_t>(scanWidth_ - width_));
}

}  // namespace pavane
