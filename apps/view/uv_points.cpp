#include "apps/view/uv_points.h"

#include "tessel/LineReader.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

/// The two numbers at the start of a line.
int readPoint(std::string_view line, double& u, double& v)
{
    const std::size_t comma = line.find(',');
    if (comma == std::string_view::npos)
        return 0;
    const std::string_view rest = line.substr(comma + 1);
    return stoval(line.substr(0, comma), u) && stoval(rest.substr(0, rest.find(',')), v) &&
           std::isfinite(u) && std::isfinite(v);
}

int isBlank(std::string_view line)
{
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

/// A line that names the columns rather than filling them.
int isHeading(std::string_view line)
{
    const char first = line[line.find_first_not_of(" \t")];
    return std::string_view("+-.0123456789").find(first) == std::string_view::npos;
}

}  // namespace

int readUvPoints(const std::string& file, UvPoints& points, std::string& error)
{
    points = UvPoints();
    AFile in;
    if (!in.open(file, AFile::readOnly)) {
        error = readFault(file);
        return 0;
    }
    LineReader lines(in);
    std::string line;
    int headingAllowed = 1;
    while (lines.next(line)) {
        if (lines.number() == 1 && line.starts_with(byteOrderMark))
            line.erase(0, byteOrderMark.size());
        if (isBlank(line) || line.front() == '#')
            continue;
        double u = 0;
        double v = 0;
        if (readPoint(line, u, v)) {
            points.u.push_back(u);
            points.v.push_back(v);
        } else if (!headingAllowed || !isHeading(line)) {
            error = "line " + std::to_string(lines.number()) + " is not 'u,v' in wavelengths";
            return 0;
        }
        headingAllowed = 0;
    }
    error = lines.fault();
    return error.empty();
}

}  // namespace pavane
