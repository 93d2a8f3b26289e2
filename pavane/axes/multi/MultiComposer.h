#pragma once

#include "pavane/axes/label_spans.h"
#include "pavane/axes/multi/MultiLayout.h"

#include <array>
#include <map>
#include <vector>

namespace pavane
{

class CFont;

/// Finds where panels, axes and plots of several scales stand, in pixels.
class MultiComposer
{
public:
    MultiComposer(CDC& dc, const CRect& rect, const MultiWish& wish, MultiLayout& layout)
        : dc_(dc), wish_(wish), out_(layout), h_(wish.fHeight),
          columns_(static_cast<std::size_t>(wish.columns))
    {
        out_ = {};
        out_.picture = rect;
    }

    /// 0 when no plot has room.
    int compose();

private:
    /// The axes of one side and place of a column: their labels end in one line.
    struct Slot {
        std::vector<std::size_t> axes;
        int width = 0;  ///< of the widest label
        int room = 0;
    };
    struct Column {
        std::vector<std::size_t> panels;
        std::array<std::vector<Slot>, 2> slots;  ///< left and right
        std::array<int, 2> margin{};
    };
    struct Content {
        std::vector<int> scales;
        double weight = 0;
    };
    void compose(const CRect& rect, const CFont& font);

    const AYScale& spec(int scale) const
    {
        return wish_.scales[static_cast<std::size_t>(scale)].spec;
    }

    void placeHeader();
    void gatherPanels();
    double panelWeight(long long number) const;
    /// Rows of a column that the last panel leaves free keep the room that they have on a full one.
    double rowWeight(long long number, int row) const;
    void stackPanels();
    void stackColumn(int column, long long first, int rows, long long end);
    /// What captions take over each row of panels.
    void findCaptionRooms(long long begin, long long end, int rows);
    /// The power of ten that all scales of a name with a prefix share: that of the greatest.
    void choosePowers();
    /// Ticks whose labels do not touch in a plot of that height.
    TickSet fittingTicks(const AYScale& scale, int height) const;
    /// For every panel of a column the scale in each place of each side.
    static void shareSides(const MultiWish& wish, const MultiLayout::Panel& panel,
                           std::array<std::vector<int>, 2>& sides);
    void hangAxes();
    /// False when the column has nothing there, or no room for it.
    bool hangSlot(Column& column, const std::vector<std::array<std::vector<int>, 2>>& sides,
                  std::size_t side, std::size_t place, int& rooms);
    TickSet xTicks(int intervals) const;
    /// What is left of the picture for each plot.
    double plotWidth(double leftLabels, double rightLabels) const;
    double leftMargin(const Column& column, double labels) const;
    double rightMargin(const Column& column, double labels) const;
    /// X ticks whose labels do not touch, and the width of the plots that has all of them inside.
    void chooseX();
    /// Narrows the plots until the outermost labels fit beside them.
    void fitPlots(const std::vector<double>& fractions, LabelSpans& spans);
    void placeColumns();
    void placeAxes();
    /// Where a title does not fit its panel and all of the column are the same, one stands for all.
    void shareTitles();
    void shareTitle(const Slot& slot);

    CDC& dc_;
    const MultiWish& wish_;
    MultiLayout& out_;
    int h_;
    std::vector<Column> columns_;
    std::map<int, Content> contents_;  ///< by panel, of the scales that are shown
    bool isXTitled_ = false;
    std::map<CString, int> powers_;  ///< by name, where several scales have it
    std::vector<int> captionRooms_;  ///< by row
    int top_ = 0, bottom_ = 0;
    double xLeft_ = 0, xRight_ = 0;  ///< what the outermost x labels need beside the plots
};

}  // namespace pavane
