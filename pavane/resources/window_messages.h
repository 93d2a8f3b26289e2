#pragma once

namespace pavane
{

// Texts that the user sees; names of files are put behind them.
inline constexpr const char* cannotCreateFile = "Can`t create file: ";
inline constexpr const char* clipboardRefuses = "The clipboard does not take the picture.";
inline constexpr const char* splashNotCreated = "not create";  ///< the clip player, that is

}  // namespace pavane
