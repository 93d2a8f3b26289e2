#include "apps/simulate/options.h"

#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{

namespace
{

int number(const std::string& text, double low, double high, double& value)
{
    double read = 0;
    if (!stoval(text, read) || !(read >= low) || !(read <= high))
        return 0;
    value = read;
    return 1;
}

int whole(const std::string& text, int low, int high, int& value)
{
    int read = 0;
    if (!stoval(text, read) || read < low || read > high)
        return 0;
    value = read;
    return 1;
}

/// Applies one option; 0 when there is none of the name or its value is of no use.
int apply(const std::string& name, const std::string& value, SimulateOptions& options)
{
    Observation& o = options.observation;
    int seed = 0;
    if (name == "--out") {
        options.folder = value;
        return !value.empty();
    }
    if (name == "--seed") {
        const int good = whole(value, 0, 2147483647, seed);
        o.seed = static_cast<std::uint64_t>(seed);
        return good;
    }
    if (name == "--size")
        return whole(value, 64, 2048, options.size) && options.size % 2 == 0;
    if (name == "--cell")
        return number(value, 1e-3, 10, options.cell);
    if (name == "--noise")
        return number(value, 0, 100, o.noise);
    if (name == "--hours")
        return number(value, 0.1, 24, o.hours);
    return name == "--clean" && whole(value, 0, 1000000, options.iterations);
}

}  // namespace

const char* simulateUsage()
{
    return "usage: pavane-simulate [--out FOLDER] [--seed N] [--size CELLS] [--cell MAS] [--noise "
           "JY] "
           "[--hours H] [--clean ITERATIONS]";
}

int parseSimulateOptions(const std::vector<std::string>& arguments, SimulateOptions& options,
                         std::string& error)
{
    options = SimulateOptions();
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        if (arguments[i] == "--help") {
            options.help = 1;
            return 1;
        }
        const std::string value = i + 1 < arguments.size() ? arguments[i + 1] : "";
        if (!apply(arguments[i], value, options)) {
            error = "cannot use '" + arguments[i] + (value.empty() ? "" : " " + value) + "'";
            return 0;
        }
    }
    return 1;
}

}  // namespace pavane
