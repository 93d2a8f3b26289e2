#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"

namespace pavane
{

class MapPicture;

/// What is to be said of the levels asked for; empty for nothing.
std::string levelNoteOf(const LevelChoice& choice, const MapContent& content);

/// Gives the picture of a map everything that the options say about colours and contours; its
/// header line tells what is to be said of the levels.
void applyOptions(MapPicture& picture, const ViewOptions& options);
/// The same without a word in its header line.
void applyLook(MapPicture& picture, const ViewOptions& options);

}  // namespace pavane
