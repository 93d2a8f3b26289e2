#pragma once

#include "pavane/containers/ARect.h"
#include "pavane/containers/Pile.h"
#include "platform/api.h"

#include <cstdint>

namespace pavane
{

/// Finds the items whose boxes hold a point or meet a rectangle, among very many. Boxes are in any
/// space, pixels or data values, with all four edges included; left above right or top above bottom
/// is put in order. A box with a side that is no number is found nowhere.
///
/// A grid whose cells are about as large as a usual box, and a list of the boxes that are much
/// larger than one. Time to build grows with the number of boxes, a query costs what lies there.
class PAVANE_API BoxIndex
{
public:
    BoxIndex() = default;
    BoxIndex(const BoxIndex&) = delete;
    BoxIndex& operator=(const BoxIndex&) = delete;

    /// Takes items 0..n-1 in place of the old ones. 0 without memory: no items then.
    int build(const ARect<double>* boxes, int n);
    int count() const { return static_cast<int>(items_.count()); }
    /// The box of an item, in order.
    const ARect<double>& box(int item) const { return items_.data()[item].box; }
    /// One item has another box, or there is one more behind the last. 0 without memory: no items
    /// then, to be built anew.
    int update(int item, const ARect<double>& box);
    int append(const ARect<double>& box);

    /// Calls visit(item) for every item whose box holds the point, from the greatest index to the
    /// least, until it returns non-zero; returns that item, -1 when none did.
    template <typename Visit>
    int fromLast(double x, double y, Visit&& visit) const
    {
        for (Descent at = descend(x, y); at.item() >= 0; next(at))
            if (holds(box(at.item()), x, y) && visit(at.item()))
                return at.item();
        return -1;
    }
    /// Appends all items whose boxes meet `rect` to `found`, by rising index. 0 without memory.
    int meeting(const ARect<double>& rect, Pile<int>& found) const;

private:
    static constexpr std::int32_t none = -1;
    struct Item {
        ARect<double> box;
        bool placed;
    };
    struct Link {
        std::int32_t item;
        std::int32_t next;
    };
    /// Cells of the grid, the last ones included.
    struct Block {
        int left = 0;
        int top = 0;
        int right = -1;
        int bottom = -1;
    };
    /// The lists of a cell and of the large boxes, both by falling index, walked as one.
    struct Descent {
        const Link* inCell;
        const Link* large;
        bool fromCell() const { return inCell && (!large || inCell->item > large->item); }
        int item() const { return fromCell() ? inCell->item : large ? large->item : none; }
    };

    static bool holds(const ARect<double>& box, double x, double y)
    {
        return x >= box.left && x <= box.right && y >= box.top && y <= box.bottom;
    }
    Descent descend(double x, double y) const;
    void next(Descent& at) const;
    const Link* link(std::int32_t at) const { return at == none ? nullptr : links_.data() + at; }
    int column(double x) const;
    int row(double y) const;
    Block blockOf(const ARect<double>& box) const;
    bool isLarge(const Block& block) const;
    void chooseGrid();
    int rebuild();
    int place(int item);
    void take(int item);
    int enter(std::int32_t& head, int item);
    void leave(std::int32_t& head, int item);
    int gatherByCell(const ARect<double>& rect, const Block& block, Pile<int>& found) const;
    void clear();

    Pile<Item> items_;
    Pile<Link> links_;
    Pile<std::int32_t> heads_;  // first link of each cell, row by row
    std::int32_t large_ = none;
    std::int32_t free_ = none;
    int columns_ = 0;
    int rows_ = 0;
    double left_ = 0;
    double top_ = 0;
    double cellsPerX_ = 0;
    double cellsPerY_ = 0;
    int changes_ = 0;  // since the grid was chosen
};

}  // namespace pavane
