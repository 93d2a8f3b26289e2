#include "pavane/axes/maps/MapContent.h"

#include "tessel/plain_text.h"

namespace pavane
{

namespace
{

/// Texts of a header reach terminals, lines of numbers, titles and the header of a mask.
void makePlain(MapHeader& header)
{
    for (std::string* text :
         {&header.bunit, &header.object, &header.dateObs, &header.telescope, &header.stokes})
        *text = plainText(*text);
    for (MapAxis& axis : header.axes) {
        axis.ctype = plainText(axis.ctype);
        axis.cunit = plainText(axis.cunit);
    }
}

}  // namespace

int readMapContent(const CString& file, int plane, MapContent& content, CString& error,
                   const ProgressFunction& progress)
{
    if (!readFitsMap(file, plane, content.map, error, progress))
        return 0;
    makePlain(content.map.header);
    const AMatrix<float>& cells = content.map.cells;
    content.frame = frameOf(content.map.header, cells.rows(), cells.columns());
    const AFloatMatrixAccess access(cells);
    content.range = mapRange(access);
    content.noise = mapNoise(access);
    return 1;
}

}  // namespace pavane
