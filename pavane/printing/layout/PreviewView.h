#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// How a preview shows a sheet in its window: how large, and which part of it. Lengths are window
/// units; 100 per cent is the size that the sheet has on paper.
class PAVANE_API PreviewView
{
public:
    enum class Fit { none, page, width };
    static constexpr double leastPercent = 25, greatestPercent = 800;

    /// The whole sheet at first. `sheet` is its size at 100 per cent.
    void setSheet(CSize sheet);
    void setWindow(CSize window);
    /// Keeps the whole page or its width in the window, whatever size either gets.
    void setFit(Fit fit);
    Fit fit() const { return fit_; }
    /// A size in per cent, cut to 25 to 800; the point `about` of the window keeps its place on the
    /// sheet.
    void setPercent(double percent, CPoint about);
    /// The next of the steps 25, 33, 50, 67, 75, 100 ... 800, `steps` times; down below 0.
    void zoom(int steps, CPoint about);
    double percent() const { return percent_; }
    /// Non-zero when there is a larger or a smaller step.
    int canZoomIn() const { return percent_ < greatestPercent; }
    int canZoomOut() const { return percent_ > leastPercent; }

    /// Where the sheet lies in the window: in its middle where it is smaller.
    CRect sheet() const;
    /// What lies left of and above the window, and the most of it.
    CPoint scrolled() const { return scrolled_; }
    CPoint farthest() const;
    /// Non-zero when that moved the sheet.
    int scrollTo(CPoint place);
    /// Turns of the wheel, down when above 0: scrolls, or says which way to turn the page (-1, 1)
    /// when there is nothing left to scroll. The next page then begins at its top, or its bottom.
    int wheel(int notches);

private:
    CSize size() const;
    void fitAgain();

    CSize sheet_, window_;
    Fit fit_ = Fit::page;
    double percent_ = 100;
    CPoint scrolled_;
};

/// The pages that the list of a preview shows: `first` to `last`, backwards too; of more than a
/// thousand the neighbours of `current`, a thousand of them.
PAVANE_API std::vector<int> listedPages(int first, int last, int current);
/// "Page 2 of 5, 100 %".
PAVANE_API CString previewStatus(int page, int pages, double percent);

}  // namespace pavane
