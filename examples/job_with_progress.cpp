// A job in a thread of the host: weighs the baselines of an array, and says how far it is.
#include "pavane/windows/controls/AProgressDlg.h"
#include "platform/platform.h"

#include <cmath>
#include <cstdio>
#include <thread>

using namespace pavane;

int main(int argc, char** argv)
{
    constexpr int telescopes = 60;
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    const AProgress progress;
    double weight = 0;
    std::thread worker([&weight, writer = AProgressWriter(progress)]() mutable {
        writer.SetTotal(telescopes * (telescopes - 1) / 2);
        for (int a = 1; a <= telescopes && !writer.IsCancelled(); ++a) {
            writer.SetText("baselines of telescope " + std::to_string(a));
            for (int b = a + 1; b <= telescopes; ++b, writer.Advance())
                for (int sample = 0; sample < 300000; ++sample)
                    weight += std::cos(a * sample) * std::cos(b * sample);
        }
        if (!writer.IsCancelled())
            (void)writer.Finish();
    });
    const int hasFinished = AProgressDlg(nullptr, "Weights").Watch(progress, "Weighing");
    worker.join();
    std::printf("%s %g\n", hasFinished ? "weight" : "stopped at", weight);
    ShutdownPlatform();
    return 0;
}
