#include "pavane/axes/maps/sky/sky_grid_wish.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/MapPicture.h"
#include "tessel/sky_text.h"

#include <algorithm>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::string_view shownNames[] = {"none", "ticks", "lines"};
constexpr std::string_view labelNames[] = {"", "sexagesimal", "degrees", "offsets"};

/// Where a word stands in a list, from 0; -1 for nowhere.
template <std::size_t n>
int placeIn(const std::string_view (&list)[n], std::string_view word)
{
    const auto* const found = std::find(std::begin(list), std::end(list), word);
    return found == std::end(list) || word.empty() ? -1 : static_cast<int>(found - list);
}

}  // namespace

int readSkyGridWish(const CString& text, SkyGridWish& wish, CString& error)
{
    SkyGridWish read;
    std::string_view rest = text;
    const auto next = [&rest] {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        const std::string_view word = rest.substr(0, comma);
        rest.remove_prefix(std::min(comma + 1, rest.size()));
        return word;
    };
    const int shown = placeIn(shownNames, next());
    int hasLabels = 0;
    int isGood = shown >= 0 && !text.ends_with(',');
    while (isGood && !rest.empty()) {
        const std::string_view word = next();
        const int labels = placeIn(labelNames, word);
        if (labels > 0 && !hasLabels++)
            read.labels = static_cast<SkyLabels>(labels);
        else
            isGood = labels <= 0 && !read.hasFrame++ && readSkyFrame(word, read.frame);
    }
    if (!isGood) {
        error = "wants lines, ticks or none, and perhaps behind commas a frame (ICRS, FK5, FK4, "
                "galactic, ecliptic) and sexagesimal, degrees or offsets, not '" +
                text + "'";
        return 0;
    }
    read.shown = static_cast<SkyGridShown>(shown);
    wish = read;
    return 1;
}

CString skyGridWishText(const SkyGridWish& wish)
{
    CString text(shownNames[static_cast<std::size_t>(wish.shown)]);
    if (wish.hasFrame)
        text.append(",").append(nameOf(wish.frame));
    if (wish.labels != SkyLabels::usual)
        text.append(",").append(labelNames[static_cast<std::size_t>(wish.labels)]);
    return text;
}

ASkyGrid* addSkyGrid(MapPicture& picture, const SkyCoordinates& sky)
{
    auto* const grid = new ASkyGrid(&picture.axis(), sky, picture.content().frame);
    grid->setShown(SkyGridShown::none);
    picture.axis().setSkyGrid(grid);
    return grid;
}

void applySkyGrid(ASkyGrid& grid, const SkyGridWish& wish, const SkyCoordinates& sky)
{
    grid.setShown(wish.shown);
    grid.setFrame(wish.hasFrame ? wish.frame : sky.skyFrame());
    grid.setLabels(wish.labels);
}

}  // namespace pavane
