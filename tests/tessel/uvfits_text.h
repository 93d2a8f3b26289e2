#pragma once

#include "tests/tessel/fits_text.h"

#include <bit>

namespace pavane
{

inline std::string bigEndian(float value)
{
    return bigEndian(std::bit_cast<std::uint32_t>(value), 4);
}

/// One group of the made-up file below.
struct TestGroup {
    float seconds = 0;  ///< since 0h of 2010-12-24
    float baseline = 258;
    float source = 1;
    float real = 1, imaginary = 0, weight = 1;
};

inline std::vector<std::string> groupCards(std::size_t count)
{
    return imageCards(
        -32, {0, 3, 1, 1},
        {"GROUPS  =                    T", "PCOUNT  = 4", "GCOUNT  = " + std::to_string(count),
         "CTYPE2  = 'COMPLEX '", "CTYPE3  = 'STOKES  '", "CRVAL3  = -1", "CTYPE4  = 'FREQ    '",
         "CRVAL4  = 8.4D9", "CDELT4  = 5E5", "PTYPE1  = 'UU      '", "PTYPE2  = 'BASELINE'",
         "PTYPE3  = 'DATE    '", "PSCAL3  = 1.1574074074074073E-05", "PZERO3  = 2455554.5",
         "PTYPE4  = 'SOURCE  '", "DATE-OBS= '2010-12-24'", "OBJECT  = 'M87     '"});
}

/// One visibility of RR a group, one channel of 8.4 GHz.
inline std::string groupsHdu(const std::vector<TestGroup>& groups)
{
    std::string data;
    for (const TestGroup& g : groups)
        for (const float value :
             {1e-3f, g.baseline, g.seconds, g.source, g.real, g.imaginary, g.weight})
            data += bigEndian(value);
    return hdu(groupCards(groups.size()), data);
}

/// A binary table; `columns` are pairs of name and format.
inline std::string tableHdu(const std::string& name,
                            const std::vector<std::pair<std::string, std::string>>& columns,
                            int rowBytes, int rows, const std::string& data)
{
    std::vector<std::string> cards = {"XTENSION= 'BINTABLE'",
                                      "BITPIX  = 8",
                                      "NAXIS   = 2",
                                      "NAXIS1  = " + std::to_string(rowBytes),
                                      "NAXIS2  = " + std::to_string(rows),
                                      "PCOUNT  = 0",
                                      "GCOUNT  = 1",
                                      "TFIELDS = " + std::to_string(columns.size()),
                                      "EXTNAME = '" + name + "'"};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        std::string n = std::to_string(i + 1);
        n.resize(3, ' ');
        cards.push_back("TTYPE" + n + "= '" + columns[i].first + "'");
        cards.push_back("TFORM" + n + "= '" + columns[i].second + "'");
    }
    return hdu(cards, data);
}

/// `text` with `to` written over where `from` begins.
inline std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, to.size(), to);
}

/// Telescopes 1 and 2 of the names AB and CD, of 14 bytes a row.
inline std::string antennaHdu(const std::string& nameForm = "2A", int rowBytes = 14, int rows = 2)
{
    std::string data;
    for (const int number : {1, 2})
        data += (number == 1 ? "AB" : "CD") + bigEndian(std::uint64_t(number), 4) +
                bigEndian(1.0f + float(number)) + bigEndian(std::uint64_t(0), 4);
    return tableHdu("AIPS AN",
                    {{"ANNAME", nameForm}, {"NOSTA", "1J"}, {"STAXOF", "E"}, {"MNTSTA", "1J"}},
                    rowBytes, rows, data);
}

}  // namespace pavane
