#pragma once

#include "pavane/windows/AResizeSheet.h"

namespace pavane
{

/// Shows a sheet with one page. `Page` has GetParameters; non-zero when the user took a choice, by
/// OK or "Apply", which `record` then is.
template <typename Page, typename Record, typename... Arguments>
int askPage(CWnd* parent, const char* title, const char* placement, Record& record,
            Arguments&&... arguments)
{
    struct AskedPage : Page {
        using Page::Page;
        int OnApply() override
        {
            if (!Page::OnApply())
                return 0;
            taken = Page::GetParameters();
            return isTaken = 1;
        }
        Record taken;
        int isTaken = 0;
    } page(std::forward<Arguments>(arguments)...);
    page.SetParameters(record);
    AResizeSheet sheet(title, parent);
    sheet.SetPlacementSection(placement);
    sheet.AddPage(page);
    (void)sheet.DoModal();
    if (page.isTaken)
        record = page.taken;
    return page.isTaken;
}

}  // namespace pavane
