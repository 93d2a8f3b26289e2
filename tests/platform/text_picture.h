#pragma once

#include "platform/picture.h"

#include <string>

/// A picture as text, a line per row: '.' is white, '#' black, '+' any other colour.
inline std::string asText(const pavane::CPicture& picture)
{
    std::string text;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const std::uint32_t p = picture.row(y)[x];
            text += p == 0xFFFFFF ? '.' : p == 0 ? '#' : '+';
        }
        text += '\n';
    }
    return text;
}
