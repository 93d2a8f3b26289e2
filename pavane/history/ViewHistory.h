#pragma once

#include "platform/api.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace pavane
{

/// What makes up a view of a plot, apart from the data.
enum class ViewPart : std::uint8_t {
    range,   ///< x and y pairs of the axis
    scales,  ///< ranges of further Y scales
    turn,    ///< how a box is seen
    plane,   ///< of a cube
    colours  ///< of a map, and what else its display has
};
inline constexpr std::size_t viewParts = 5;

/// A part as numbers that its owner understands; empty for a part that a window does not have.
using ViewValues = std::vector<double>;
/// What a window shows, by ViewPart.
using View = std::array<ViewValues, viewParts>;

/// The views that a user came through, back and forward; apart from the undo of edits. A plain
/// value that knows nothing of windows. A step holds the parts that it changed and no others, so
/// that a part which its owner changes without a step stays as it is when older steps are walked.
///
/// Steps of a zoom history, which keeps ranges of its own, are marked here; whoever keeps both
/// tells how many that history holds, and walks it beside this one as `zooms` changes.
class PAVANE_API ViewHistory
{
public:
    /// Beyond so many steps the oldest go.
    static constexpr std::size_t mostSteps = 4096;

    /// A step from one view to the other; what could be gone forward to is forgotten. 0, and
    /// nothing happens, when they are equal. A part that is empty in either is left out.
    int record(const View& before, const View& after, int isZoom = 0);
    /// The same in two calls, which nest: what the outermost ones enclose is one step. `shown` is
    /// looked at by these alone. Non-zero when a step came of it; an `end` too many does nothing.
    void begin(const View& shown);
    int end(const View& shown, int isZoom = 0);
    /// Between `begin` and the outermost `end`.
    int isOpen() const { return depth_ > 0; }
    int isOutermost() const { return depth_ == 1; }
    /// What the outermost `begin` was given; of use while open.
    const View& opened() const { return opened_; }

    int canGoBack() const { return position_ > 0; }
    int canGoForward() const { return position_ < steps_.size(); }
    /// `view` is what is shown, and becomes what was shown before the last step; steps without
    /// effect are passed. 0, with `view` untouched, at the end and in an open step.
    int back(View& view) { return !isOpen() && walk(view, 0); }
    int forward(View& view) { return !isOpen() && walk(view, 1); }
    /// Steps that are held, those to go forward to included.
    std::size_t steps() const { return steps_.size(); }
    /// Forgets all steps, an open one too: its `end` does nothing.
    void clear();
    /// Ranges of before mean nothing any more: the parts range and scales leave all steps, the zoom
    /// history is empty.
    void forgetRanges();

    /// The numbers 2 `pair` and 2 `pair` + 1 of a part: where a step has those of `from` it has
    /// those of `to` from now on. What showed all of the data shows all when there are more.
    void replacePair(ViewPart part, std::size_t pair, const std::array<double, 2>& from,
                     const std::array<double, 2>& to);

    // The zoom history beside this one
    /// Its steps, as far as this one knows.
    int zooms() const { return zooms_; }
    /// It holds so many. Those that were given up there go here too, with all that was done to
    /// ranges since; ones that it has more were no steps of this history.
    void setZooms(int count);
    /// Its last step was taken back, from the view `shown`. If it was the last here too it can be
    /// gone forward to.
    void zoomTakenBack(const View& shown);

private:
    struct Part {
        ViewPart part;
        ViewValues other;  ///< what is shown on the other side of the step
    };
    struct Step {
        std::vector<Part> parts;
        int isZoom = 0;
    };
    int walk(View& view, int forward);
    void forgetLastZoom();
    void dropRanges(std::size_t from, std::size_t to);

    std::vector<Step> steps_;
    std::size_t position_ = 0;  ///< steps before it lie behind the user
    int zooms_ = 0;
    View opened_;
    int depth_ = 0;
};

/// Equal numbers, where not-a-number equals itself.
PAVANE_API int sameValues(const ViewValues& a, const ViewValues& b);

}  // namespace pavane
