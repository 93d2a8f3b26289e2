#include "tessel/fits_text.h"
#include "tessel/FitsMapReader.h"
#include "tessel/map_header_cards.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>

namespace pavane
{

namespace
{

std::string told(const MapHeader& h)
{
    std::ostringstream out;
    out.precision(17);
    for (const MapAxis& a : h.axes)
        out << a.length << '|' << a.ctype << '|' << a.cunit << '|' << a.crval << '|' << a.crpix
            << '|' << a.cdelt << '|' << a.crota << '\n';
    out << h.cd[0][0] << '|' << h.cd[0][1] << '|' << h.cd[1][0] << '|' << h.cd[1][1] << '|'
        << h.hasCelestialAxes << h.longitudeAxis << '|' << h.bunit << '|' << h.object << '|'
        << h.dateObs << '|' << h.telescope << '|' << h.stokes << '|' << h.frequency << '|'
        << h.equinox << '|' << h.hasBeam << '|' << h.bmaj << '|' << h.bmin << '|' << h.bpa << '|'
        << h.plane << '/' << h.planes << '\n';
    for (const std::string& card : h.coordinateCards)
        out << card << '\n';
    return out.str();
}

using Cards = std::vector<std::string>;

std::string joined(const Cards& cards, const char* end)
{
    std::string text;
    for (std::string card : cards) {
        if (!*end)
            card.resize(80, ' ');
        text += card + end;
    }
    return text;
}

}  // namespace

TEST(MapHeaderCards, GiveWhatTheirFileGives)
{
    const Cards headers[] = {
        {"CTYPE1  = 'RA---SIN'", "CRVAL1  = 187.7", "CRPIX1  = 2", "CDELT1  = -1.0D-7",
         "CTYPE2  = 'DEC--SIN'", "CRVAL2  = 12.4", "CDELT2  = 1E-7", "CROTA2  = 20.5",
         "BUNIT   = 'JY/BEAM'", "EPOCH   = 1950.0",
         "HISTORY AIPS   CLEAN BMAJ=  1.2E-06 BMIN= 5E-7"
         " BPA= 12.0"},
        {"WCSAXES =                    4", "PC1_1   =  0.8", "PC1_2   =  0.6", "PC2_1   = -0.6",
         "PC2_2   =  0.8", "CTYPE1  = 'GLON-CAR'", "CTYPE2  = 'GLAT-CAR'", "CUNIT1  = 'arcsec'",
         "CUNIT2  = 'arcsec'", "CDELT1  = -0.5 / step", "CTYPE3  = 'FREQ'", "CRVAL3  = 1.5E+10",
         "CTYPE4  = 'STOKES'", "CRVAL4  = 1.0", "MJDREF  = 0.0", "RADESYS = 'FK5'"},
        {"CD1_1   = -5.5E-05", "CD001002= 1E-6", "CD2_2   = 5.5E-05", "CTYPE1  = 'RA---TAN'",
         "CTYPE2  = 'DEC--TAN'", "HIERARCH ESO TEL ALT = 66.2", "OBJECT  = 'it''s a long &'",
         "CONTINUE  'name&' / more", "CONTINUE  ' at last'", "", "BMAJ    = 0", "BMIN    = 1"},
        {"CTYPE1  = 'DEC--SIN'", "CTYPE2  = 'RA---SIN'", "CRVAL1  = NaN", "CRPIX1  = 1e400",
         "CTYPE2  = 'twice'", "CUNIT1  = 'furlong'", "COMMENT = 'no value'", "        = 3",
         "TELESCOP= 'VLBA\x01\xe9'", "CRVAL2  =1.0"},
    };
    const auto compare = [](const std::string& file, const std::string& cards, const Cards& lines) {
        FitsMapReader map;
        std::string error;
        ASSERT_TRUE(map.open(file, 0, error)) << error;
        for (const std::string& text : {cards, joined(lines, "\n"), joined(lines, "\r\n")}) {
            MapHeader header;
            EXPECT_TRUE(readMapHeader(text, map.rows(), map.columns(), header, error, 0)) << error;
            EXPECT_EQ(told(header), told(map.header()));
        }
    };
    for (const Cards& more : headers) {
        const Cards cards = imageCards(-32, {3, 2}, more);
        const std::string file = saved("header.fits", hdu(cards, std::string(24, '\0')));
        compare(file, joined(cards, ""), cards);
    }
    namespace fs = std::filesystem;
    const fs::path real = fs::path(PAVANE_SOURCE_DIR) / "../shared/data/maps";
    if (fs::exists(real))
        for (const auto& entry : fs::directory_iterator(real)) {
            std::string text(std::size_t{1} << 18, '\0');
            std::ifstream(entry.path()).read(text.data(), 1 << 18);
            Cards lines;
            for (std::size_t at = 0; lines.empty() || lines.back().substr(0, 8) != "END     ";
                 at += 80)
                lines.push_back(text.substr(at, 80));
            compare(entry.path().string(), text.substr(0, lines.size() * 80), lines);
        }
}

TEST(MapHeaderCards, MayLackSizesAndRefuseDamage)
{
    const std::string ra = "CTYPE1  = 'RA---SIN'";
    const std::string dec = "CTYPE2  = 'DEC--SIN'";
    const struct {
        Cards cards;
        const char* why;  // null: taken
        int plane = -1;
    } cases[] = {
        {{"CTYPE1  = 'RA---SIN'", "CTYPE2  = 'DEC--SIN'"}, nullptr},
        {{}, nullptr},
        {{"NAXIS   = 2", "NAXIS1  = 3", "NAXIS2  = 2", "END", "OBJECT  = 'behind'"}, nullptr},
        {{"XTENSION= 'BINTABLE'", "ZIMAGE  =                    T", "NAXIS   = 2", "NAXIS1  = 8",
          "ZNAXIS  = 2", "ZNAXIS1 = 3", "ZNAXIS2 = 2"},
         nullptr},
        {imageCards(16, {3, 2, 4}), nullptr, 3},
        {imageCards(16, {3, 2, 4}), "4 planes"},
        {imageCards(16, {3, 2, 4}), "no plane 4", 4},
        {imageCards(16, {2, 3}), "2 x 3 cells, but there are 3 x 2"},
        {imageCards(16, {3, 0}), "length 0"},
        {imageCards(17, {3, 2}), "something else"},
        {{"NAXIS   = 2"}, "without a length"},
        {{"NAXIS   = 99999999999999999999"}, "something else"},
        {{"NAXIS   = 0"}, "something else"},
        {{"XTENSION= 'BINTABLE'", "NAXIS   = 2", "NAXIS1  = 3", "NAXIS2  = 2"}, "something else"},
        {{std::string(81, 'X')}, "more than 80"},
        {{"CDELT1  = 0"}, "(CDELT1)"},  // of pixels
        {{"CD1_1   = 0", "CD2_2   = 1"}, "(CDELT1)"},
        {{ra, dec, "CDELT2  = 0.0", "PC1_1   = 2.0"}, "(CDELT2)"},
        {{ra, dec, "CDELT1  = NaN"}, "(CDELT1)"},
        {{ra, dec, "CD1_1   = -2D-8"}, "(CDELT1)"},
        {{ra, dec, "CDELT1  = 0", "CD1_1   = -2D-8", "CD2_2   = 2D-8"}, nullptr},
        {{ra, dec, "PC1_2   = 1.0", "PC2_1   = 1.0"}, "matrix PC"},
    };
    for (const auto& c : cases) {
        MapHeader header;
        std::string error;
        const std::string text = joined(c.cards, "\n");
        EXPECT_EQ(readMapHeader(text, 2, 3, header, error, c.plane), c.why == nullptr) << text;
        EXPECT_NE(error.find(c.why ? c.why : ""), std::string::npos) << error << text;
        EXPECT_EQ(header.axes.empty(), c.why != nullptr);
        EXPECT_EQ(header.object, "");
    }
    MapHeader header;
    std::string error;
    EXPECT_FALSE(readMapHeader(joined({"NAXIS   = 2"}, "") + "NAXIS1  = 3", 2, 3, header, error));
    EXPECT_NE(error.find("cut off"), std::string::npos);
    EXPECT_FALSE(readMapHeader("", 0, 3, header, error));
}

}  // namespace pavane
