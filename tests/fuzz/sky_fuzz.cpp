// Feeds any numbers and cards to the coordinates of a map: six doubles, a projection, header cards.
#include "tessel/SkyCoordinates.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    static const char* const codes[] = {"AZP", "SZP", "TAN", "STG", "SIN", "ARC", "ZPN", "ZEA",
                                        "AIR", "CYP", "CEA", "CAR", "MER", "COP", "COE", "COD",
                                        "COO", "SFL", "PAR", "MOL", "AIT", "BON", "PCO", "TSC",
                                        "CSC", "QSC", "HPX", "XPH", "NCP", "GLS"};
    double numbers[8] = {};
    if (size < sizeof numbers + 2)
        return 0;
    std::memcpy(numbers, data, sizeof numbers);
    const std::string code = codes[data[sizeof numbers] % 30];
    const std::string_view text(reinterpret_cast<const char*>(data) + sizeof numbers + 1,
                                size - sizeof numbers - 1);
    MapHeader header;
    header.axes = {{64, "RA---" + code, "deg", numbers[0], numbers[2], 1, 0},
                   {64, "DEC--" + code, "deg", numbers[1], numbers[3], 1, 0}};
    header.hasCelestialAxes = 1;
    std::memcpy(header.cd, numbers + 4, sizeof header.cd);
    for (std::size_t at = 0; at < text.size(); at += 80)
        header.coordinateCards.emplace_back(text.substr(at, 80));
    SkyCoordinates sky;
    std::string error;
    if (!sky.init(header, error))
        return 0;
    LocalSky local;
    double column = 0;
    double row = 0;
    if (sky.localSky(30, 40, local) && sky.toPixel(local.ra, local.dec, column, row) &&
        !(column * row == column * row))
        std::abort();
    return 0;
}
