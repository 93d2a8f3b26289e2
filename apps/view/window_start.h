#pragma once

#include "platform/geometry.h"

#include <functional>
#include <string>

namespace pavane
{

class CWnd;

// How the programs with windows begin.

/// Starts the toolkit for the program of this name, whose profile is read, lets `open` make and
/// show the windows, and ends the toolkit again after `open` has run their messages and they are
/// gone. Non-zero when `open` was content; else `error` is a line.
int runWindowProgram(char** argv, const char* program, std::string& error,
                     const std::function<int()>& open);

/// Shows a main window where it was last time, as a section of the profile tells, as far as that
/// can be reached; else at `first`.
void showPlaced(CWnd& window, const char* section, const CRect& first);

}  // namespace pavane
