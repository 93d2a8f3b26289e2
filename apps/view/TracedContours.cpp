#include "apps/view/TracedContours.h"

#include "apps/view/long_work.h"
#include "pavane/axes/maps/MapContours.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr const char* givenUpText = "Tracing the contours was given up";

}  // namespace

void TracedContours::trace(CWnd* owner, const MapContent& content, const LevelChoice& choice)
{
    state_ = State::none;
    if (content.map.cells.cells() < leastCells || content.range.isEmpty())
        return;
    const AFloatMatrixAccess cells(content.map.cells);
    const std::vector<double> values =
        levelValues(choice, content.range.greatest, content.noise.sigma);
    if (values.empty())
        return;
    levels_ = values.size();
    int isTraced = 0;
    const int done = doLongWork(owner, "Tracing contours", [&](const ProgressFunction& tell) {
        isTraced = lines_.trace(cells, values, bestSimdPath(), tell);
        return isTraced;
    });
    if (isTraced)
        state_ = State::traced;
    else if (!done)
        state_ = State::givenUp;
}

void TracedContours::give(MapContours& contours)
{
    if (state_ == State::traced)
        contours.setLines(std::move(lines_), levels_);
    else if (state_ == State::givenUp)
        contours.setLines({}, levels_, givenUpText);
    state_ = State::none;
}

}  // namespace pavane
