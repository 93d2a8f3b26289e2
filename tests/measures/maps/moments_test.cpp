#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/measures/maps/moment_kernels.h"
#include "pavane/measures/maps/moments.h"
#include "tessel/spectral_axis.h"
#include "tests/measures/maps/header_cards.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace pavane;

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();
constexpr int rows = 300, columns = 70;

/// Planes with noise of their own, a line that moves over the cells, and blanks.
struct Cube : CubePart {
    std::vector<std::vector<float>> cells;
    explicit Cube(int count)
    {
        CubePart::rows = ::rows;
        CubePart::columns = ::columns;
        std::mt19937 random(7);
        std::normal_distribution<float> normal;
        for (int p = 0; p < count; ++p) {
            const float noise = 0.5f + 0.1f * float(p);
            planes.push_back({p, 1500 - 4.0 * p - 0.01 * p * p, 4 + 0.02 * p, noise});
            std::vector<float> plane(rows * columns);
            for (std::size_t i = 0; i < plane.size(); ++i) {
                const float x = (float(p) - float(i % columns) / 10) / 1.5f;
                plane[i] = random() % 9 == 0 || (p == 3 && i < 500)
                               ? (random() % 2 ? blank : std::numeric_limits<float>::infinity())
                               : 8 * std::exp(-x * x) + noise * normal(random);
                if (i == 4)
                    plane[i] = blank;
            }
            cells.push_back(plane);
        }
        read = [this](int plane, int first, int some, float* to, std::string&) {
            std::copy_n(cells[std::size_t(plane)].data() + first * columns, some * columns, to);
            return 1;
        };
    }
};

/// The moments of a list of values by their definitions, in long double.
long double momentOf(Moment moment, const std::vector<MomentPlane>& planes,
                     const std::vector<long double>& values)
{
    long double total = 0, mean = 0, square = 0;
    for (std::size_t i = 0; i < values.size(); ++i)
        total += values[i] * planes[i].width;
    if (moment == Moment::integral)
        return total;
    for (std::size_t i = 0; i < values.size(); ++i)
        mean += values[i] * planes[i].width / total * planes[i].value;
    for (std::size_t i = 0; i < values.size(); ++i)
        square += values[i] * planes[i].width / total * (planes[i].value - mean) *
                  (planes[i].value - mean);
    return moment == Moment::mean ? mean : std::sqrt(square);
}

}  // namespace

// Each moment by its definition, its error by moving each value by a little of its noise.
TEST(Moments, AreTheSumsOfTheirDefinitions)
{
    for (const int isWhole : {0, 1})
        for (const double clip : {0.0, 2.5}) {
            Cube cube(9);
            cube.isWhole = isWhole;
            std::vector<MomentMap> maps(4);
            for (int m = 0; m < 4; ++m)
                maps[std::size_t(m)].moment = Moment(m);
            std::string error;
            ASSERT_TRUE(findMoments(cube, clip, maps, error)) << error;
            int compared[4] = {};
            for (std::size_t i = 0; i < rows * columns; i += 31) {
                std::vector<MomentPlane> used;
                std::vector<long double> values;
                double greatest = blank, noise = blank;
                for (const MomentPlane& plane : cube.planes) {
                    const float value = cube.cells[std::size_t(plane.plane)][i];
                    if (!std::isfinite(value) || (clip > 0 && !(value > clip * plane.noise)))
                        continue;
                    used.push_back(plane);
                    values.push_back(value);
                    if (!(value <= greatest)) {
                        greatest = value;
                        noise = plane.noise;
                    }
                }
                const float found = maps[3].cells.data()[i];
                ASSERT_TRUE(used.empty() ? std::isnan(found) : found == float(greatest)) << i;
                ASSERT_TRUE(used.empty() || maps[3].errors.data()[i] == float(noise));
                double integral = 0, integralError = 0;
                for (std::size_t m = 0; m < 3; ++m) {
                    const double value = maps[m].cells.data()[i];
                    const double wanted =
                        used.empty() ? blank : double(momentOf(Moment(m), used, values));
                    long double square = 0;
                    for (std::size_t k = 0; k < used.size(); ++k) {
                        std::vector<long double> more = values, less = values;
                        const long double step = 1e-5L * used[k].noise;
                        more[k] += step;
                        less[k] -= step;
                        const long double slope =
                            (momentOf(Moment(m), used, more) - momentOf(Moment(m), used, less)) /
                            (2 * step);
                        square += slope * slope * used[k].noise * used[k].noise;
                    }
                    const auto spread = static_cast<double>(std::sqrt(square));
                    if (m == 0) {
                        integral = wanted;
                        integralError = spread;
                    }
                    if (used.empty() || (m > 0 && !(integral > clip * integralError)) ||
                        std::isnan(wanted)) {
                        ASSERT_TRUE(std::isnan(value)) << m << ' ' << i << ' ' << value;
                        continue;
                    }
                    ASSERT_NEAR(value, wanted, 2e-6 * (std::fabs(wanted) + spread + 1))
                        << m << ' ' << i;
                    if (m == 2 && !(value > 1e-3))  // one plane
                        continue;
                    ASSERT_NEAR(maps[m].errors.data()[i], spread, 1e-4 * spread + 1e-6)
                        << m << ' ' << i;
                    ++compared[m];
                }
            }
            EXPECT_GT(std::min({compared[0], compared[1], compared[2]}), 100) << clip;
        }
}

TEST(Moments, PlanesThatCannotBeReadNoPlanesAndAStop)
{
    Cube cube(3);
    std::vector<MomentMap> maps(1);
    std::string error;
    ASSERT_TRUE(findPlaneNoises(cube, error)) << error;
    for (const MomentPlane& plane : cube.planes) {
        AMatrix<float> cells(rows, columns);
        std::copy_n(cube.cells[std::size_t(plane.plane)].data(), rows * columns, cells.data());
        EXPECT_EQ(plane.noise, mapNoise(AFloatMatrixAccess(cells)).sigma);
    }
    EXPECT_FALSE(findMoments(cube, 0, maps, error, [](double) { return 0; }));
    EXPECT_EQ(error, readingGivenUp);
    cube.read = [](int plane, int, int, float*, std::string& e) { return e = "cut", plane < 2; };
    EXPECT_FALSE(findMoments(cube, 0, maps, error));
    EXPECT_FALSE(findPlaneNoises(cube, error));
    EXPECT_EQ(error, "cut");
    cube.planes.clear();
    EXPECT_FALSE(findMoments(cube, 0, maps, error));
}

// Values of the formulas of the conventions, worked out apart; the last is that of wavelengths
// whose inverses stand at equal steps.
TEST(SpectralAxes, GiveVelocitiesByTheirConvention)
{
    const std::string radio = "RESTFRQ=1.420405752E9;";
    const std::string frequency = "CRVAL3=1.4E9;CDELT3=1E6;CRPIX3=2;";
    const struct {
        std::string cards;
        const char* unit;
        double at0, at4, width4;
    } cases[] = {
        {"CTYPE3='FREQ';" + frequency, "Hz", 1.399e9, 1.403e9, 1e6},
        {"CTYPE3='FREQ';" + frequency + radio, "km/s", 4517.92243, 3673.67787, 211.06114},
        {"CTYPE3='FREQ';CRVAL3=1400;CDELT3=1;CRPIX3=2;CUNIT3='MHz';" + radio, "km/s", 4517.92243,
         3673.67787, 211.06114},
        {"CTYPE3='FREQ';VELREF=2;" + frequency + radio, "km/s", 4587.05004, 3719.25387, 216.33054},
        {"CTYPE3='FREQ';VELREF=257;" + frequency + radio, "km/s", 4517.92243, 3673.67787,
         211.06114},
        {"CTYPE3='VRAD';CRVAL3=1000.0;CDELT3=-500.0;CRPIX3=1;CUNIT3='m/s'", "km/s", 1, -1, 0.5},
        {"CTYPE3='VELO-LSR';CRVAL3=1000.0;CDELT3=1;CD3_3=2;CRPIX3=1;CUNIT3='km/s'", "km/s", 1000,
         1008, 2},
        {"CTYPE3='FELO-HEL';CRVAL3=9120000;CDELT3=21882.651;CRPIX3=1", "km/s", 9120, 9207.55541,
         21.89506},
    };
    for (const auto& c : cases) {
        MapHeader header;
        std::string error;
        const std::string lengths = "NAXIS=3;NAXIS1=8;NAXIS2=8;NAXIS3=9;";
        ASSERT_TRUE(readMapHeader(cardsOf(lengths + c.cards), 8, 8, header, error, 0)) << error;
        const SpectralAxis axis = SpectralAxis::of(header);
        ASSERT_EQ(axis.axis(), 2) << c.cards;
        EXPECT_STREQ(axis.unit(), c.unit) << c.cards;
        const double size = std::fabs(c.at0);
        EXPECT_NEAR(axis.value(0), c.at0, 1e-6 * size) << c.cards;
        EXPECT_NEAR(axis.value(4), c.at4, 1e-6 * size) << c.cards;
        EXPECT_NEAR(axis.width(4), c.width4, 1e-5 * c.width4) << c.cards;
    }
}

TEST(SpectralAxes, PlanesOfOneStokesParameterAreTaken)
{
    const std::string cards = "NAXIS=4;NAXIS1=4;NAXIS2=4;NAXIS3=3;NAXIS4=5;"
                              "CTYPE3='STOKES';CTYPE4='VRAD';CRVAL4=0;CDELT4=2000;";
    MapHeader header;
    std::vector<MomentPlane> planes;
    std::string error, unit;
    ASSERT_TRUE(readMapHeader(cardsOf(cards), 4, 4, header, error, 0)) << error;
    ASSERT_TRUE(planesBetween(header, 1, 9, 1, planes, unit, error)) << error;
    ASSERT_EQ(planes.size(), 3u);
    EXPECT_EQ(planes[2].plane, 7);
    EXPECT_NEAR(planes[2].value - planes[0].value, 4, 1e-9);
    for (const auto& [first, last] : {std::pair(-1, 2), std::pair(3, 2), std::pair(0, 15)})
        EXPECT_FALSE(planesBetween(header, first, last, 1, planes, unit, error)) << first;
    header.axes[3].ctype = "TIME";
    EXPECT_FALSE(planesBetween(header, 0, 9, 1, planes, unit, error));
    EXPECT_TRUE(planesBetween(header, 0, 9, 0, planes, unit, error));
}

TEST(MomentKernels, GiveTheSameOnEveryPath)
{
    MomentTerms terms;
    for (std::size_t k = 0; k < terms.alone.size(); ++k) {
        terms.perValue[k] = 0.3 * static_cast<double>(k) - 1;
        terms.alone[k] = 1e-3 * static_cast<double>(k);
    }
    std::mt19937 random(4);
    std::normal_distribution<float> noise;
    std::vector<float> values(203);
    for (float& value : values)
        value = random() % 9 == 0   ? std::numeric_limits<float>::quiet_NaN()
                : random() % 9 == 0 ? std::numeric_limits<float>::infinity()
                                    : noise(random);
    for (const float above : {-std::numeric_limits<float>::infinity(), 0.5f, 100.0f})
        for (const SimdPath path : {SimdPath::avx2, SimdPath::avx512}) {
            if (path > bestSimdPath())
                continue;
            terms.above = above;
            for (const std::size_t count : {0U, 1U, 15U, 16U, 203U}) {
                std::vector<MomentSums> sums(values.size()), beside(values.size());
                std::vector<int> used(values.size()), besideUsed(values.size());
                addMomentPlane(path)(terms, values.data(), count, sums.data(), used.data());
                addMomentPlane(SimdPath::plain)(terms, values.data(), count, beside.data(),
                                                besideUsed.data());
                EXPECT_EQ(used, besideUsed) << above << ' ' << count;
                EXPECT_EQ(sums, beside) << above << ' ' << count;
            }
        }
}
