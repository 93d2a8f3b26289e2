#pragma once

#include "tessel/ABitArray.h"

#include <string>

namespace pavane
{

/// Bits that are written as zeros and ones.
inline ABitArray bits(const std::string& text)
{
    ABitArray marks(static_cast<int>(text.size()));
    for (int i = 0; i < marks.count(); ++i)
        marks.set(i, text[static_cast<std::size_t>(i)] == '1');
    return marks;
}

inline std::string asText(const ABitArray& bits)
{
    std::string text;
    for (int i = 0; i < bits.count(); ++i)
        text += bits.get(i) ? '1' : '0';
    return text;
}

}  // namespace pavane
