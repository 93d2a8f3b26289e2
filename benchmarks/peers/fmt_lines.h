#pragma once

#include <vector>

/// Writes `cells` as lines of `columns` numbers, each after its number.
void writeWithFmt(const std::vector<double>& cells, int columns, const char* file);
