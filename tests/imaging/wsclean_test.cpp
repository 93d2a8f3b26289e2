#include "pavane/imaging/wsclean_lines.h"
#include "pavane/imaging/WscleanEngine.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>

namespace pavane
{
namespace
{

/// The end of a recorded run of wsclean 3.1.
EngineNews after(const std::string& name)
{
    EngineNews news;
    std::ifstream in(PAVANE_SOURCE_DIR "/tests/imaging/recorded/" + name + ".txt");
    EXPECT_TRUE(in.is_open()) << name;
    for (std::string line; std::getline(in, line);)
        (void)readWscleanLine(line, news);
    return news;
}

TEST(WscleanLines, RecordedRuns)
{
    const EngineNews dirty = after("dirty");
    EXPECT_EQ(dirty.visibilities, 5946);
    EXPECT_EQ(dirty.hasPeak, 0);
    EXPECT_EQ(dirty.fault, "");
    const EngineNews round = after("round1");
    EXPECT_EQ(round.iterations, 100);
    EXPECT_EQ(round.cycle, 3);
    EXPECT_DOUBLE_EQ(round.firstPeak, 1.37);
    EXPECT_DOUBLE_EQ(round.peak, 0.03751);
    EXPECT_EQ(round.peakX, 134);
    EXPECT_EQ(round.peakY, 131);
    EXPECT_DOUBLE_EQ(round.noise, 0.00535);
    EXPECT_EQ(round.stopReason, "maximum number of iterations was reached");
    EXPECT_EQ(round.percent, 100);
    EXPECT_NEAR(round.beam.major, 2.42e-3, 1e-12);
    EXPECT_NEAR(round.beam.minor, 0.89e-3, 1e-12);
    EXPECT_NEAR(round.beam.angle, 161.49, 1e-9);
    const EngineNews scales = after("multi");
    EXPECT_DOUBLE_EQ(scales.firstPeak, 3.77);
    EXPECT_GT(scales.iterations, 50);
    EXPECT_EQ(after("nodata").fault.substr(0, 29), "Parameter '-channels-out' was");
}

TEST(WscleanLines, OddLines)
{
    const struct {
        const char* line;
        int told;
    } cases[] = {
        {"", 0},
        {"Initial peak: ", 0},
        {"Initial peak: nan Jy at 1,2", 0},
        {"Initial peak: 1e999 mJy at 1,2", 0},
        {"Initial peak: 3 mJy at 99999999999999999999,2", 1},  // the peak, without its place
        {"Performed many iterations", 0},
        {"Gridded visibility count: -3", 0},
        {"Gridded visibility count: 1e300", 0},
        {" == Deconvolving (", 1},
        {"100% of the users", 0},
        {"terminate called after throwing an instance of 'std::bad_alloc'", 1},
        {"Stopped on peak", 1},
        {"(((((((((((((((((Iteration 3, : 4 Jy", 0},
    };
    for (const auto& c : cases) {
        EngineNews news;
        EXPECT_EQ(readWscleanLine(c.line, news), c.told) << c.line;
        EXPECT_LT(news.peakX, 2) << c.line;
    }
    EngineNews news;
    ASSERT_TRUE(readWscleanLine("Initial peak: -3.5 µJy at 7,8", news));
    EXPECT_DOUBLE_EQ(news.peak, -3.5e-6);
    EXPECT_DOUBLE_EQ(news.firstPeak, 3.5e-6);
}

EngineTask task()
{
    EngineTask made;
    made.data = "work/data.ms";
    made.dirty = "shared/k-dirty.fits";
    made.beam = "shared/k-psf.fits";
    made.iterations = 200;
    made.threads = 3;
    made.centreX = 187.70593;
    made.centreY = -12.391123;
    made.parameters.cell = 0.2;
    return made;
}

/// The words between blanks.
std::string said(const std::vector<EngineStep>& steps)
{
    std::string text;
    for (const EngineStep& step : steps)
        for (const std::string& word : step.words)
            text += (text.empty() ? "" : " ") + word;
    return text;
}

TEST(WscleanWords, OfEachJob)
{
    const WscleanEngine engine({"mpirun", "-np", "8", "wsclean-mp"});
    const std::string head = "mpirun -np 8 wsclean-mp -j 3 -reorder -temp-dir work/new ";
    const std::string map = "-size 512 512 -scale 0.2masec -pol I -data-column CORRECTED_DATA "
                            "-weight briggs 0 ";
    const struct {
        std::vector<EngineStep> (WscleanEngine::*job)(const EngineTask&) const;
        std::function<void(EngineTask&)> change;
        std::string words;
    } cases[] = {
        {&WscleanEngine::dirty, [](EngineTask&) {},
         head + map +
             "-make-psf -niter 0 -no-update-model-required -name work/new/dirty "
             "work/data.ms"},
        {&WscleanEngine::round, [](EngineTask&) {},
         head + map +
             "-reuse-psf shared/k -reuse-dirty shared/k -niter 200 -gain 0.1 -mgain 0.8 "
             "-name work/new/clean work/data.ms"},
        {&WscleanEngine::round,
         [](EngineTask& t) {
             t.model = "rounds/0001/model.fits";
             t.mask = "shared/m.fits";
             t.threshold = 1.5e-3;
             t.majorCycles = 1;
         },
         head + map +
             "-reuse-psf shared/k -continue -niter 200 -gain 0.1 -mgain 0.8 -threshold "
             "0.0015 -nmiter 1 -fits-mask shared/m.fits -name work/new/clean work/data.ms"},
        {&WscleanEngine::round,
         [](EngineTask& t) {
             t.parameters.weighting = ImageWeighting::natural;
             t.parameters.taper = 1.5;
             t.parameters.ifs = {0, 2};
             t.parameters.isAutoMask = t.parameters.isMultiscale = 1;
         },
         head + "-size 512 512 -scale 0.2masec -pol I -data-column CORRECTED_DATA -weight natural "
                "-taper-gaussian 1.5masec -spws 0,2 -reuse-psf shared/k -reuse-dirty shared/k "
                "-niter 200 -gain 0.1 -mgain 0.8 -auto-mask 5 -multiscale -name work/new/clean "
                "work/data.ms"},
        {&WscleanEngine::residual, [](EngineTask& t) { t.model = "m.fits"; },
         head + map +
             "-continue -reuse-psf shared/k -niter 0 -name work/new/residual work/data.ms"},
        {&WscleanEngine::predict, [](EngineTask& t) { t.model = "m.fits"; },
         head + "-predict -pol I -name work/new/predict work/data.ms"},
        {&WscleanEngine::predict,
         [](EngineTask& t) {
             t.model = "m.fits";
             t.isExact = 1;
         },
         head + "-predict -pol I -no-small-inversion -use-wgridder -wgridder-accuracy 1e-6 "
                "-name work/new/predict work/data.ms"},
        {&WscleanEngine::restore,
         [](EngineTask& t) {
             t.model = "m.fits";
             t.residual = "r.fits";
             t.restoring = {2.4e-3, 8.9e-4, -18.5};
         },
         "mpirun -np 8 wsclean-mp -j 3 -beam-shape 0.0024asec 0.00089asec -18.5deg -restore r.fits "
         "m.fits work/new/restored.fits"},
    };
    for (const auto& c : cases) {
        EngineTask made = task();
        c.change(made);
        EXPECT_EQ(said((engine.*c.job)(made)), c.words);
    }
}

TEST(WscleanWords, ShiftOfTheCentre)
{
    EngineTask made = task();
    made.parameters.shiftX = 1000;  // a second of arc to the east, less one to the south
    made.parameters.shiftY = -1000;
    const std::vector<std::string> words = WscleanEngine().dirty(made).front().words;
    const auto at = std::find(words.begin(), words.end(), "-shift");
    ASSERT_NE(at, words.end());
    EXPECT_EQ(at[1].substr(0, 14), "12h30m49.49145");  // 49.4232 s + 1/15/cos(dec) s
    EXPECT_EQ(at[2].substr(0, 11), "-12d23m29.0");
    made.model = "m.fits";  // an image does not tell a predict where its centre is
    EXPECT_NE(said(WscleanEngine().predict(made)).find(" -shift 12h"), std::string::npos);
}

}  // namespace
}  // namespace pavane
