#pragma once

#include <string>
#include <vector>

namespace pavane
{

/// Points of the aperture plane, in wavelengths; u[i] goes with v[i].
struct UvPoints {
    std::vector<double> u, v;
};

/// Reads a file of lines "u,v" (more columns are ignored). Empty lines, lines that start with '#'
/// and a first line of words are skipped. Non-zero on success; else 0 and `error` says in one line,
/// with the line's number, what is wrong.
int readUvPoints(const std::string& file, UvPoints& points, std::string& error);

}  // namespace pavane
