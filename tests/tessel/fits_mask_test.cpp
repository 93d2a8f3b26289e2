#include "tessel/fits_map.h"
#include "tessel/fits_text.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace pavane
{

namespace
{

/// The 80-character cards of a written header that begin with one of `keys`.
std::vector<std::string> cardsOf(const std::string& bytes, const std::vector<std::string>& keys)
{
    std::vector<std::string> found;
    for (std::size_t at = 0; bytes.compare(at, 4, "END ") != 0; at += 80)
        for (const std::string& key : keys)
            if (bytes.compare(at, key.size(), key) == 0)
                found.push_back(bytes.substr(at, bytes.find_last_not_of(' ', at + 79) + 1 - at));
    return found;
}

FitsMap mapOf(const std::vector<int>& lengths, const std::vector<std::string>& cards,
              int plane = -1)
{
    FitsMap map;
    std::string error;
    const std::string name =
        saved("like.fits", hdu(imageCards(8, lengths, cards), std::string(64, 'x')));
    EXPECT_TRUE(readFitsMap(name, plane, map, error)) << error;
    return map;
}

}  // namespace

TEST(FitsMask, RepeatsTheMapsCardsAndKeepsItsPixelOrder)
{
    const std::vector<std::string> cards = {"CTYPE1  = 'RA---SIN'           /Axis name",
                                            "CRVAL1  =       0.080343200000",
                                            "CDELT1  = -5.5555556482012E-08",
                                            "CRPIX1  = 2.0",
                                            "CTYPE2  = 'DEC--SIN'",
                                            "OBJECT  = '100%s %n''s'",
                                            "EPOCH   =      2000.0"};
    ABitMatrix mask(2, 3);
    mask.set(0, 2);
    mask.set(1, 0);
    std::string error;
    const std::string name = testing::TempDir() + "mask.fits";
    ASSERT_TRUE(writeFitsMask(name, mask, mapOf({3, 2}, cards).header, error)) << error;

    const std::string bytes = contents(name);
    EXPECT_EQ(cardsOf(bytes, {"CTYPE1", "CRVAL1", "CDELT1", "CRPIX1", "CTYPE2", "OBJECT", "EPOCH"}),
              cards);
    EXPECT_EQ(cardsOf(bytes, {"NAXIS ", "BITPIX", "NAXIS3", "CTYPE3", "CTYPE4"}).size(), 5u);
    EXPECT_EQ(cardsOf(bytes, {"CTYPE3"})[0], "CTYPE3  = 'FREQ    '");
    EXPECT_EQ(cardsOf(bytes, {"CTYPE4"})[0], "CTYPE4  = 'STOKES  '");
    const std::string one = bigEndian(0x3F800000, 4);
    const std::string zero = bigEndian(0, 4);
    EXPECT_EQ(bytes.substr(bytes.size() - 2880, 24), zero + zero + one + one + zero + zero);
}

TEST(FitsMask, MakesTheChosenPlaneItsOnlyOneAndCompletesTheMatrix)
{
    const FitsMap map =
        mapOf({1, 1, 3},
              {"CTYPE3  = 'STOKES'", "CRVAL3  =1.0/\tR\xc3\xa9", "CD1_1   = 2.0", "CD002002= 2.0",
               "PV1_4   = 12.0", "CTYPE5  = 'EXTRA'", "CRVAL4  = 7.0"},
              2);
    EXPECT_EQ(map.header.stokes, "V");
    std::string error;
    const std::string name = testing::TempDir() + "mask.fits";
    ASSERT_TRUE(writeFitsMask(name, ABitMatrix(1, 1), map.header, error)) << error;
    const std::string bytes = contents(name);
    EXPECT_TRUE(cardsOf(bytes, {"CTYPE5"}).empty());
    EXPECT_EQ(cardsOf(bytes, {"CRVAL", "CD002002", "PV"}),
              (std::vector<std::string>{"CRVAL3  = 1.0/ R??", "CD002002= 2.0", "PV1_4   = 12.0",
                                        "CRVAL4  =                  0.0"}));
    EXPECT_EQ(cardsOf(bytes, {"CTYPE4"})[0], "CTYPE4  = 'FREQ    '");
    EXPECT_EQ(cardsOf(bytes, {"CD4_4"}).size(), 1u);
    FitsMap back;
    ASSERT_TRUE(readFitsMap(name, -1, back, error)) << error;
    EXPECT_EQ(back.header.stokes, "V");
    // an image that was cut from a cube with its cards left as they were
    const FitsMap cut = mapOf({1, 1}, {"CTYPE3  = 'FREQ'", "CRVAL3  = 5E9", "CRPIX3  = 1.0"});
    EXPECT_EQ(cut.header.frequency, 5e9);
    ASSERT_TRUE(writeFitsMask(name, ABitMatrix(1, 1), cut.header, error)) << error;
    EXPECT_EQ(cardsOf(contents(name), {"CTYPE", "CRVAL"}),
              (std::vector<std::string>{"CTYPE3  = 'FREQ'", "CRVAL3  = 5E9", "CTYPE4  = 'STOKES  '",
                                        "CRVAL4  =                  1.0"}));
}

TEST(FitsMask, LeavesTheOldFileWholeWhenItCannotBeWritten)
{
    std::string error;
    const MapHeader header = mapOf({1, 1}, {}).header;
    const std::string folder = testing::TempDir() + "full/";
    std::filesystem::remove_all(folder);
    EXPECT_FALSE(writeFitsMask(folder + "mask.fits", ABitMatrix(9, 9), header, error));
    EXPECT_EQ(error, "cannot be created: No such file or directory");
    std::filesystem::create_directory(folder);
    std::ofstream(folder + "mask.fits") << "old";

    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100000, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_FALSE(writeFitsMask(folder + "mask.fits", ABitMatrix(500, 500), header, error));
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);

    EXPECT_EQ(error, "cannot be written: File too large");
    for (const double until : {0.0, 0.5, 0.99}) {
        double told = -1;
        const auto giveUp = [&](double fraction) {
            EXPECT_GT(fraction, told);
            told = fraction;
            return fraction < until;
        };
        EXPECT_FALSE(
            writeFitsMask(folder + "mask.fits", ABitMatrix(200, 5), header, error, giveUp));
        EXPECT_EQ(error, writingGivenUp);
        EXPECT_NEAR(told, until, 0.005);
    }
    EXPECT_EQ(contents(folder + "mask.fits"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
}

}  // namespace pavane
