#include "pavane/printing/layout/page_geometry.h"

#include "pavane/resources/print_messages.h"
#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

namespace
{

constexpr int hundredthsOfMillimetre = 100;
constexpr double longestLength = 10000;

int pixelsOf(int margin, int pixels, int millimetres)
{
    return truncated(std::max(margin, 0) * (pixels * 0.01) / millimetres + 0.5);
}

}  // namespace

CRect printableRect(const PageCaps& page, const CRect& margins)
{
    if (page.width < 1 || page.height < 1 || page.xPixels < 1 || page.yPixels < 1)
        return {};
    const int left = pixelsOf(margins.left, page.xPixels, page.width);
    const int top = pixelsOf(margins.top, page.yPixels, page.height);
    const int right = pixelsOf(margins.right, page.xPixels, page.width);
    const int bottom = pixelsOf(margins.bottom, page.yPixels, page.height);
    const CRect rect(left, top, saturatedSum(page.xPixels, -std::int64_t{right}),
                     saturatedSum(page.yPixels, -std::int64_t{bottom}));
    return rect.IsRectEmpty() ? CRect() : rect;
}

MarginCheck checkMargins(const CRect& margins, const CSize& paper, const CRect& least)
{
    if (paper.cx < 1 || paper.cy < 1)
        return {0, -1, noPaper};
    const int given[] = {margins.left, margins.top, margins.right, margins.bottom};
    const int bounds[] = {least.left, least.top, least.right, least.bottom};
    for (int side = 0; side < 4; ++side) {
        const int bound = bounds[side] > 0 ? bounds[side] : 0;
        if (given[side] < bound)
            return {0, side,
                    CString("The ") + marginSides[side] + marginBelowLeast + millimetreText(bound) +
                        " mm."};
    }
    const std::int64_t width = std::int64_t{paper.cx} - margins.left - margins.right;
    const std::int64_t height = std::int64_t{paper.cy} - margins.top - margins.bottom;
    if (width < leastPrintable || height < leastPrintable)
        return {0, -1, noPrintableArea};
    return {};
}

CString millimetreText(int hundredths)
{
    return nValToStr(hundredths / double{hundredthsOfMillimetre}, 2);
}

int readMillimetres(const CString& text, int& hundredths)
{
    double length = 0;
    if (!stoval(text, length) || !(length >= 0 && length <= longestLength))
        return 0;
    hundredths = truncated(length * hundredthsOfMillimetre + 0.5);
    return 1;
}

}  // namespace pavane
