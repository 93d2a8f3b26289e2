#include "pavane/printing/APrnPreviewDlg.h"

#include "pavane/printing/layout/page_range.h"
#include "pavane/printing/print_dialogs.h"
#include "pavane/printing/range_controls.h"
#include "pavane/resources/print_messages.h"
#include "platform/clipboard.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace pavane
{

namespace
{

constexpr const char* section = "PrintPreview";
constexpr unsigned typedTimer = 1;
/// A page that was typed is shown when no more digits come for so long.
constexpr unsigned typedTime = 600;
constexpr int clipboardDpi = 300;

std::int64_t pagesOf(const CPrintInfo& info)
{
    const std::int64_t way = std::int64_t{info.to} - info.from;
    return (way < 0 ? -way : way) + 1;
}

}  // namespace

APrnPreviewDlg::APrnPreviewDlg(APrintOut& out, const CPrintInfo& info, const CDC& printer,
                               CWnd* owner)
    : AResizeDialog(previewTemplate, owner), info_(info), page_(out, info_, printer)
{
    SetResizeItems(previewResize);
    SetPlacementSection(section);
    info_.currentPage = info_.from;
    page_.onTurn = [this](APrnPreviewWnd::Turn to) { turn(to); };
    page_.onView = [this] { showStatus(); };
    page_.onClose = [this] { close(); };
}

CComboBox* APrnPreviewDlg::pageList() const
{
    return dynamic_cast<CComboBox*>(GetDlgItem(IDC_PREVIEW_PAGE));
}

int APrnPreviewDlg::OnInitDialog()
{
    (void)AResizeDialog::OnInitDialog();
    if (!page_.UpDateControl("", this, IDC_PREVIEW_WINDOW,
                             WS_TABSTOP | WS_HSCROLL | WS_VSCROLL | WS_BORDER))
        return 1;
    SetDlgItemText(IDC_PREVIEW_TOTAL, std::to_string(pagesOf(info_)));
    listPages();
    showPage(info_.from);
    page_.SetFocus();
    return 0;
}

void APrnPreviewDlg::close() { EndDialog(IDOK); }

void APrnPreviewDlg::OnOK()
{
    // Enter behind a number that was typed means that page
    if (!takeTypedPage())
        close();
}

void APrnPreviewDlg::OnCancel() { close(); }

void APrnPreviewDlg::listPages()
{
    CComboBox* const list = pageList();
    std::vector<int> pages = listedPages(info_.from, info_.to, info_.currentPage);
    if (!list || (pages == listed_ && list->GetCount() > 0))
        return;
    listed_ = std::move(pages);
    list->ResetContent();
    for (const int page : listed_)
        (void)list->AddString(std::to_string(page));
}

void APrnPreviewDlg::showPage(int page)
{
    hasTyped_ = 0;
    (void)KillTimer(typedTimer);
    const auto [least, most] = std::minmax(info_.from, info_.to);
    page_.setPage(std::clamp(page, least, most));
    // a long list is made anew only when the page is not in it any more
    auto at = std::find(listed_.begin(), listed_.end(), info_.currentPage);
    if (at == listed_.end()) {
        listPages();
        at = std::find(listed_.begin(), listed_.end(), info_.currentPage);
    }
    if (CComboBox* const list = pageList())
        (void)list->SetCurSel(static_cast<int>(at - listed_.begin()));
    showStatus();
}

void APrnPreviewDlg::turn(APrnPreviewWnd::Turn to)
{
    const int step = info_.to >= info_.from ? 1 : -1;
    const auto moved = [&](int by) {
        const std::int64_t page = std::int64_t{info_.currentPage} + by;
        const auto [least, most] = std::minmax(info_.from, info_.to);
        return static_cast<int>(
            std::clamp<std::int64_t>(page, std::int64_t{least}, std::int64_t{most}));
    };
    switch (to) {
    case APrnPreviewWnd::Turn::next:
        return showPage(moved(step));
    case APrnPreviewWnd::Turn::previous:
        return showPage(moved(-step));
    case APrnPreviewWnd::Turn::first:
        return showPage(info_.from);
    case APrnPreviewWnd::Turn::last:
        return showPage(info_.to);
    }
}

/// Shows the page whose number stands in the list's line; 0 when nothing was typed.
int APrnPreviewDlg::takeTypedPage()
{
    if (!hasTyped_)
        return 0;
    const int page = pageEditValue(GetDlgItemText(IDC_PREVIEW_PAGE));
    showPage(page > 0 ? page : info_.currentPage);
    return 1;
}

void APrnPreviewDlg::showStatus(const CString& text)
{
    if (!GetSafeHwnd())
        return;
    CString status = previewStatus(info_.currentPage, info_.maxPage, page_.view().percent());
    if (const int percent = page_.printPercent(); percent < 100)
        status += shrunkTo + std::to_string(percent) + " %";
    SetDlgItemText(IDC_PREVIEW_STATUS, text.empty() ? status : status + "   " + text);
    enableItem(*this, IDC_PREVIEW_ZOOM_IN, page_.view().canZoomIn());
    enableItem(*this, IDC_PREVIEW_ZOOM_OUT, page_.view().canZoomOut());
}

void APrnPreviewDlg::copyPage()
{
    BeginWaitCursor();
    CBitmap bitmap;
    const int dpi = page_.renderPage(bitmap, clipboardDpi);
    const int isCopied = dpi > 0 && SetClipboardBitmap(bitmap);
    EndWaitCursor();
    if (!isCopied)
        showStatus(copyRefused);
    else
        showStatus(copiedAt + std::to_string(dpi) + dotsPerInch +
                   (dpi < clipboardDpi ? copyTooLarge : ""));
}

void APrnPreviewDlg::OnTimer(unsigned id)
{
    AResizeDialog::OnTimer(id);
    if (id == typedTimer)
        (void)takeTypedPage();
}

int APrnPreviewDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    PreviewView& view = page_.view();
    const auto fit = [&](PreviewView::Fit how) {
        view.setFit(how);
        page_.viewChanged();
        return 1;
    };
    const auto zoom = [&](int steps) {
        view.zoom(steps, page_.middle());
        page_.viewChanged();
        return 1;
    };
    switch (id) {
    case IDC_PREVIEW_PAGE: {
        const CComboBox* const list = pageList();
        const int line = list ? list->GetCurSel() : -1;
        if (code == CBN_SELCHANGE && line >= 0 && line < static_cast<int>(listed_.size()))
            showPage(listed_[static_cast<std::size_t>(line)]);
        if (code == CBN_EDITCHANGE) {
            hasTyped_ = 1;
            (void)SetTimer(typedTimer, typedTime);
        }
        if (code == CBN_KILLFOCUS)
            (void)takeTypedPage();
        return 1;
    }
    case IDC_PREVIEW_ZOOM_IN:
        return zoom(1);
    case IDC_PREVIEW_ZOOM_OUT:
        return zoom(-1);
    case IDC_PREVIEW_WHOLE:
        return fit(PreviewView::Fit::page);
    case IDC_PREVIEW_WIDTH:
        return fit(PreviewView::Fit::width);
    case IDC_PREVIEW_COPY:
        copyPage();
        return 1;
    default:
        return AResizeDialog::OnCommand(id, code, control);
    }
}

int APrnPreviewDlg::PreTranslateMessage(const MSG& message)
{
    // the keys of the preview work beside it too, but for those that the list and buttons have
    const CWnd* const focus = GetFocus();
    const bool isBeside = focus && focus != &page_ && focus != pageList();
    // else the list would choose that line first, and Enter close the preview behind it
    if (message.message == WM_KEYDOWN && message.wParam == WPARAM{VK_RETURN} &&
        focus == pageList() && takeTypedPage())
        return 1;
    if (message.message == WM_KEYDOWN && isBeside) {
        const auto key = static_cast<int>(message.wParam);
        for (const int known :
             {VK_PRIOR, VK_NEXT, VK_HOME, VK_END, VK_ADD, VK_SUBTRACT, VK_OEM_PLUS, VK_OEM_MINUS})
            if (key == known)
                return page_.useKey(static_cast<unsigned>(key), 0);
    }
    return AResizeDialog::PreTranslateMessage(message);
}

}  // namespace pavane
