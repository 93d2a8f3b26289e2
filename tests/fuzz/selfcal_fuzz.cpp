// Feeds any bytes to self-calibration as a file of visibilities, then to the filter, the writer of
// corrected files and the search in a rectangle.
#include "pavane/calibration/flags/UvPick.h"
#include "pavane/calibration/gains/SelfCalibration.h"
#include "pavane/calibration/gains/UvCorrection.h"
#include "pavane/calibration/gains/UvReach.h"
#include "tessel/uvfits/UvRewriter.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const InputFile input(data, size);
    AUVXFile file, model;
    std::string error;
    if (!file.open(input.name(), error) || !model.open(input.name(), error))
        return 0;
    AComponents point;
    (void)point.Add(ACompItem());
    SelfCalibrationRules rules;
    rules.gains.interval.kind = GainKind::both;
    rules.gains.interval.leastAntennas = 2;
    rules.gains.interval.mostIterations = 20;
    rules.mostSums = 1000;
    // times of centuries would be millions of minutes, which takes too long here
    rules.frame.seconds = 0;
    GainChain chain;
    for (const int isOfFile : {0, 1}) {
        rules.frame.isWhole = isOfFile;
        const auto job = isOfFile ? std::make_unique<SelfCalibration>(file, model, rules)
                                  : std::make_unique<SelfCalibration>(file, point, rules);
        while (job->step(1)) {
        }
        if (job->error().empty())
            (void)chain.add("gains", job->gains());
    }
    VisibilityFlags flags;
    flags.lines = {{0, 0, 1, 0, {0}, 0, -1, 1, 0}};
    const auto filter = std::make_shared<UvCorrection>(file.header(), chain, flags);
    const std::string out = input.name() + "-out";
    UvRewriter writer(file, out, filter);
    while (writer.step(1)) {
    }
    AUVXFile again;
    if (writer.error().empty() && !again.open(out, error))
        std::abort();
    std::remove(out.c_str());
    file.setFilter(filter);
    UvPick pick(file, {UvRectangle::Across::time, UvRectangle::Up::phase, -1e9, 1e9, -90, 90}, {},
                1);
    while (pick.step(1)) {
    }
    (void)flagLinesOf(pick.points(), {}, 1e-4);
    UvReach reach(file);
    while (reach.step(1)) {
    }
    return 0;
}
