#include "tessel/rgb_map.h"

#include "tessel/fits_cards.h"
#include "tessel/fits_header_text.h"
#include "tessel/FitsCubeReader.h"
#include "tessel/FitsMapWriter.h"
#include "tessel/HeaderCards.h"
#include "tessel/plain_text.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr const char* rgbType = "RGB";
constexpr int someRows = 64;

std::string keyOf(const char* letters, std::size_t band)
{
    return letters + std::to_string(band + 1);
}

std::vector<std::string> cardsOf(const RgbMap& map, const MapHeader& like,
                                 const std::vector<std::string>& history)
{
    MapAxis axis;
    axis.ctype = rgbType;
    axis.crval = axis.crpix = 1;
    std::vector<std::string> cards = planeCards(like, axis);
    MapHeader ofMap = like;
    for (const RgbBand& band : map.bands)
        if (band.unit != map.bands[0].unit)
            ofMap.bunit.clear();
    appendMapCards(ofMap, cards);
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const RgbBand& band = map.bands[i];
        cards.push_back(cardOfText(keyOf("RGBMAP", i), band.name));
        cards.push_back(cardOfText(keyOf("RGBUNIT", i), band.unit));
        if (!band.hasRange())
            continue;
        cards.push_back(cardOfNumber(keyOf("RGBLOW", i), band.low));
        cards.push_back(cardOfNumber(keyOf("RGBTOP", i), band.high));
    }
    for (const std::string& line : history)
        appendHistory(line, cards);
    return cards;
}

/// What the first card of that keyword says, as it is written.
std::string fieldOf(const std::vector<std::string>& lines, const std::string& key)
{
    const auto found = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.starts_with(key) && line.find_first_not_of(' ', key.size()) == 8;
    });
    return found == lines.end() ? std::string() : std::string(valueField(*found));
}

void readBands(const std::vector<std::string>& lines, RgbMap& map)
{
    for (std::size_t i = 0; i < rgbBands; ++i) {
        RgbBand& band = map.bands[i];
        band = RgbBand();
        band.name = plainText(fieldText(fieldOf(lines, keyOf("RGBMAP", i))));
        band.unit = plainText(fieldText(fieldOf(lines, keyOf("RGBUNIT", i))));
        double low = 0, high = 0;
        if (fieldNumber(fieldOf(lines, keyOf("RGBLOW", i)), low) &&
            fieldNumber(fieldOf(lines, keyOf("RGBTOP", i)), high) && low < high) {
            band.low = low;
            band.high = high;
        }
    }
}

}  // namespace

int isOfRgb(const MapHeader& header)
{
    return header.planes == static_cast<int>(rgbBands) && header.axes.size() > 2 &&
           header.axes[2].ctype == rgbType && header.axes[2].length == static_cast<int>(rgbBands);
}

int writeRgbMap(const std::string& file, const RgbMap& map, const MapHeader& like,
                const std::vector<std::string>& history, std::string& error,
                const ProgressFunction& progress)
{
    error.clear();
    const int rows = map.cells[0].rows(), columns = map.cells[0].columns();
    for (const AMatrix<float>& cells : map.cells)
        if (rows < 1 || cells.rows() != rows || cells.columns() != columns)
            error = "there are not three maps of the same cells to write";
    if (!error.empty())
        return 0;
    SafeFile safe;
    if (!safe.open(file)) {
        error = safe.fault();
        return 0;
    }
    FitsMapWriter writer;
    int written = writer.begin(safe.file(), {columns, rows, static_cast<int>(rgbBands)},
                               cardsOf(map, like, history));
    const double all = static_cast<double>(rgbBands) * rows;
    double done = 0;
    for (const AMatrix<float>& cells : map.cells)
        for (int r = 0; r < rows && written; ++r, ++done) {
            if (progress && !progress(done / all)) {
                error = writingGivenUp;
                return 0;
            }
            written = writer.write(cells.row(r));
        }
    if (!written || !writer.finish() || !safe.commit()) {
        error = safe.fault();
        return 0;
    }
    return 1;
}

int readRgbMap(const std::string& file, RgbMap& map, std::string& error,
               const ProgressFunction& progress)
{
    map = RgbMap();
    FitsCubeReader cube;
    std::vector<std::string> lines;
    if (!cube.open(file, error) || !readFitsHeaderText(file, lines, error))
        return 0;
    if (!isOfRgb(cube.header(0))) {
        error = "holds no RGB map: its third axis is not of type RGB with three planes";
        return 0;
    }
    readBands(lines, map);
    for (std::size_t i = 0; i < rgbBands; ++i) {
        AMatrix<float>& cells = map.cells[i];
        cells = AMatrix<float>(cube.rows(), cube.columns());
        if (!cells.rows()) {
            error = "there is no memory for its cells";
            return 0;
        }
        for (int r = 0; r < cube.rows(); r += someRows) {
            const int count = std::min(someRows, cube.rows() - r);
            if (!cube.read(static_cast<int>(i), r, count, cells.row(r), error))
                return 0;
            const double part = static_cast<double>(r) / cube.rows();
            if (progress && !progress((static_cast<double>(i) + part) / rgbBands)) {
                error = "reading was given up";
                return 0;
            }
        }
        if (map.bands[i].unit.empty())
            map.bands[i].unit = cube.header(static_cast<int>(i)).bunit;
    }
    return 1;
}

}  // namespace pavane
