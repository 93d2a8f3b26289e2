#pragma once

#include "tessel/map_header.h"

namespace pavane
{

/// The orthographic projection (SIN) near its reference position, written in differences from it:
/// the general way through native angles rounds at some 1e-14 degrees, which is 1e-6 cells and more
/// of a VLBI map. Formulas of Calabretta and Greisen (2002), solved for the differences.
/// FITS pixels, from 1; degrees.
class SinPlane
{
public:
    /// Non-zero when the plane holds: `header` places a map in this projection whose pole is where
    /// it is by default and which has no parameters. The matrix must have an inverse.
    int init(const MapHeader& header);
    /// 0 farther than 0.1 radian from the reference position, or too near to a pole.
    int toSky(const double (&pixel)[2], double (&world)[2]) const;
    int toPixel(const double (&world)[2], double (&pixel)[2]) const;

private:
    int isSet_ = 0;
    double crpix_[2] = {};
    double crval_[2] = {};
    double cd_[2][2] = {};
    double inverse_[2][2] = {};
    double sinDec_ = 0;
    double cosDec_ = 0;
};

}  // namespace pavane
