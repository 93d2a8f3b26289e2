// Feeds any lines as the arguments of both programs.
#include "apps/simulate/options.h"
#include "apps/view/options.h"

#include <cstdint>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    std::vector<std::string> arguments;
    for (std::string line; std::getline(lines, line);)
        arguments.push_back(line);
    ViewOptions view;
    SimulateOptions simulate;
    std::string error;
    (void)parseOptions(arguments, view, error);
    (void)parseSimulateOptions(arguments, simulate, error);
    return 0;
}
