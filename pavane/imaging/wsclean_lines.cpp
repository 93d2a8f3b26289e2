#include "pavane/imaging/wsclean_lines.h"

#include "tessel/trimmed.h"

#include <array>
#include <charconv>
#include <cmath>

namespace pavane
{

namespace
{

struct Unit {
    std::string_view name;
    double factor;
};
// longer names first, as "Jy" ends several of them
constexpr std::array<Unit, 6> fluxUnits = {
    {{"mJy", 1e-3}, {"µJy", 1e-6}, {"uJy", 1e-6}, {"nJy", 1e-9}, {"KJy", 1e3}, {"Jy", 1}}};

int skip(std::string_view& text, std::string_view start)
{
    if (text.substr(0, start.size()) != start)
        return 0;
    text.remove_prefix(start.size());
    return 1;
}

void skipBlanks(std::string_view& text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
}

template <typename T>
int take(std::string_view& text, T& value)
{
    skipBlanks(text);
    T read{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
    if (error != std::errc())
        return 0;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    value = read;
    return 1;
}

/// "22.3 mJy at 255,256".
int takePeak(std::string_view text, EngineNews& news)
{
    double peak = 0;
    if (!takeFlux(text, peak))
        return 0;
    news.peak = peak;
    news.hasPeak = 1;
    if (news.firstPeak < 0)
        news.firstPeak = std::abs(peak);
    skipBlanks(text);
    int x = 0, y = 0;
    if (skip(text, "at") && take(text, x) && skip(text, ",") && take(text, y)) {
        news.peakX = x;
        news.peakY = y;
    }
    return 1;
}

int readIteration(std::string_view line, EngineNews& news)
{
    const std::size_t at = line.find("Iteration ");
    if (at > 16)  // "(8) Iteration 22, scale 8 px : 732.19 mJy at 128,128"
        return 0;
    line.remove_prefix(at + 10);
    long long iterations = 0;
    const std::size_t colon = line.find(" : ");
    if (!take(line, iterations) || colon == std::string_view::npos)
        return 0;
    news.iterations = iterations;
    const std::size_t value = line.find(" : ");
    return value != std::string_view::npos && takePeak(line.substr(value + 3), news);
}

int readStop(std::string_view line, EngineNews& news)
{
    if (!skip(line, "Stopped on peak"))
        return 0;
    double peak = 0;
    if (takeFlux(line, peak)) {
        news.peak = peak;
        news.hasPeak = 1;
    }
    constexpr std::string_view because = "because ";
    if (const std::size_t at = line.find(because); at != std::string_view::npos) {
        line.remove_prefix(at + because.size());
        news.stopReason = line.substr(0, line.find('.'));
    }
    return 1;
}

/// The last "40%" of "0%....10%....20%....30%....40%..".
int readPercent(std::string_view line, EngineNews& news)
{
    const std::size_t sign = line.rfind('%');
    if (sign == std::string_view::npos || sign == 0)
        return 0;
    std::size_t first = sign;
    while (first > 0 && line[first - 1] >= '0' && line[first - 1] <= '9')
        --first;
    int percent = 0;
    std::string_view digits = line.substr(first, sign - first);
    if (!take(digits, percent) || percent < 0 || percent > 100)
        return 0;
    const bool isBar = line.find("....") != std::string_view::npos || line.size() < 8;
    if (!isBar)
        return 0;
    news.percent = percent;
    if (const std::size_t colon = line.find(": 0%"); colon != std::string_view::npos)
        news.doing = line.substr(0, colon);
    return 1;
}

int readHeading(std::string_view line, EngineNews& news)
{
    constexpr std::string_view deconvolving = "== Deconvolving (";
    if (std::string_view rest = line; skip(rest, deconvolving)) {
        (void)take(rest, news.cycle);
        news.doing = "Deconvolving";
        return 1;
    }
    if (std::string_view rest = line; skip(rest, "== ")) {
        const std::size_t end = rest.find(" ==");
        if (end == std::string_view::npos || rest.find("===") != std::string_view::npos)
            return 0;
        news.doing = rest.substr(0, end);
        return 1;
    }
    return 0;
}

int readBeam(std::string_view line, EngineNews& news)
{
    const auto angle = [&line](std::string_view name, double& value) -> int {
        const std::size_t at = line.find(name);
        if (at == std::string_view::npos)
            return 0;
        std::string_view text = line.substr(at + name.size());
        if (!take(text, value))
            return 0;
        skipBlanks(text);
        const double factor = skip(text, "masec")                      ? 1e-3
                              : skip(text, "µasec")                    ? 1e-6
                              : skip(text, "asec") || skip(text, "''") ? 1
                              : skip(text, "amin") || skip(text, "'")  ? 60
                              : skip(text, "deg")                      ? 3600
                                                                       : 0;
        value *= factor;
        return factor > 0 && std::isfinite(value);
    };
    MapBeam beam;
    double position = 0;
    if (line.find("Fitting beam") == std::string_view::npos || !angle("major=", beam.major) ||
        !angle("minor=", beam.minor) || !angle("PA=", position))
        return 0;
    beam.angle = position / 3600;
    news.beam = beam;
    return 1;
}

}  // namespace

int takeFlux(std::string_view& text, double& jansky)
{
    double value = 0;
    if (!take(text, value) || !std::isfinite(value))
        return 0;
    skipBlanks(text);
    for (const Unit& unit : fluxUnits)
        if (skip(text, unit.name)) {
            jansky = value * unit.factor;
            return 1;
        }
    return 0;
}

int readWscleanLine(std::string_view line, EngineNews& news)
{
    line = trimmed(line, whiteSpace);
    std::string_view rest = line;
    if (skip(rest, "+ >>> ")) {
        news.fault = rest;
        return 1;
    }
    if (skip(rest, "Initial peak:"))
        return takePeak(rest, news);
    if (skip(rest, "Starting multi-scale cleaning. Start peak=")) {
        double peak = 0;
        if (!takeFlux(rest, peak))
            return 0;
        news.peak = peak;
        news.hasPeak = 1;
        if (news.firstPeak < 0)
            news.firstPeak = std::abs(peak);
        return 1;
    }
    if (skip(rest, "Performed "))
        return take(rest, news.iterations);
    if (skip(rest, "Estimated standard deviation of background noise:"))
        return takeFlux(rest, news.noise);
    if (skip(rest, "Gridded visibility count:")) {
        double count = 0;  // with a fraction where baselines are averaged
        if (!take(rest, count) || !(count >= 0 && count < 9e18))
            return 0;
        news.visibilities = static_cast<long long>(count);
        return 1;
    }
    if (line.find("terminate called") != std::string_view::npos ||
        line.find("std::bad_alloc") != std::string_view::npos) {
        news.fault = line;
        return 1;
    }
    return readStop(line, news) || readHeading(line, news) || readIteration(line, news) ||
           readBeam(line, news) || readPercent(line, news);
}

}  // namespace pavane
