#include "apps/simulate/clean.h"
#include "apps/simulate/gains.h"
#include "apps/simulate/imaging.h"
#include "apps/simulate/jet_model.h"
#include "apps/simulate/options.h"
#include "pavane/axes/maps/cells/map_statistics.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <numbers>
#include <sstream>
#include <sys/wait.h>

namespace pavane
{

namespace
{

AComponents pointAt(double positionAngle, double distance, double flux)
{
    std::stringstream text;
    text << "1\n1 " << flux << " 0 1 0 " << positionAngle << ' ' << distance << " 0.5\n";
    AComponents model;
    model.Load(text);
    return model;
}

/// A Gaussian of the given widths in cells, in the middle of a map.
AMatrix<float> gaussian(int size, double major, double minor, double angle)
{
    AMatrix<float> map(size, size);
    const double turn = angle * std::numbers::pi / 180;
    for (int r = 0; r < size; ++r)
        for (int c = 0; c < size; ++c) {
            const double e = size / 2 - c;
            const double n = r - size / 2;
            const double along = (e * std::sin(turn) + n * std::cos(turn)) / major;
            const double across = (e * std::cos(turn) - n * std::sin(turn)) / minor;
            map(r, c) = static_cast<float>(
                std::exp(-4 * std::numbers::ln2 * (along * along + across * across)));
        }
    return map;
}

}  // namespace

TEST(Simulation, PutsAPointWhereItIsWithItsFlux)
{
    Observation observation;
    observation.noise = 0;
    observation.hours = 4;
    observation.interval = 300;
    // 20 cells east and 10 south of the middle
    const double east = 20 * 1e-4;
    const double south = 10 * 1e-4;
    Visibilities samples =
        observe(observation, pointAt(90 + std::atan2(south, east) * 180 / std::numbers::pi,
                                     std::hypot(east, south), 2.5));
    temperWeights(samples, 128 * 1e-4);
    const AMatrix<float> map = dirtyImage(samples, 128, 1e-4, 0);
    const MapRange range = mapRange(AFloatMatrixAccess(map));
    EXPECT_EQ(range.peakColumn, 64 - 20);
    EXPECT_EQ(range.peakRow, 64 - 10);
    EXPECT_NEAR(range.greatest, 2.5, 2e-3);
    // a CLEAN takes this beam off that map, so they have to match cell by cell
    const AMatrix<float> beam = dirtyImage(samples, 256, 1e-4, 1);
    for (int r = 0; r < 128; ++r)
        for (int c = 0; c < 128; ++c)
            EXPECT_NEAR(map(r, c), 2.5f * beam(r + 128 - 54, c + 128 - 44), 5e-3);
}

TEST(Simulation, IsTheSameForTheSameSeedOnly)
{
    Observation observation;
    observation.hours = 0.5;
    observation.interval = 600;
    const AComponents jet = jetModel();
    const Visibilities first = observe(observation, jet);
    EXPECT_EQ(first.values, observe(observation, jet).values);
    observation.seed = 2;
    EXPECT_NE(first.values, observe(observation, jet).values);
    ASSERT_GT(first.values.size(), 100u);
}

TEST(Simulation, CleanPutsBackWhatItTakesOff)
{
    const AMatrix<float> beam = gaussian(256, 14, 6, 35);
    AMatrix<float> map(128, 128);
    for (int r = 0; r < 128; ++r)
        for (int c = 0; c < 128; ++c)
            map(r, c) = 3 * beam(r + 128 - 70, c + 128 - 50);
    const AMatrix<float> restored = cleaned(map, beam, {14, 6, 35}, 200, 0.1, 1e-4);
    EXPECT_NEAR(restored(70, 50), 3, 1e-3);
    EXPECT_NEAR(restored(75, 46), map(75, 46), 1e-3);
}

TEST(Simulation, RefusesOptionsThatItCannotUse)
{
    SimulateOptions options;
    std::string error;
    for (const char* value : {"63", "101", "4096", "big", ""})
        EXPECT_FALSE(parseSimulateOptions({"--size", value}, options, error)) << value;
    EXPECT_FALSE(parseSimulateOptions({"--noise", "nan"}, options, error));
    EXPECT_FALSE(parseSimulateOptions({"--seed"}, options, error));
    EXPECT_FALSE(parseSimulateOptions({"--seed", "1", "--seed", "2"}, options, error));
    EXPECT_FALSE(parseSimulateOptions({"out"}, options, error));
    EXPECT_TRUE(parseSimulateOptions({"--size", "64", "--noise", "0"}, options, error));
}

TEST(Simulation, NamesTheLineOfGainsThatItCannotUse)
{
    const std::string name = testing::TempDir() + "gains.txt";
    for (const char* line : {"PT", "XX 1 R 0 1 0", "PT 0 R 0 1 0", "PT 1 X 0 1 0", "PT 1 RL 0 1 0",
                             "PT 1 R 0 one 0", "PT 1 R 0 1 nan", "PT 1 R 0 1 0 7"}) {
        std::ofstream(name) << "# gains\nPT 1 R 0 1 0\n" << line << '\n';
        std::string error;
        EXPECT_FALSE(Gains().read(name, error)) << line;
        EXPECT_NE(error.find("line 3"), std::string::npos) << error;
    }
}

TEST(Simulation, MakesItsFolderAndSaysWhyItCannot)
{
    const std::string folder = testing::TempDir() + "simulate-out";
    std::filesystem::remove_all(folder);
    const auto status = [&](const std::string& out) {
        const std::string command = "'" PAVANE_SIMULATE
                                    "' --size 64 --hours 0.1 --clean 1 --out '" +
                                    out + "' >/dev/null 2>'" + testing::TempDir() + "simulate.err'";
        const int ended = std::system(command.c_str());
        return WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
    };
    EXPECT_EQ(status(folder + "/a/b"), 0);
    EXPECT_TRUE(std::filesystem::exists(folder + "/a/b/uv.csv"));
    EXPECT_EQ(status(folder + "/a/b/uv.csv"), 2);
    EXPECT_EQ(status(folder + "/a/b/uv.csv/c"), 2);
    std::ifstream said(testing::TempDir() + "simulate.err");
    std::string line;
    std::getline(said, line);
    EXPECT_NE(line.find("the folder cannot be made: Not a directory"), std::string::npos) << line;
}

}  // namespace pavane
