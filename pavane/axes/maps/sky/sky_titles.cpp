#include "pavane/axes/maps/sky/sky_titles.h"

#include "tessel/value_text.h"

namespace pavane
{

CString skyAxisTitle(const SkyFrame& frame, int isLatitude, int isRelative)
{
    std::string title = isLatitude ? "declination" : "right ascension";
    std::string behind = " (" + nameOf(frame) + ")";
    if (frame.system == SkyFrame::System::galactic || frame.system == SkyFrame::System::ecliptic) {
        title = frame.system == SkyFrame::System::galactic ? "galactic " : "ecliptic ";
        title += isLatitude ? "latitude" : "longitude";
        behind = frame.equinox == 2000 ? "" : " (" + valToStr(frame.equinox) + ")";
    }
    if (isRelative)
        return "Relative " + title + behind;
    title[0] = static_cast<char>(title[0] - 'a' + 'A');
    return title + behind;
}

}  // namespace pavane
