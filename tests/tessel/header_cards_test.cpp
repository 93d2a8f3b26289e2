#include "tessel/fits_scan.h"
#include "tessel/fits_text.h"
#include "tessel/HeaderCards.h"

#include <filesystem>
#include <fitsio.h>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

std::string withoutBlanksAtEnd(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string trimmed(const std::string& text)
{
    const std::string cut = withoutBlanksAtEnd(text);
    return cut.substr(std::min(cut.find_first_not_of(' '), cut.size()));
}

/// Compares the header of the first image of the file with what CFITSIO makes of it, card by card
/// and value by value. Returns how many cards there are, 0 when the file holds no image.
std::size_t compared(const std::string& name)
{
    AFile file(name, AFile::readOnly);
    FitsImage image;
    std::string error;
    if (!scanForImage(file, image, error))
        return 0;
    HeaderCards header;
    EXPECT_TRUE(header.read(file, image.headerStart, image.dataStart));
    fitsfile* theirs = nullptr;
    int status = 0;
    int count = 0;
    fits_open_diskfile(&theirs, name.c_str(), READONLY, &status);
    fits_movabs_hdu(theirs, image.hdu, nullptr, &status);
    fits_get_hdrspace(theirs, &count, nullptr, &status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(header.cards().size(), static_cast<std::size_t>(count));
    for (int i = 0; i < std::min(count, static_cast<int>(header.cards().size())); ++i) {
        char card[FLEN_CARD] = "";
        char value[FLEN_VALUE] = "";
        char text[FLEN_VALUE] = "";
        const std::string& ours = header.cards()[static_cast<std::size_t>(i)];
        fits_read_record(theirs, i + 1, card, &status);
        EXPECT_EQ(withoutBlanksAtEnd(ours), withoutBlanksAtEnd(card)) << name;
        fits_parse_value(card, value, nullptr, &status);
        const std::string field(valueField(ours));
        // theirs closes a text that nobody has closed
        EXPECT_TRUE(field == value || field + '\'' == value) << card << field;
        const std::string key = withoutBlanksAtEnd(ours.substr(0, 8));
        int missing = 0;
        fits_read_record(theirs, 0, card, &status);  // to the start, so that the first one counts
        fits_read_key(theirs, TSTRING, key.c_str(), text, nullptr, &missing);
        if (*value && !missing) {
            EXPECT_EQ(header.text(key), trimmed(text)) << key;
        }
    }
    fits_close_file(theirs, &status);
    EXPECT_EQ(status, 0);
    return static_cast<std::size_t>(count);
}

}  // namespace

TEST(HeaderCards, AreWhatCfitsioReads)
{
    const std::string made =
        saved("odd.fits", hdu(imageCards(-32, {3, 2},
                                         {"OBJECT  = 'it''s '    / quoted",
                                          "EMPTY   =",
                                          "NOTEXT  = ''",
                                          "BLANKS  = '  in  '",
                                          "BUNIT   = 'JY/BEAM / not a comment'",
                                          "CDELT1  = -1.5D-8/no blank",
                                          "CRVAL1  =1.0",
                                          "CRPIX1  =    +2 3 / two",
                                          "OBJECT  = 'second'",
                                          "TELESCOP= unquoted / text",
                                          "OPEN    = 'never closed",
                                          "HISTORY = 'not a value'",
                                          "COMMENT a = b",
                                          "lower   = 1",
                                          "        = 2",

                                          "T       =                    T",
                                          "",
                                          "LAST    = 'x' 'y'",
                                          "",
                                          ""}),
                              std::string(24, '@')));
    EXPECT_GT(compared(made), 20u);
    for (const int codec : {RICE_1, GZIP_1})
        EXPECT_GT(compared(saved("tiles.fits", packedMap(codec))), 20u);
    namespace fs = std::filesystem;
    const fs::path real = fs::path(PAVANE_SOURCE_DIR) / "../shared/data";
    if (fs::exists(real))
        for (const auto& entry : fs::recursive_directory_iterator(real))
            if (entry.is_regular_file() && entry.path().extension() == ".fits")
                (void)compared(entry.path().string());
}

}  // namespace pavane
