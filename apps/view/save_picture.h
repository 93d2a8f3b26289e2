#pragma once

#include <functional>
#include <string>

namespace pavane
{

class APlotWnd;

/// Asks for the name of a file, `suggested` at first, and saves in it what the window shows, at
/// twice its pixels or as a page. `mayWrite` has a word about the name. Non-zero when it was saved,
/// under the name that is in `suggested` then; what goes wrong the user is told.
int savePictureOf(APlotWnd& view, const std::string& title, std::string& suggested,
                  const std::function<int(const std::string& file)>& mayWrite);

}  // namespace pavane
