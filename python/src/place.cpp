#include "python/src/place.h"

#include "python/src/errors.h"
#include "tessel/FitsMapReader.h"
#include "tessel/map_header_cards.h"

#include <algorithm>

namespace pavane::python
{

Place::Place(const Map& map) : rows_(map.cells().rows()), columns_(map.cells().columns())
{
    init(map.content().map.header);
}

Place::Place(const std::string& cards, int rows, int columns, int plane)
    : rows_(rows), columns_(columns)
{
    MapHeader header;
    std::string error;
    // what has no size has no sizes in its cards either, and any will do
    if (!readMapHeader(cards, std::max(rows, 1), std::max(columns, 1), header, error, plane))
        throwFormat("the header " + error);
    init(header);
}

Place::Place(const CString& file)
{
    FitsMapReader reader;
    std::string error;
    if (!reader.open(file, 0, error))
        throwUnread(file, error);
    rows_ = reader.rows();
    columns_ = reader.columns();
    init(reader.header());
}

void Place::init(const MapHeader& header)
{
    std::string noSky;  // then positions on the sky are left out, and noted
    (void)sky_.init(header, noSky);
    frame_ = frameOf(header, std::max(rows_, 1), std::max(columns_, 1));
}

AreaPlace Place::areaPlace(int skyRegions) const
{
    return {frame_.centres(), rows_, columns_, &sky_, skyRegions};
}

}  // namespace pavane::python
