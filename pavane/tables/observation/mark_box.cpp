#include "pavane/tables/observation/mark_box.h"

#include "platform/CDC.h"

#include <algorithm>
#include <iterator>

namespace pavane
{

namespace
{

constexpr int leastSize = 7;

/// Width of lines that go with the height of what they are drawn in.
int lineWidth(int height) { return std::max(1, height / 13); }

}  // namespace

CRect markBox(const CRect& cell, int inMiddle)
{
    const int height = cell.Height();
    const int size = std::min(std::max(leastSize, height * 2 / 3), std::max(height - 2, 1));
    const int left = inMiddle ? cell.left + (cell.Width() - size) / 2 : cell.left + height / 5;
    const int top = cell.top + (height - size) / 2;
    return {left, top, left + size, top + size};
}

void drawMarkBox(CDC& dc, const CRect& box, int marked, COLORREF color)
{
    const int width = lineWidth(box.Height());
    dc.FillSolidRect({box.left, box.top, box.right, box.top + width}, color);
    dc.FillSolidRect({box.left, box.bottom - width, box.right, box.bottom}, color);
    dc.FillSolidRect({box.left, box.top, box.left + width, box.bottom}, color);
    dc.FillSolidRect({box.right - width, box.top, box.right, box.bottom}, color);
    if (!marked)
        return;
    // the tick, in parts of the box
    static constexpr double across[] = {0.22, 0.42, 0.80};
    static constexpr double down[] = {0.52, 0.74, 0.26};
    CPointF points[std::size(across)];
    for (std::size_t i = 0; i < std::size(across); ++i)
        points[i] = {box.left + across[i] * (box.Width() - 1),
                     box.top + down[i] * (box.Height() - 1)};
    CPen pen(PS_SOLID, 2 * width, color);
    const int saved = dc.SaveDC();
    dc.SelectObject(&pen);
    (void)dc.SetSmooth(1);
    (void)dc.PolylineF(points, static_cast<int>(std::size(points)));
    dc.RestoreDC(saved);
}

void drawMarkBars(CDC& dc, const CRect& cell, COLORREF color)
{
    const int width = 2 * lineWidth(cell.Height());
    dc.FillSolidRect({cell.left, cell.top, cell.left + width, cell.bottom + 1}, color);
    dc.FillSolidRect({cell.right - width, cell.top, cell.right, cell.bottom + 1}, color);
}

}  // namespace pavane
