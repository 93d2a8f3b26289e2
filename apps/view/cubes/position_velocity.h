#pragma once

#include "pavane/measures/profiles/MapProfile.h"
#include "tessel/progress_function.h"

#include <string>

namespace pavane
{

struct MadeTold;
struct ViewOptions;

/// What a position-velocity map is made of, and where it goes.
struct PositionVelocityWish {
    std::string cube, out;
    ProfileLine line;
    int firstPlane = 0, lastPlane = -1;  ///< from 0, both included; the last -1: all of them
};

/// Makes a position-velocity map and writes it, a row at a time, so that it needs no memory itself.
/// Non-zero on success; else 0 and `error` is one line that names the file.
int makePositionVelocity(const PositionVelocityWish& wish, MadeTold& told, std::string& error,
                         const ProgressFunction& progress = {});

/// The same as the options ask for, and prints what it is.
int writePositionVelocity(const ViewOptions& options, std::string& error);

}  // namespace pavane
