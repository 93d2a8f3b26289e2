#pragma once

#include "platform/core/DeviceBackend.h"

#include <set>

namespace pavane
{

/// A font file with the outlines of `glyphs` only, under their numbers, and without instructions
/// for coarse devices: what a page needs to draw them. Empty when the program has no outlines of
/// this kind or cannot be read.
std::string trueTypeSubset(const FontProgram& program, const std::set<unsigned>& glyphs);

/// Numbers in the tables of font files, most significant byte first; 0 beyond their end.
unsigned fontWord(std::string_view table, std::size_t at);
inline int fontShort(std::string_view table, std::size_t at)
{
    return static_cast<std::int16_t>(fontWord(table, at));
}

}  // namespace pavane
