// Shows the page of time intervals for a data file, or for a made-up observation, and prints what
// was chosen.

#include "pavane/dialogs/ATimeIntervalPresent.h"
#include "pavane/dialogs/values/time_texts.h"
#include "platform/platform.h"
#include "tessel/uvfits/AUVXFile.h"

#include <cstdio>

using namespace pavane;

namespace
{

AUVXTIntervalPM observation()
{
    AUVXTIntervalPM times;
    times.start = times.infoStart = 5 * 3600 + 130;
    times.stop = times.infoStop = 29 * 3600 + 47 * 60 + 12;
    times.interval = times.infoInterval = 2;
    times.everyPoint = 0;
    return times;
}

/// Shows the page; the exit status.
int show(int argc, char** argv)
{
    AUVXTIntervalPM times = observation();
    if (argc > 1) {
        AUVXFile file;
        std::string error;
        if (!file.open(argv[1], error) || !times.Load(file, -1, -1))
            return std::fprintf(stderr, "%s: %s\n", argv[1], error.c_str()), 1;
    }
    if (!AskTimeInterval(nullptr, times))
        return 1;
    std::printf("%s to %s, intervals of %s\n", timeText(times.start, 1).c_str(),
                timeText(times.stop, 1).c_str(),
                times.everyPoint ? "a point" : timeText(times.interval, 1).c_str());
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    const int result = show(argc, argv);
    ShutdownPlatform();
    return result;
}
