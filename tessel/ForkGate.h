#pragma once

// For those above tessel, who do not see posix.
#include "posix/ForkGate.h"
