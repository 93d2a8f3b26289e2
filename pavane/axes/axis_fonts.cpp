#include "pavane/axes/axis_fonts.h"

#include "platform/gdi_objects.h"
#include "tessel/rounding.h"

namespace pavane
{

int CreateFont(CFont& font, int height, int bold, double angle, const CString& face)
{
    constexpr unsigned char cyrillicCharSet = 204;
    constexpr unsigned char trueTypePrecision = 4;
    constexpr unsigned char proofQuality = 2;
    constexpr unsigned char variablePitchSwiss = 0x22;
    LOGFONT wanted;
    wanted.lfHeight = height;
    wanted.lfEscapement = wanted.lfOrientation = truncated(angle * 10);
    wanted.lfWeight = bold ? FW_BOLD : 0;
    wanted.lfCharSet = cyrillicCharSet;
    wanted.lfOutPrecision = trueTypePrecision;
    wanted.lfQuality = proofQuality;
    wanted.lfPitchAndFamily = variablePitchSwiss;
    wanted.lfFaceName = face;
    return font.CreateFontIndirect(wanted);
}

}  // namespace pavane
