#include "pavane/windows/AWindowSheet.h"

#include "pavane/axes/axis_fonts.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/printing/layout/caption_format.h"
#include "pavane/printing/layout/page_range.h"
#include "pavane/printing/layout/page_texts.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace pavane
{

namespace
{

constexpr int mostPanels = 100;  // in a row, and in a column
// pixels of 96 per inch
constexpr int gapOfPanels = 10;
constexpr int tallestCaption = 14;
constexpr int lowestCaption = 7;
/// Captions are this part of the width of their panel high.
constexpr int captionPart = 24;

constexpr int printerCaps[] = {LOGPIXELSX, HORZRES, VERTRES};

class Ruler : public TextRuler
{
public:
    explicit Ruler(CDC& dc) : dc_(dc) {}
    int widthOf(std::string_view text) override { return dc_.GetTextExtent(CString(text)).cx; }
    int lineHeight() override { return dc_.GetTextExtent("M").cy; }

private:
    CDC& dc_;
};

/// The pages of a window in a panel; the context is clipped to its size, so that the window can
/// tell its room.
int pagesIn(CDC& dc, ABWindow& window, CSize panel)
{
    const int saved = dc.SaveDC();
    dc.SelectClipRgn(nullptr);
    dc.IntersectClipRect({0, 0, panel.cx, panel.cy});
    const int pages = window.GetPages(dc);
    dc.RestoreDC(saved);
    return std::max(pages, 1);
}

}  // namespace

AWindowSheet::AWindowSheet() { SetFlag(windowBuffered, 1); }

const char* AWindowSheet::GetWndClassName() { return "AWindowSheet"; }

int AWindowSheet::AddWindow(ABWindow* window, const CString& caption)
{
    if (!window || window == this)
        return 0;
    items_.push_back({window, LifeWatch(window->life()), caption, 0});
    panel_ = {};
    Invalidate();
    return 1;
}

int AWindowSheet::AddWindow(ABWindow* window)
{
    return window ? AddWindow(window, window->GetSubscript()) : 0;
}

int AWindowSheet::RemoveWindow(const ABWindow* window)
{
    const auto count = std::erase_if(
        items_, [&](const Item& item) { return item.life.alive() && item.window == window; });
    panel_ = {};
    Invalidate();
    return count > 0;
}

void AWindowSheet::RemoveAllWindows()
{
    items_.clear();
    panel_ = {};
    Invalidate();
}

void AWindowSheet::forgetDead()
{
    if (std::erase_if(items_, [](const Item& item) { return !item.life.alive(); }) > 0)
        panel_ = {};
}

int AWindowSheet::GetWindowCount() const
{
    return static_cast<int>(std::count_if(items_.begin(), items_.end(),
                                          [](const Item& item) { return item.life.alive(); }));
}

void AWindowSheet::SetGrid(int rows, int columns)
{
    rows_ = std::clamp(rows, 1, mostPanels);
    columns_ = std::clamp(columns, 1, mostPanels);
    panel_ = {};
    Invalidate();
}

void AWindowSheet::SetShownPage(int page)
{
    shownPage_ = std::max(page, 1);
    Invalidate();
}

CRect AWindowSheet::panelRect(const CDC& dc, const CRect& rect, int index) const
{
    const int gap = unitsOf(dc, gapOfPanels);
    const auto edge = [gap](int first, int length, int count, int i) {
        return first + static_cast<int>((std::int64_t{length} + gap) * i / count);
    };
    const int row = index / columns_;
    const int column = index % columns_;
    return {edge(rect.left, rect.Width(), columns_, column),
            edge(rect.top, rect.Height(), rows_, row),
            edge(rect.left, rect.Width(), columns_, column + 1) - gap,
            edge(rect.top, rect.Height(), rows_, row + 1) - gap};
}

/// Asks all windows for their pages in a panel of this size. 0 when this sheet went meanwhile.
int AWindowSheet::countPanels(CDC& dc, CSize panel)
{
    forgetDead();
    panel_ = panel;
    for (std::size_t i = 0; i < std::size(printerCaps); ++i)
        countedFor_[i] = dc.GetDeviceCaps(printerCaps[i]);
    const LifeWatch watch(life());
    std::int64_t end = 0;
    for (std::size_t i = 0; i < items_.size(); ++i) {  // windows may change the list
        if (items_[i].life.alive())
            end += pagesIn(dc, *items_[i].window, panel);
        if (!watch.alive())
            return 0;
        if (i < items_.size())
            items_[i].end = end;
    }
    return 1;
}

int AWindowSheet::GetPages(CDC& dc)
{
    if (busy_)
        return 1;
    CRect room;
    (void)dc.GetClipBox(room);
    busy_ = 1;
    if (!countPanels(dc, panelRect(dc, room, 0).Size()))
        return 1;
    busy_ = 0;
    const std::int64_t panels = items_.empty() ? 0 : items_.back().end;
    const std::int64_t onPage = std::int64_t{rows_} * columns_;
    const std::int64_t pages = std::max<std::int64_t>((panels + onPage - 1) / onPage, 1);
    return static_cast<int>(std::min<std::int64_t>(pages, std::numeric_limits<int>::max()));
}

void AWindowSheet::PrintWindow(CDC& dc, CRect& rect, int page)
{
    if (busy_ || page < 1)
        return;
    bool known = panel_.cx > 0;
    for (std::size_t i = 0; i < std::size(printerCaps); ++i)
        known = known && countedFor_[i] == dc.GetDeviceCaps(printerCaps[i]);
    busy_ = 1;
    if (!known && !countPanels(dc, panelRect(dc, rect, 0).Size()))
        return;
    if (drawPanels(dc, rect, page))
        busy_ = 0;
}

/// 0 when this sheet went meanwhile.
int AWindowSheet::drawPanels(CDC& dc, const CRect& rect, int page)
{
    const LifeWatch watch(life());
    const int onPage = rows_ * columns_;
    const std::int64_t first = (std::int64_t{page} - 1) * onPage;
    for (int i = 0; i < onPage; ++i) {
        const auto found =
            std::upper_bound(items_.begin(), items_.end(), first + i,
                             [](std::int64_t panel, const Item& item) { return panel < item.end; });
        if (found == items_.end())
            break;
        const std::int64_t before = found == items_.begin() ? 0 : found[-1].end;
        if (!found->life.alive())
            continue;
        const Item item = *found;  // drawing may change the list
        drawPanel(dc, panelRect(dc, rect, i), item, static_cast<int>(first + i - before) + 1);
        if (!watch.alive())
            return 0;
    }
    return 1;
}

void AWindowSheet::drawPanel(CDC& dc, const CRect& panel, const Item& item, int page)
{
    const FigureUnits units(dc);
    const int height = units.units(
        std::clamp(units.pixels(panel.Width()) / captionPart, lowestCaption, tallestCaption));
    CFont font;
    if (panel.IsRectEmpty() || !CreateFont(font, height, 1, 0.0, "Arial Bold"))
        return;
    const LifeWatch watch(life());
    const CSize counted = panel_;
    const int saved = dc.SaveDC();
    PageTexts texts;
    {
        const SelectedObject<CFont> selected(dc, font);
        Ruler ruler(dc);
        APrnAddInfo info;
        info.subscriptFormat = item.caption;
        texts = layOutPage(panel, height, info, page, ruler);
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(RGB(0, 0, 0));
        if (!texts.caption.IsRectEmpty())
            (void)dc.DrawText(texts.captionText, texts.caption, texts.captionFormat);
    }
    if (!texts.picture.IsRectEmpty()) {
        // what the window finds out for a page of its own is not that of a panel
        (void)pagesIn(dc, *item.window, counted);
        if (watch.alive() && item.life.alive()) {
            dc.IntersectClipRect(texts.picture);
            CRect picture = texts.picture;
            item.window->PrintWindow(dc, picture, page);
        }
    }
    dc.RestoreDC(saved);
}

void AWindowSheet::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    dc.FillSolidRect(client, RGB(255, 255, 255));
    CRect sheet = client;
    const int margin = std::min(gapOfPanels, std::min(client.Width(), client.Height()) / 16);
    sheet.DeflateRect(margin, margin);
    if (sheet.IsRectEmpty())
        return;
    const LifeWatch watch(life());
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(sheet);
    const int pages = GetPages(dc);
    if (watch.alive()) {
        shownPages_ = pages;
        shownPage_ = std::min(shownPage_, pages);
        PrintWindow(dc, sheet, shownPage_);
    }
    dc.RestoreDC(saved);
}

void AWindowSheet::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const int before = shownPage_;
    switch (static_cast<int>(key)) {
    case VK_NEXT:
        shownPage_ = std::min(shownPage_ + 1, shownPages_);
        break;
    case VK_PRIOR:
        shownPage_ = std::max(shownPage_ - 1, 1);
        break;
    case VK_HOME:
        shownPage_ = 1;
        break;
    case VK_END:
        shownPage_ = shownPages_;
        break;
    default:
        return ABWindow::OnKeyDown(key, repeat, flags);
    }
    if (shownPage_ != before)
        Invalidate();
}

int AWindowSheet::OnMouseWheel(unsigned, int delta, CPoint)
{
    SetShownPage(std::clamp(shownPage_ + (delta < 0 ? 1 : -1), 1, shownPages_));
    return 1;
}

}  // namespace pavane
