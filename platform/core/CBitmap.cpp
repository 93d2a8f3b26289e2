#include "platform/core/DeviceBackend.h"
#include "platform/window_dc.h"

#include <new>

namespace pavane
{

struct CBitmap::Data {
    int width = 0;
    int height = 0;
    int ratio = 1;
    std::vector<std::uint32_t> bits;
    PixelSurface surface()
    {
        return {bits.data(), width, height, std::ptrdiff_t{width} * ratio, ratio};
    }
};

CBitmap::CBitmap() = default;
CBitmap::~CBitmap() = default;
CBitmap::CBitmap(CBitmap&&) noexcept = default;
CBitmap& CBitmap::operator=(CBitmap&&) noexcept = default;

int CBitmap::CreateCompatibleBitmap(const CDC& dc, int width, int height)
{
    return CreateBitmap(width, height, dc.GetPixelRatio());
}

int CBitmap::CreateBitmap(int width, int height, int ratio)
{
    constexpr int greatestSide = 32768;
    data_.reset();
    if (width < 1 || height < 1 || width > greatestSide || height > greatestSide || ratio < 1 ||
        ratio > 8)
        return 0;
    // a vector has no other way to say that memory ran out
    try {
        auto data = std::make_unique<Data>(Data{width, height, ratio, {}});
        data->bits.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(ratio) *
                              static_cast<std::size_t>(height) * static_cast<std::size_t>(ratio),
                          0xFFFFFF);
        data_ = std::move(data);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    return 1;
}

CSize CBitmap::size() const { return data_ ? CSize{data_->width, data_->height} : CSize{}; }
int CBitmap::ratio() const { return data_ ? data_->ratio : 1; }
const std::uint32_t* CBitmap::bits() const { return data_ ? data_->bits.data() : nullptr; }

CMemoryDC::CMemoryDC(CBitmap& bitmap)
    : CDC(std::make_unique<SurfaceBackend>(bitmap.data() ? bitmap.data()->surface()
                                                         : PixelSurface{}))
{
}

}  // namespace pavane
