#include "tessel/map_header_cards.h"

#include "tessel/fits_header.h"
#include "tessel/fits_scan.h"

#include <utility>

namespace pavane
{

namespace
{

std::string sizeText(std::int64_t columns, std::int64_t rows)
{
    return std::to_string(columns) + " x " + std::to_string(rows);
}

int readChecked(const std::string& text, int rows, int columns, int plane, MapHeader& header,
                std::string& error)
{
    HeaderCards cards;
    FitsImage image;
    if (rows < 1 || columns < 1) {
        error = "has no cells";
        return 0;
    }
    if (!cards.take(text, error) || !imageOfCards(cards, image, error))
        return 0;
    if (image.lengths.empty())
        image.lengths = {columns, rows};
    if (image.lengths[0] != columns || image.lengths[1] != rows) {
        // a part of the map with the header of the whole lies elsewhere on the sky
        error = "has a header of " + sizeText(image.lengths[0], image.lengths[1]) +
                " cells, but there are " + sizeText(columns, rows);
        return 0;
    }
    if (!choosePlane(image, plane, error))
        return 0;
    MapHeader made = readMapHeader(cards, image.lengths, plane);
    error = stepFault(cards, made, 0);
    if (!error.empty())
        return 0;
    header = std::move(made);
    header.planes = static_cast<int>(cellCount(image.lengths, 2));
    return 1;
}

}  // namespace

int readMapHeader(const std::string& cards, int rows, int columns, MapHeader& header,
                  std::string& error, int plane)
{
    header = MapHeader();
    error.clear();
    return readChecked(cards, rows, columns, plane, header, error);
}

}  // namespace pavane
