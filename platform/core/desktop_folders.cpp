#include "platform/core/desktop_folders.h"

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace pavane
{

namespace
{

void addFolder(std::vector<CString>& folders, const CString& folder)
{
    if (!folder.empty() && folder.front() == '/')
        folders.push_back(folder);
}

/// The user's folder, then the system's.
std::vector<CString> folders(const char* userVariable, const char* belowHome,
                             const char* systemVariable, const char* systemFolders)
{
    std::vector<CString> all;
    const CString user = environmentText(userVariable);
    const CString home = environmentText("HOME");
    if (!user.empty())
        addFolder(all, user);
    else if (!home.empty())
        addFolder(all, home + belowHome);
    const CString system = environmentText(systemVariable);
    for (const CString& folder : partsOf(system.empty() ? systemFolders : system))
        addFolder(all, folder);
    return all;
}

bool isProgram(const CString& path)
{
    struct stat told {
    };
    return stat(path.c_str(), &told) == 0 && S_ISREG(told.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::vector<CString> partsOf(const CString& list)
{
    std::vector<CString> parts;
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find(':', at), list.size());
        if (end > at)
            parts.push_back(list.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

CString environmentText(const char* name)
{
    const char* const text = std::getenv(name);
    return text ? text : "";
}

DesktopFolders DesktopFolders::ofEnvironment()
{
    return {
        folders("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg"),
        folders("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share")};
}

CString programPath(const CString& name)
{
    if (name.empty() || name.find('/') != CString::npos)
        return isProgram(name) ? name : CString();
    CString path = environmentText("PATH");
    if (path.empty())
        path = "/usr/local/bin:/usr/bin:/bin";
    for (const CString& folder : partsOf(path)) {
        CString found = folder;
        found += '/';
        found += name;
        if (isProgram(found))
            return found;
    }
    return {};
}

}  // namespace pavane
