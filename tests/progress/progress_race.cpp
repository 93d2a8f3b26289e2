// Runs under the thread sanitizer, which ends it when two threads meet without order.
#include "pavane/progress/AProgress.h"

#include <cstdio>
#include <thread>

using namespace pavane;

namespace
{

int failed = 0;

void expect(bool is, const char* what)
{
    if (!is) {
        std::fprintf(stderr, "not so: %s\n", what);
        failed = 1;
    }
}

/// A job whose result needs no lock: it is read once the job has ended.
void runJob(int round, bool gives)
{
    constexpr int pieces = 20000;
    AProgress progress;
    long sum = 0;
    std::thread worker([&sum, round, gives, writer = AProgressWriter(progress)]() mutable {
        const double steps[] = {1, 2};
        writer.SetSteps(steps);
        for (int step = 0; step < 2; ++step) {
            writer.SetTotal(pieces);
            std::thread helper([copy = writer]() mutable {
                for (int i = 0; i < pieces / 2; ++i)
                    copy.Advance();
            });
            for (int i = 0; i < pieces / 2 && !writer.IsCancelled(); ++i) {
                ++sum;
                writer.Advance();
                if (i % 1000 == 0)
                    writer.SetText("piece " + std::to_string(i));
            }
            helper.join();
        }
        if (gives)
            (void)writer.Finish(round);
    });
    double last = -1;
    std::uint64_t known = 0;
    while (!progress.HasEnded()) {
        const ProgressReport report = progress.GetReport();
        expect(report.fraction >= last && report.fraction <= 1, "fractions rise");
        last = report.fraction;
        (void)progress.GetTexts(known);
        if (round == 3)
            progress.Cancel();
    }
    const ProgressReport report = progress.GetReport();
    expect(report.state == (gives ? ProgressState::finished : ProgressState::stopped), "ends");
    expect(report.result == (gives ? round : 0), "result");
    // before the thread is joined: the end of the job alone orders this behind the work
    expect(round == 3 || sum == pieces, "sum");
    worker.join();
}

}  // namespace

int main()
{
    for (int round = 1; round < 8; ++round)
        runJob(round, round % 2 == 1);
    return failed;
}
