#include "pavane/axes/axis_settings.h"

#include <atomic>

namespace pavane
{
namespace
{

// each stands for itself, so no lock is needed
constexpr AxisParts usual;
std::atomic<int> partPointHeight = usual.point;
std::atomic<int> partFontHeight = usual.font;
std::atomic<int> partCrossHeight = usual.cross;

}  // namespace

AxisParts GetAxisParts() { return {partPointHeight, partFontHeight, partCrossHeight}; }
int GetPartPointHeight() { return partPointHeight; }
void SetPartPointHeight(int part) { partPointHeight = part; }
int GetPartFontHeight() { return partFontHeight; }
void SetPartFontHeight(int part) { partFontHeight = part; }
int GetPartCrossHeight() { return partCrossHeight; }
void SetPartCrossHeight(int part) { partCrossHeight = part; }

}  // namespace pavane
