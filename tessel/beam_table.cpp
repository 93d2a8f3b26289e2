#include "tessel/beam_table.h"

#include "tessel/angle_unit.h"
#include "tessel/fits_hdus.h"
#include "tessel/fits_header.h"
#include "tessel/uvfits/FitsTable.h"

#include <cmath>

namespace pavane
{

namespace
{

/// Headers that are looked at for the table.
constexpr int mostHeaders = 100;

/// Which channel and which polarisation the plane is, from 0.
struct PlanePlace {
    int channel = 0, polarisation = 0;
    explicit PlanePlace(const MapHeader& header)
    {
        const std::vector<int> pixels = planePixels(header.axes, header.plane);
        for (std::size_t i = 2; i < header.axes.size(); ++i)
            if (header.axes[i].length > 1)
                (header.axes[i].ctype == "STOKES" ? polarisation : channel) = pixels[i];
    }
};

/// The number of a column in degrees; not a number where there is none.
double degreesIn(const FitsTable& table, int column)
{
    return table.number(column).value * degreesOfUnit(table.unit(column));
}

/// A table without channels has a row for each plane.
int takeRow(FitsTable& table, MapHeader& header)
{
    const int channel = table.column("CHAN"), polarisation = table.column("POL");
    const int major = table.column("BMAJ"), minor = table.column("BMIN");
    const int angle = table.column("BPA");
    const PlanePlace place(header);
    for (int row = 0; table.next(); ++row) {
        if (channel < 0 ? row != header.plane
                        : table.whole(channel, -1) != place.channel ||
                              table.whole(polarisation, place.polarisation) != place.polarisation)
            continue;
        const double bmaj = degreesIn(table, major), bmin = degreesIn(table, minor);
        const double bpa = degreesIn(table, angle);
        if (!(bmaj > 0) || !(bmin > 0) || !std::isfinite(bmaj) || !std::isfinite(bmin))
            return 0;
        header.hasBeam = 1;
        header.bmaj = bmaj;
        header.bmin = bmin;
        header.bpa = std::isfinite(bpa) ? bpa : 0;
        return 1;
    }
    return 0;
}

}  // namespace

int readTableBeam(AFile& file, MapHeader& header)
{
    const std::int64_t size = file.size();
    FitsHdu hdu;
    std::int64_t start = 0;
    for (int i = 0; start < size && i < mostHeaders && readHdu(file, start, hdu); ++i) {
        if (hdu.dataBytes > size - hdu.dataStart)
            return 0;
        start = endOf(hdu);
        if (i < 1 || hdu.kind != "BINTABLE" || capitals(hdu.cards.text("EXTNAME")) != "BEAMS")
            continue;
        FitsTable table(file);
        std::string ignored;  // a map without its beam is still a map
        return table.open(hdu, ignored) && takeRow(table, header);
    }
    return 0;
}

}  // namespace pavane
