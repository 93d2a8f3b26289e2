#pragma once

#include "pavane/images/ADIBase.h"

#include <string>

namespace pavane
{

// A raster of 0 and 1 as text, '.' and '#', top row first.
inline std::string asText(const ADIBase& dib)
{
    std::string text;
    for (int y = dib.rect().top; y <= dib.rect().bottom; ++y) {
        for (int x = dib.rect().left; x <= dib.rect().right; ++x)
            text += dib.GetPixel(x, y) ? '#' : '.';
        text += '\n';
    }
    return text;
}

// A raster of zeros that draws in 1.
inline ADIBase blank(const CRect& rect)
{
    ADIBase dib(rect);
    dib = short{0};
    dib.SetColor(1);
    return dib;
}

}  // namespace pavane
