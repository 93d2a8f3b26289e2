#pragma once

#include "pavane/windows/controls/JobBox.h"

namespace pavane
{

/// A long job of a table, or the part of it that runs now.
struct TableJob {
    JobBox box;
    double from = 0;  ///< fraction of the job at which this part begins
    double part = 1;  ///< how much of the job it is
    int stopped = 0;  ///< the user gave up

    /// Fraction of the part that is done; 0 when the user gave up.
    int show(double done)
    {
        stopped = stopped || !box.show(from + part * done);
        return !stopped;
    }
};

}  // namespace pavane
