#include "apps/view/several/MapLinks.h"

#include <utility>

namespace pavane
{

void MapLinks::next()
{
    by_ = by_ == LinkBy::sky ? LinkBy::cell : by_ == LinkBy::cell ? LinkBy::nothing : LinkBy::sky;
}

std::string MapLinks::text(int byCell) const
{
    if (by_ == LinkBy::nothing)
        return "Maps are not linked";
    std::string parts;
    for (const auto& [part, name] :
         {std::pair{linkZoom, "zoom"}, std::pair{linkPointer, "pointer"},
          std::pair{linkColours, "colours"}, std::pair{linkAreas, "areas"}})
        if (wants(part))
            parts.append(parts.empty() ? "" : ", ").append(name);
    if (parts.empty())
        parts = "nothing yet";
    std::string text = by_ == LinkBy::sky ? "Linked by sky: " : "Linked by cell: ";
    text += parts;
    if (by_ == LinkBy::sky && byCell)
        text += "; by cell where a map has no positions";
    return text;
}

}  // namespace pavane
