#pragma once

#include "platform/types.h"

#include <string>
#include <vector>

namespace pavane
{

/// Loads a palette by name or file; without a name the default one, wherever it is found. Non-zero
/// on success; else 0 and `error` is one line with the names that there are.
int choosePalette(const std::string& name, std::string& error);
/// The palette that a map has, by its own colours, without any the one of the program; empty when
/// these are those of no palette.
std::string paletteNameOf(const std::vector<COLORREF>& colours);

}  // namespace pavane
