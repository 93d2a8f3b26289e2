#pragma once

#include "pavane/imaging/AImagingEngine.h"

#include <string_view>

namespace pavane
{

/// Takes a line of wsclean's output, as WscleanEngine::readLine. Lines that are drawn bit by bit
/// ("0%....10%") may come in pieces or whole.
int readWscleanLine(std::string_view line, EngineNews& news);

/// "37.5 mJy" as Jy; the text goes on behind it. Non-zero on success.
int takeFlux(std::string_view& text, double& jansky);

}  // namespace pavane
