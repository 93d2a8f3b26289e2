#include "pavane/axes/axis_settings.h"

namespace pavane
{
namespace
{

int partPointHeight = 6;
int partFontHeight = 30;
int partCrossHeight = 6;

}  // namespace

int GetPartPointHeight() { return partPointHeight; }
void SetPartPointHeight(int part) { partPointHeight = part; }
int GetPartFontHeight() { return partFontHeight; }
void SetPartFontHeight(int part) { partFontHeight = part; }
int GetPartCrossHeight() { return partCrossHeight; }
void SetPartCrossHeight(int part) { partCrossHeight = part; }

}  // namespace pavane
