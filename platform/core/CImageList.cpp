#include "platform/core/dots.h"
#include "platform/image_list.h"
#include "platform/window_dc.h"

#include <string_view>

namespace pavane
{

namespace
{

constexpr COLORREF white = RGB(255, 255, 255);
constexpr int greatestSide = 256;
constexpr int greatestRatio = 8;
constexpr std::string_view inks = "#+.";

/// Calls paint(x, y, count, ink) for each run of dots of one ink; ink -1 is nothing.
template <class Paint>
void eachRun(const Dots& dots, Paint paint)
{
    for (int y = 0; y < dots.height; ++y) {
        for (int x = 0; x < dots.width;) {
            const auto ink = static_cast<int>(inks.find(dots.at(x, y)));
            int end = x + 1;
            while (end < dots.width && static_cast<int>(inks.find(dots.at(end, y))) == ink)
                ++end;
            paint(x, y, end - x, ink);
            x = end;
        }
    }
}

}  // namespace

struct CImageList::Data {
    /// A picture at one ratio. Where `mask` is black the picture paints, and it is black elsewhere.
    struct Fine {
        int ratio = 0;
        CBitmap mask;
        CBitmap picture;
    };
    struct Image {
        Dots dots;
        std::vector<Fine> fine;
    };
    CSize size;
    COLORREF colors[3] = {RGB(0x2A, 0x30, 0x38), RGB(0x1F, 0x6F, 0xC8), RGB(0xB9, 0xC2, 0xCC)};
    std::vector<Image> images;

    Fine* fineOf(Image& image, int ratio) const
    {
        for (Fine& known : image.fine)
            if (known.ratio == ratio)
                return &known;
        Fine made;
        made.ratio = ratio;
        if (!made.mask.CreateBitmap(size.cx * ratio, size.cy * ratio, 1) ||
            !made.picture.CreateBitmap(size.cx * ratio, size.cy * ratio, 1))
            return nullptr;
        CMemoryDC mask(made.mask);
        CMemoryDC picture(made.picture);
        eachRun(enlarged(image.dots, ratio), [&](int x, int y, int count, int ink) {
            const CRect run(x, y, x + count, y + 1);
            mask.FillSolidRect(run, ink < 0 ? white : 0);
            picture.FillSolidRect(run, ink < 0 ? 0 : colors[ink]);
        });
        image.fine.push_back(std::move(made));
        return &image.fine.back();
    }
};

CImageList::CImageList() : data_(std::make_unique<Data>()) {}
CImageList::~CImageList() = default;

int CImageList::Create(int width, int height)
{
    data_->images.clear();
    const bool fits = width > 0 && height > 0 && width <= greatestSide && height <= greatestSide;
    data_->size = fits ? CSize{width, height} : CSize{};
    return fits;
}

int CImageList::Add(const char* const* rows, int rowCount)
{
    if (data_->size.cx == 0 || !rows || rowCount < 0)
        return -1;
    data_->images.push_back({dotsOf(rows, rowCount, data_->size.cx, data_->size.cy), {}});
    return GetImageCount() - 1;
}

int CImageList::GetImageCount() const { return static_cast<int>(data_->images.size()); }
CSize CImageList::GetImageSize() const { return data_->size; }

void CImageList::SetColors(COLORREF dark, COLORREF accent, COLORREF light)
{
    data_->colors[0] = dark;
    data_->colors[1] = accent;
    data_->colors[2] = light;
    for (Data::Image& image : data_->images)
        image.fine.clear();
}

int CImageList::Draw(CDC& dc, int image, CPoint at, unsigned style) const
{
    if (image < 0 || image >= GetImageCount())
        return 0;
    Data::Image& drawn = data_->images[static_cast<std::size_t>(image)];
    const CSize size = data_->size;
    if (style == ILD_NORMAL)
        dc.FillSolidRect({at.x, at.y, at.x + size.cx, at.y + size.cy}, white);
    if (dc.IsVector()) {
        eachRun(drawn.dots, [&](int x, int y, int count, int ink) {
            const int left = at.x + x;
            if (ink >= 0)
                dc.FillSolidRect({left, at.y + y, left + count, at.y + y + 1}, data_->colors[ink]);
        });
        return 1;
    }
    const int ratio = dc.GetPixelRatio();
    Data::Fine* const fine = ratio <= greatestRatio ? data_->fineOf(drawn, ratio) : nullptr;
    if (!fine)
        return 0;
    const CMemoryDC mask(fine->mask);
    const CMemoryDC picture(fine->picture);
    dc.StretchBlt(at.x, at.y, size.cx, size.cy, &mask, 0, 0, size.cx * ratio, size.cy * ratio,
                  SRCAND);
    dc.StretchBlt(at.x, at.y, size.cx, size.cy, &picture, 0, 0, size.cx * ratio, size.cy * ratio,
                  SRCPAINT);
    return 1;
}

int ImageList_Draw(const CImageList& list, int image, CDC& dc, int x, int y, unsigned style)
{
    return list.Draw(dc, image, {x, y}, style);
}

}  // namespace pavane
