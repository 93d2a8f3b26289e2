#include "tessel/fits_map.h"
#include "tessel/fits_text.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>

// CFITSIO drops its buffer of a tile that cannot be unpacked; reading stops there.
extern "C" const char* __lsan_default_suppressions() { return "leak:imcomp_"; }

namespace pavane
{

namespace
{

int reads(const std::string& bytes, std::string& error)
{
    FitsMap map;
    const int done = readFitsMap(saved("bad.fits", bytes), 0, map, error);
    EXPECT_EQ(done == 0, map.cells.cells() == 0);
    EXPECT_EQ(done != 0, error.empty());
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return done;
}

std::string packedCards(const std::vector<std::string>& more)
{
    std::vector<std::string> cards = {"XTENSION= 'BINTABLE'",
                                      "BITPIX  = 8",
                                      "NAXIS   = 2",
                                      "NAXIS1  = 8",
                                      "NAXIS2  = 1",
                                      "PCOUNT  = 12",
                                      "GCOUNT  = 1",
                                      "TFIELDS = 1",
                                      "TTYPE1  = 'COMPRESSED_DATA'",
                                      "TFORM1  = '1PB(6)'",
                                      "ZIMAGE  =                    T",
                                      "ZCMPTYPE= 'RICE_1'",
                                      "ZBITPIX = 16",
                                      "ZNAXIS  = 2"};
    cards.insert(cards.end(), more.begin(), more.end());
    return hdu(imageCards(8, {}), "") +
           hdu(cards, bigEndian(6, 4) + bigEndian(0, 4) + "abcdefghijkl");
}

}  // namespace

TEST(BadFits, IsRefusedInOneLine)
{
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"empty", ""},
        {"text", "hello, this is no FITS file at all\n"},
        {"no image", hdu(imageCards(8, {}), "")},
        {"one axis", hdu(imageCards(8, {4}), "abcd")},
        {"zero-length axis", hdu(imageCards(8, {4, 0}), "")},
        {"negative axis", hdu(imageCards(8, {-4, 4}), "")},
        {"missing NAXIS2",
         hdu({"SIMPLE  =                    T", "BITPIX  = 8", "NAXIS   = 2", "NAXIS1  = 2"}, "")},
        {"unknown BITPIX", hdu(imageCards(12, {2, 2}), "abcd")},
        {"ends before 32k x 32k cells", hdu(imageCards(-32, {32768, 32768}), "")},
        {"2^31 - 1 squared", hdu(imageCards(-64, {2147483647, 2147483647, 2147483647}), "")},
        {"visibilities",
         hdu(imageCards(-32, {0, 3},
                        {"GROUPS  =                    T", "PCOUNT  = 1", "GCOUNT  = 1"}),
             "abcd")},
        {"packed, huge",
         packedCards({"ZNAXIS1 = 32768", "ZNAXIS2 = 32768", "ZTILE1  = 32768", "ZTILE2  = 32768"})},
        {"packed, bad tile",
         packedCards({"ZNAXIS1 = 3", "ZNAXIS2 = 2", "ZTILE1  = 0", "ZTILE2  = -5"})},
        {"packed, too few tiles",
         packedCards({"ZNAXIS1 = 3", "ZNAXIS2 = 2", "ZTILE1  = 1", "ZTILE2  = 1"})},
        {"packed as a whole", "\x1f\x8b\x08garbage"}};
    for (const auto& c : cases) {
        std::string error;
        EXPECT_FALSE(reads(c.bytes, error)) << c.name;
        EXPECT_NE(error, "") << c.name;
    }
    FitsMap map;
    std::string error;
    EXPECT_FALSE(readFitsMap(testing::TempDir(), -1, map, error));
    EXPECT_FALSE(readFitsMap(testing::TempDir() + std::string(5000, 'x'), -1, map, error));
    const std::string pipe = testing::TempDir() + "pipe.fits";
    (void)mkfifo(pipe.c_str(), 0600);
    EXPECT_FALSE(readFitsMap(pipe, -1, map, error));  // and does not wait for a writer
    (void)std::remove(pipe.c_str());
}

TEST(BadFits, IsReadExactlyWhenTheImageIsWhole)
{
    const std::string image = hdu(imageCards(-32, {30, 40}), std::string(4800, '@'));
    const std::string bytes = image + "XTENSION= 'IMAGE   '";
    std::string error;
    for (std::size_t size = 0; size <= bytes.size(); size += size % 2880 < 40 ? 1 : 37)
        EXPECT_EQ(reads(bytes.substr(0, size), error) != 0, size >= 2880 + 4800) << size;
    for (const std::size_t size : {2880 + 4799, 2880 + 4800, 2880 + 4801})
        EXPECT_EQ(reads(bytes.substr(0, size), error) != 0, size >= 2880 + 4800) << size;
}

TEST(BadFits, SurvivesFlippedBytes)
{
    std::vector<std::string> files = {
        hdu(imageCards(16, {5, 4},
                       {"BSCALE  = 0.5", "BLANK   = 3", "CDELT1  = -1E-8", "CTYPE1  = 'RA---SIN'",
                        "CTYPE2  = 'DEC--SIN'", "HISTORY BMAJ= 1 BMIN= 2 BPA= 3"}),
            "abcdef")};
    for (const int codec : {RICE_1, GZIP_1, HCOMPRESS_1, PLIO_1})
        files.push_back(packedMap(codec));
    std::mt19937 random(3);
    for (const std::string& whole : files)
        for (int i = 0; i < (whole == files[0] ? 2000 : 50); ++i) {
            std::string bytes = whole;
            for (unsigned n = 0; n <= random() % 4; ++n)
                bytes[random() % bytes.size()] = i % 2 ? static_cast<char>(random() % 256)
                                                       : "0123456789-=' TEND/"[random() % 19];
            std::string error;
            (void)reads(bytes, error);
        }
}

}  // namespace pavane
