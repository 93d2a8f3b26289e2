#include "apps/ms/commands.h"
#include "apps/ms/Failure.h"
#include "apps/ms/GainGrid.h"
#include "apps/ms/OutputPath.h"
#include "apps/ms/text.h"
#include "apps/ms/Words.h"

#include <filesystem>
#include <hdf5.h>
#include <optional>

namespace pavane_ms
{

namespace
{

std::optional<DataFrame> frameOf(const Words& words)
{
    if (!words.has("data"))
        return {};
    return readFrame(safePath(words.value("data")));
}

void sayLost(const std::vector<std::string>& lost)
{
    for (const std::string& one : lost)
        say("lost", one);
}

}  // namespace

void gainsToH5(const std::vector<std::string>& words)
{
    const Words given(words, {"data="}, 2, 2);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    const std::string input = safePath(given.names()[0]), output = safePath(given.names()[1]);
    refuseSame(input, output);
    const GainFile gains = readGains(input);
    const std::optional<DataFrame> frame = frameOf(given);
    // all of a gain is at most 14 numbers
    needSpace(output, gains.lines.size() * 14 * sizeof(double));
    OutputPath place(output, 0, 1);
    const auto lost = writeH5(place.partName(), gains, frame ? &*frame : nullptr);
    place.commit();
    say("gains", gains.lines.size());
    sayLost(lost);
}

void gainsFromH5(const std::vector<std::string>& words)
{
    const Words given(words, {"data=", "direction="}, 2, 2);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    const std::string input = safePath(given.names()[0]), output = safePath(given.names()[1]);
    refuseSame(input, output);
    std::error_code error;
    if (!std::filesystem::is_regular_file(input, error))
        throw Failure("there is no file " + given.names()[0]);
    int direction = 0;
    if (given.has("direction") &&
        (!readNumber(given.value("direction"), direction) || direction < 1))
        throw WrongUse("--direction takes a number from 1");
    const std::optional<DataFrame> frame = frameOf(given);
    std::vector<std::string> lost;
    const GainFile gains = readH5(input, frame ? &*frame : nullptr, direction, lost);
    OutputPath place(output, 0, 1);
    writeGains(place.partName(), gains);
    place.commit();
    say("gains", gains.lines.size());
    sayLost(lost);
}

}  // namespace pavane_ms
