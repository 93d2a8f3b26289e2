#include "tessel/StopFlag.h"

namespace pavane
{

ProgressFunction progressOf(const StopFlag* stop)
{
    if (!stop)
        return {};
    return [stop](double) { return !stop->isStopped(); };
}

}  // namespace pavane
