#pragma once

#include "apps/view/print_options.h"

#include <string>

namespace pavane
{

class ABWindow;
struct MapHeader;
struct UvHeader;

/// What stands below a printed picture when nobody says: object, frequency and date as far as they
/// are known.
std::string usualCaption(const MapHeader& header);
std::string usualCaption(const UvHeader& header);

/// Prints the window as `wish` says, without a dialog and without the profile. `caption` is for
/// when there is none in `wish`. SIGINT, SIGTERM and SIGHUP end the program when nothing is left
/// behind. Non-zero on success, else one line in `error`.
int printInBatch(const PrintWish& wish, const std::string& title, const std::string& caption,
                 ABWindow& window, std::string& error);

}  // namespace pavane
