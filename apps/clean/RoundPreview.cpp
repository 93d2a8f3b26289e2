#include "apps/clean/RoundPreview.h"

#include "apps/view/status_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

/// Cells that are looked at before anything else is heard.
constexpr std::int64_t cellsOfStep = 200000;
constexpr int digits = 3;
/// From so many on areas of the beam are told as whole ones.
constexpr double wholeBeams = 100;
constexpr double masOfArcsecond = 1000;

}  // namespace

double cellsOfBeam(const MapBeam& beam, double cell)
{
    if (!beam.isSet() || !(cell > 0))
        return 0;
    return std::numbers::pi / (4 * std::numbers::ln2) * (beam.major * masOfArcsecond / cell) *
           (beam.minor * masOfArcsecond / cell);
}

void RoundPreview::begin(ABitMatrix mask, const NextRound& next)
{
    mask_ = std::move(mask);
    next_ = next;
    row_ = 0;
    isRunning_ = 1;
    sums_ = {};
}

int RoundPreview::step(const AMatrix<float>& residual)
{
    const int isWhole = mask_.rows() == 0;
    if (!isRunning_ ||
        (!isWhole && (mask_.rows() != residual.rows() || mask_.columns() != residual.columns()))) {
        isRunning_ = 0;
        return 0;
    }
    for (std::int64_t seen = 0; row_ < residual.rows() && seen < cellsOfStep; ++row_) {
        sums_.add(residual.row(row_), row_, residual.columns(), mask_);
        seen += residual.columns();
    }
    if (row_ < residual.rows())
        return 1;
    end();
    return 0;
}

void RoundPreview::end()
{
    isRunning_ = 0;
    next_.peak = sums_.peakInside();
    if (next_.isWhole)
        return;  // the flux is in it: no noise
    next_.noiseInside = sums_.rms(1);
    next_.noiseOutside = sums_.rms(0);
}

std::string nextRoundText(const NextRound& next)
{
    std::string text = "Next round: ";
    if (next.isWhole)
        text += "no area, so the whole map is cleaned";
    else
        text += std::to_string(next.areas) + (next.areas == 1 ? " area" : " areas");
    if (next.cells == 0)
        return text + " without a cell of the map";
    text += ", " + groupedText(next.cells) + (next.cells == 1 ? " cell" : " cells");
    if (next.beams > 0)
        text += ", " +
                (next.beams < wholeBeams ? valToStr(next.beams, digits)
                                         : groupedText(std::llround(next.beams))) +
                " beam areas";
    if (next.peak.x >= 0)
        text += std::string(";   residual's peak ") + (next.isWhole ? "" : "inside ") +
                prefixedText(next.peak.value, "Jy", digits) + " at " + std::to_string(next.peak.x) +
                ", " + std::to_string(next.peak.y);
    if (std::isfinite(next.noiseOutside))
        text += ";   noise out " + prefixedText(next.noiseOutside, "Jy", digits);
    if (std::isfinite(next.noiseInside))
        text += ", in " + prefixedText(next.noiseInside, "Jy", digits);
    return text;
}

}  // namespace pavane
