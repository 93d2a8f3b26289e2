#pragma once

#include "pavane/printing/layout/APrnAddInfo.h"
#include "pavane/printing/layout/page_geometry.h"
#include "platform/CDC.h"

namespace pavane
{

class ABWindow;

/// The page of a context as it tells it.
PageCaps pageCaps(const CDC& dc);

/// Maps a context to a page while it lives: one unit a pixel of the printer, the origin in the
/// corner of the printable rectangle.
class MappedPage
{
public:
    MappedPage(CDC& dc, const CRect& printable);
    MappedPage(const MappedPage&) = delete;
    MappedPage& operator=(const MappedPage&) = delete;
    ~MappedPage();
    /// The printable rectangle in these units.
    const CRect& rect() const { return rect_; }

private:
    CDC& dc_;
    int saved_;
    CRect rect_;
};

/// Draws number, caption and the page of a window (null: none) into `rect`; leaves the context as
/// it was.
void drawPage(CDC& dc, int page, const CRect& rect, const APrnAddInfo& info, ABWindow* window);

}  // namespace pavane
