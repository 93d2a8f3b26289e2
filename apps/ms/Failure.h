#pragma once

#include <stdexcept>
#include <string>

namespace pavane_ms
{

/// What went wrong, in one line for a person.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Wrong words on the command line.
struct WrongUse : Failure {
    using Failure::Failure;
};

}  // namespace pavane_ms
