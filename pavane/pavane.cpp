#include "pavane/pavane.h"

// Every public header compiles together; the code itself is in the parts that this library is made
// of.
