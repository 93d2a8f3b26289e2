#pragma once

#include <string>

namespace pavane
{

/// Non-zero when something listens at the X display "host:number.screen"; no host, or "unix", is
/// this machine. Whether it lets this user in is not asked.
int xDisplayAnswers(const std::string& display);
/// The same of a Wayland display, a socket by its path or by its name in XDG_RUNTIME_DIR.
int waylandDisplayAnswers(const std::string& display);

}  // namespace pavane
