#pragma once

#include <string>

namespace pavane
{

/// Non-zero when windows can be shown: the environment names a display, and it answers (or names a
/// way of the toolkit to do without). Else 0 and `error` says in one line what is missing.
int hasDisplay(std::string& error);

}  // namespace pavane
