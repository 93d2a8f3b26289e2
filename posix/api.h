#pragma once

/// PAVANE_API marks what the shared library shows; all else in it is hidden.
#ifndef PAVANE_API
#define PAVANE_API __attribute__((visibility("default")))
#endif
