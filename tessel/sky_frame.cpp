#include "tessel/sky_frame.h"

#include "tessel/value_text.h"

#include <cmath>
#include <erfa.h>
#include <numbers>

namespace pavane
{

namespace
{

using System = SkyFrame::System;

constexpr double degree = std::numbers::pi / 180;
constexpr double firstEquinox = 1000;
constexpr double lastEquinox = 3000;
constexpr double farthestLongitude = 3600;
constexpr double fk4Epoch = 1950;
constexpr double j2000 = 2451545.0;  // Julian date

/// A direction in radians.
struct Direction {
    double longitude = 0;
    double latitude = 0;
};

/// `matrix` applied, or, when `isBack`, its inverse.
Direction turned(double (&matrix)[3][3], int isBack, Direction d)
{
    double vector[3];
    double result[3];
    eraS2c(d.longitude, d.latitude, vector);
    if (isBack)
        eraTrxp(matrix, vector, result);
    else
        eraRxp(matrix, vector, result);
    Direction turned;
    eraC2s(result, &turned.longitude, &turned.latitude);
    return turned;
}

/// From FK5 at 2000 to that of another equinox: precession alone, the bias belongs to ICRS.
Direction precessed(double equinox, int isBack, Direction d)
{
    double date[2];
    double bias[3][3];
    double precession[3][3];
    double both[3][3];
    eraEpj2jd(equinox, &date[0], &date[1]);
    eraBp06(date[0], date[1], bias, precession, both);
    return turned(precession, isBack, d);
}

/// From FK5 at 2000 to galactic: pole and node of the IAU system of 1958 carried to that frame
/// (Liu, Zhu and Zhang 2011, A&A 526, A16), not to ICRS as ERFA's own routine has it.
Direction galactic(int isBack, Direction d)
{
    double matrix[3][3];
    eraIr(matrix);
    eraRz(192.8594812065348 * degree, matrix);
    eraRy((90 - 27.12825118085622) * degree, matrix);
    eraRz((180 - 122.9319185680026) * degree, matrix);
    return turned(matrix, isBack, d);
}

/// The date of the frames' relation stays 2000: any other would add the spin between them.
Direction fk5ToIcrs(Direction d)
{
    Direction icrs;
    eraFk5hz(d.longitude, d.latitude, j2000, 0, &icrs.longitude, &icrs.latitude);
    return icrs;
}

Direction icrsToFk5(Direction d)
{
    Direction fk5;
    double spin[2];
    eraHfk5z(d.longitude, d.latitude, j2000, 0, &fk5.longitude, &fk5.latitude, &spin[0], &spin[1]);
    return fk5;
}

Direction fk4ToFk5(Direction d)
{
    Direction fk5;
    eraFk45z(d.longitude, d.latitude, fk4Epoch, &fk5.longitude, &fk5.latitude);
    return fk5;
}

/// ERFA's way back is 0.02 mas off its way there, a cell of a VLBI map: what is left is put right.
Direction fk5ToFk4(Direction d)
{
    constexpr int rounds = 3;
    double wanted[3];
    double aim[3];
    eraS2c(d.longitude, d.latitude, wanted);
    eraCp(wanted, aim);
    Direction fk4;
    for (int i = 0; i < rounds; ++i) {
        double motion[2];
        double found[3];
        eraC2s(aim, &d.longitude, &d.latitude);
        eraFk54z(d.longitude, d.latitude, fk4Epoch, &fk4.longitude, &fk4.latitude, &motion[0],
                 &motion[1]);
        const Direction there = fk4ToFk5(fk4);
        eraS2c(there.longitude, there.latitude, found);
        for (int k = 0; k < 3; ++k)
            aim[k] += wanted[k] - found[k];
    }
    return fk4;
}

/// Between ICRS and the mean ecliptic of an equinox.
Direction ecliptic(double equinox, int isBack, Direction d)
{
    double date[2];
    Direction result;
    eraEpj2jd(equinox, &date[0], &date[1]);
    (isBack ? eraEceq06 : eraEqec06)(date[0], date[1], d.longitude, d.latitude, &result.longitude,
                                     &result.latitude);
    return result;
}

Direction toIcrs(const SkyFrame& frame, Direction d)
{
    switch (frame.system) {
    case System::icrs:
        return d;
    case System::fk5:
        return fk5ToIcrs(frame.equinox == 2000 ? d : precessed(frame.equinox, 1, d));
    case System::fk4:
        return fk5ToIcrs(fk4ToFk5(d));
    case System::galactic:
        return fk5ToIcrs(galactic(1, d));
    case System::ecliptic:
        return ecliptic(frame.equinox, 1, d);
    }
    return d;
}

Direction fromIcrs(const SkyFrame& frame, Direction d)
{
    switch (frame.system) {
    case System::icrs:
        return d;
    case System::fk5: {
        const Direction at2000 = icrsToFk5(d);
        return frame.equinox == 2000 ? at2000 : precessed(frame.equinox, 0, at2000);
    }
    case System::fk4:
        return fk5ToFk4(icrsToFk5(d));
    case System::galactic:
        return galactic(0, icrsToFk5(d));
    case System::ecliptic:
        return ecliptic(frame.equinox, 0, d);
    }
    return d;
}

}  // namespace

int isKnown(const SkyFrame& frame)
{
    return frame.system == System::fk4
               ? frame.equinox == fk4Epoch
               : frame.equinox >= firstEquinox && frame.equinox <= lastEquinox;
}

std::string nameOf(const SkyFrame& frame)
{
    static constexpr const char* names[] = {"FK5", "ICRS", "FK4", "galactic", "ecliptic"};
    const std::string name = names[static_cast<int>(frame.system)];
    const int isUsual = frame.system != System::fk4 && frame.equinox == 2000;
    return isUsual ? name : name + " at " + valToStr(frame.equinox);
}

int convertSky(const SkyFrame& from, const SkyFrame& to, double longitude, double latitude,
               double& toLongitude, double& toLatitude)
{
    if (!isKnown(from) || !isKnown(to) || !(std::abs(longitude) <= farthestLongitude) ||
        !(std::abs(latitude) <= 90))
        return 0;
    if (!(from == to)) {
        const Direction d = fromIcrs(to, toIcrs(from, {longitude * degree, latitude * degree}));
        longitude = d.longitude / degree;
        latitude = d.latitude / degree;
    }
    longitude = std::fmod(longitude, 360.0);
    toLongitude = longitude < 0 ? longitude + 360 : longitude;
    toLatitude = latitude;
    return 1;
}

}  // namespace pavane
