#pragma once

#include <QIcon>

namespace pavane
{

/// The icon drawn by rows of text ('#' dark, '+' accent, '.' light, other none), centred in a
/// square of 16 or 20 dots: smooth slants on finer screens, grey when it is disabled.
QIcon iconOf(const char* const* rows, int rowCount);
/// Dots along an edge of that icon.
int glyphSize(int rowCount);

}  // namespace pavane
