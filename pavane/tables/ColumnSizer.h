#pragma once

#include "pavane/tables/ATableWnd.h"

#include <optional>

namespace pavane
{

/// Changes of the widths of columns by the user, and their keeping.
class ATableWnd::Sizer
{
public:
    explicit Sizer(ATableWnd& table) : table_(table) {}
    /// The edge under a point that can be dragged; -1 for none.
    int edgeAt(CPoint point) const;
    /// A press of the left button there begins to drag it; 0 when there is none.
    int press(CPoint point);
    void move(CPoint point);
    /// The button is let go, or the capture is lost.
    void end();
    /// Drops the drag; 0 when there is none.
    int cancel();
    bool dragging() const { return before_.has_value(); }
    /// The columns were replaced: a drag ends, and kept widths are to be applied again.
    void columnsChanged();
    /// Gives columns the widths that the profile keeps; when they have just been made.
    void applyKept();
    void set(int column, int width);
    void fit(int column);
    void askWidth(int column);

private:
    void change(int column, int width);
    void keep(int column);
    std::int64_t neededBy(int column);

    ATableWnd& table_;
    std::optional<TableColumns> before_;  ///< the columns as they were before the drag
    TableCell first_;                     ///< what was shown first then
    int column_ = 0;
    int startX_ = 0;
    int startWidth_ = 0;
    int keptApplied_ = 0;
};

}  // namespace pavane
