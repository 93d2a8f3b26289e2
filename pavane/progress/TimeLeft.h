#pragma once

#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

/// How long a job will still take, from how far it was when.
class PAVANE_API TimeLeft
{
public:
    /// What was done after so many seconds; called now and then, in order. Fractions out of 0 to 1
    /// tell nothing.
    void add(double seconds, double fraction);
    /// In seconds; -1 while it cannot be told: at first, when nothing goes on, beyond a week.
    double seconds() const;

private:
    double begin_ = -1;  ///< time and fraction of the first report
    double time_ = 0;
    double fraction_ = 0;
    double rate_ = 0;  ///< fraction in a second, of late more than of long ago
};

/// "about 3 min left"; "" below 0 and beyond a week, where nobody knows.
PAVANE_API CString timeLeftText(double seconds);

}  // namespace pavane
