#pragma once

#include "platform/types.h"

#include <vector>

namespace pavane
{

/// The folders in which the desktop looks for what is registered, the user's first. From the
/// environment; relative names in it do not count.
struct DesktopFolders {
    std::vector<CString> config;
    std::vector<CString> data;
    static DesktopFolders ofEnvironment();
};

/// The parts of a list that ':' divides; empty ones left out.
std::vector<CString> partsOf(const CString& list);
/// A variable of the environment, "" when it is not set.
CString environmentText(const char* name);
/// Where the program `name` is: itself when it is a path, else along PATH; "" when there is no
/// such program.
CString programPath(const CString& name);

}  // namespace pavane
