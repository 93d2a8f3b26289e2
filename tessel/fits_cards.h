#pragma once

#include "tessel/map_header.h"

#include <string>
#include <vector>

namespace pavane
{

/// The cards that place an image of four axes where `header`'s map lies: the map's own cards, those
/// of axes beyond the fourth left out and a chosen plane made pixel 1, or, when it has none, cards
/// made from its axes. Axes 3 and 4 that it lacks become FREQ and STOKES.
std::vector<std::string> coordinateCards(const MapHeader& header);

/// Appends what a map has beside its place: unit and beam.
void appendMapCards(const MapHeader& header, std::vector<std::string>& cards);

/// Appends a line of history, in as many cards as it needs; what is not printable ASCII becomes
/// '?'.
void appendHistory(const std::string& line, std::vector<std::string>& cards);

/// The cards that place an image with `axis` as its third and last axis where `header`'s map lies;
/// what that map tells of axes beyond the second is left out.
std::vector<std::string> planeCards(const MapHeader& header, const MapAxis& axis);

/// One card, a text cut to what it can hold.
std::string cardOfText(const std::string& key, const std::string& value);
std::string cardOfNumber(const std::string& key, double value);

}  // namespace pavane
