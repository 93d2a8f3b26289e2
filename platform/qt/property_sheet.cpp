#include "platform/property_sheet.h"

#include "platform/qt/Control.h"
#include "platform/resources.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace pavane
{

namespace
{

constexpr int margin = 5;  // dialog units, as those below
constexpr int buttonWidth = 50;
constexpr int buttonHeight = 14;
constexpr int buttonGap = 4;

/// Their places follow from the pages.
constexpr DlgItem sheetItems[] = {
    {ControlKind::defaultButton, IDOK, "OK", 0, 0, buttonWidth, buttonHeight, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 0, 0, buttonWidth, buttonHeight, WS_TABSTOP},
    {ControlKind::pushButton, ID_APPLY_NOW, "&Apply", 0, 0, buttonWidth, buttonHeight, WS_TABSTOP},
};
constexpr unsigned buttons[] = {IDOK, IDCANCEL, ID_APPLY_NOW};

/// To the control of a page that had the focus last, or to its first one.
void focusPage(const CWnd& page)
{
    QWidget* const widget = clientOf(&page);
    if (!widget)
        return;
    QWidget* to = widget->focusWidget();
    for (QWidget* next = widget->nextInFocusChain(); !to && next && next != widget;
         next = next->nextInFocusChain())
        if (widget->isAncestorOf(next) && next->focusPolicy() & Qt::TabFocus && next->isEnabled() &&
            !next->isHidden())
            to = next;
    const WindowPeer* const peer = peerOf(to);
    if (peer && peer->window && peer->widget == to)
        peer->window->SetFocus();
}

bool hasFocus(const CWnd* page)
{
    const CWnd* focus = CWnd::GetFocus();
    while (focus && focus != page)
        focus = focus->GetParent();
    return focus && page;
}

}  // namespace

CPropertyPage::CPropertyPage(unsigned templateId, unsigned captionId)
    : CDialog(templateId), template_(FindDialogTemplate(templateId)),
      caption_(LoadString(captionId))
{
    if (caption_.empty() && template_ && template_->title)
        caption_ = template_->title;
}

CPropertyPage::CPropertyPage(const DlgTemplate& page, const CString& caption)
    : CDialog(page), template_(&page), caption_(caption)
{
    if (caption_.empty() && page.title)
        caption_ = page.title;
}

CPropertyPage::~CPropertyPage()
{
    if (sheet_)
        sheet_->remove(*this);
}

void CPropertyPage::SetModified(int on)
{
    isModified_ = on != 0;
    if (sheet_)
        sheet_->enableApply();
}

// buttons of a page with these numbers are those of the sheet
void CPropertyPage::OnOK()
{
    if (sheet_)
        sheet_->SendMessage(WM_COMMAND, IDOK);
}

void CPropertyPage::OnCancel()
{
    if (sheet_)
        sheet_->SendMessage(WM_COMMAND, IDCANCEL);
}

struct CPropertySheet::Data {
    struct Tabs : CTabCtrl {
        explicit Tabs(CPropertySheet& sheet) : sheet_(sheet) {}
        int OnSelChanging(int next) override { return sheet_.data_->leave(sheet_, next); }
        CPropertySheet& sheet_;
    };

    CString title;
    DlgTemplate dialog{0, "", 0, 0, sheetItems, static_cast<int>(std::size(sheetItems))};
    std::vector<CPropertyPage*> pages;
    std::unique_ptr<Tabs> tabs;
    int first = 0;      ///< the page to begin with
    int isLeaving = 0;  ///< a page is being left; its message box must not leave it again
    bool takesFocus = false;
    bool growsAcross = false;
    bool growsDown = false;
    CSize least;  ///< of the client area

    bool has(int index) const { return index >= 0 && index < static_cast<int>(pages.size()); }
    CPropertyPage* page(int index) const
    {
        return has(index) ? pages[static_cast<std::size_t>(index)] : nullptr;
    }
    int mayLeave(CPropertySheet& sheet);
    int leave(CPropertySheet& sheet, int next);
    int make(int index);
    int enter(CPropertySheet& sheet, int index);
    void layOut(CPropertySheet& sheet);
    void place(CPropertySheet& sheet, CSize size);
};

/// Makes the window of a page when there is none yet.
int CPropertySheet::Data::make(int index)
{
    CPropertyPage* const made = page(index);
    if (!made)
        return 0;
    if (made->GetSafeHwnd())
        return 1;
    return made->CreateWithin(*tabs) && tabs->SetItemPage(index, made);
}

/// Asks the active page whether it may be left; what it does meanwhile leaves it no second time.
int CPropertySheet::Data::mayLeave(CPropertySheet& sheet)
{
    const HWND self = sheet.GetSafeHwnd();
    CPropertyPage* const old = sheet.GetActivePage();
    if (isLeaving)
        return 0;
    isLeaving = 1;
    const int mayGo = !old || old->OnKillActive();
    if (FromHandle(self) != &sheet)
        return 0;
    isLeaving = 0;
    return mayGo;
}

/// Leaves the active page and has the next one ready.
int CPropertySheet::Data::leave(CPropertySheet& sheet, int next)
{
    const HWND self = sheet.GetSafeHwnd();
    const bool hadFocus = hasFocus(sheet.GetActivePage());
    if (!mayLeave(sheet) || !make(next) || FromHandle(self) != &sheet)
        return 0;
    takesFocus = hadFocus;
    return 1;
}

/// Tells the page of the chosen tab; one that does not want to be shown hands on to the next.
int CPropertySheet::Data::enter(CPropertySheet& sheet, int index)
{
    const HWND self = sheet.GetSafeHwnd();
    for (std::size_t tries = 0; tries < pages.size(); ++tries) {
        CPropertyPage* const chosen = page(index);
        if (!chosen || !make(index))
            return 0;
        const bool isShown = chosen->OnSetActive() != 0;
        if (FromHandle(self) != &sheet)
            return 0;
        if (isShown) {
            tabs->SetCurSel(index);
            if (std::exchange(takesFocus, false))
                focusPage(*chosen);
            return 1;
        }
        index = (index + 1) % static_cast<int>(pages.size());
    }
    return 0;
}

/// The pages get the room that the largest needs, the buttons stand below at the right.
void CPropertySheet::Data::layOut(CPropertySheet& sheet)
{
    CRect units(0, 0, 3 * buttonWidth + 2 * buttonGap, 0);
    for (const CPropertyPage* const each : pages) {
        units.right = std::max(units.right, each->template_->cx);
        units.bottom = std::max(units.bottom, each->template_->cy);
    }
    const CRect room = sheet.MapDialogRect(units);
    const CRect gap = sheet.MapDialogRect(CRect(0, 0, margin, margin));
    const CRect button = sheet.MapDialogRect(CRect(0, 0, buttonWidth, buttonHeight));
    least = {room.Width() + 2 * gap.Width(),
             tabs->GetPageRect().top + room.Height() + button.Height() + 3 * gap.Height()};
    sheet.SetClientSize(least.cx, least.cy);
    if (growsAcross || growsDown)
        sheet.AllowResize(least.cx, least.cy, growsAcross, growsDown);
    place(sheet, least);
}

/// A page that hears of its new size may end the sheet.
void CPropertySheet::Data::place(CPropertySheet& sheet, CSize size)
{
    const HWND self = sheet.GetSafeHwnd();
    const CRect gap = sheet.MapDialogRect(CRect(0, 0, margin, margin));
    const CRect button = sheet.MapDialogRect(CRect(0, 0, buttonWidth, buttonHeight));
    const int between = sheet.MapDialogRect(CRect(0, 0, buttonGap, 0)).Width();
    const int right = size.cx - gap.Width();
    const int bottom = size.cy - gap.Height();
    int at = right - 3 * button.Width() - 2 * between;
    for (const unsigned id : buttons) {
        if (CWnd* const window = sheet.GetDlgItem(id))
            window->MoveWindow(CRect(at, bottom - button.Height(), at + button.Width(), bottom));
        at += button.Width() + between;
    }
    if (FromHandle(self) == &sheet)
        tabs->MoveWindow(
            CRect(gap.Width(), gap.Height(), right, bottom - button.Height() - gap.Height()));
}

CPropertySheet::CPropertySheet(const CString& title, CWnd* parent)
    : CPropertySheet(std::make_unique<Data>(), parent)
{
    data_->title = title;
    data_->dialog.title = data_->title.c_str();
}

CPropertySheet::CPropertySheet(std::unique_ptr<Data> data, CWnd* parent)
    : CDialog(data->dialog, parent), data_(std::move(data))
{
}

CPropertySheet::~CPropertySheet()
{
    DestroyWindow();
    for (CPropertyPage* const page : data_->pages)
        page->sheet_ = nullptr;
}

int CPropertySheet::AddPage(CPropertyPage& page)
{
    if (page.sheet_ || !page.template_ || GetSafeHwnd())
        return 0;
    page.sheet_ = this;
    data_->pages.push_back(&page);
    return 1;
}

void CPropertySheet::remove(CPropertyPage& page)
{
    const auto at = std::find(data_->pages.begin(), data_->pages.end(), &page);
    if (at == data_->pages.end())
        return;
    const auto index = static_cast<int>(at - data_->pages.begin());
    data_->pages.erase(at);
    if (data_->tabs)
        data_->tabs->DeleteItem(index);
}

int CPropertySheet::GetPageCount() const { return static_cast<int>(data_->pages.size()); }
CPropertyPage* CPropertySheet::GetPage(int index) const { return data_->page(index); }
CPropertyPage* CPropertySheet::GetActivePage() const { return data_->page(GetActiveIndex()); }

int CPropertySheet::GetActiveIndex() const
{
    return GetSafeHwnd() && data_->tabs ? data_->tabs->GetCurSel() : -1;
}

int CPropertySheet::SetActivePage(int index)
{
    if (!data_->has(index))
        return 0;
    if (!GetSafeHwnd()) {
        data_->first = index;
        return 1;
    }
    if (index == GetActiveIndex())
        return 1;
    const HWND self = GetSafeHwnd();
    if (!data_->leave(*this, index) || FromHandle(self) != this)
        return 0;
    data_->tabs->SetCurSel(index);
    return data_->enter(*this, index) && GetActiveIndex() == index;
}

void CPropertySheet::SetGrows(int across, int down)
{
    data_->growsAcross = across != 0;
    data_->growsDown = down != 0;
}

CSize CPropertySheet::GetLeastSize() const { return GetSafeHwnd() ? data_->least : CSize(); }

void CPropertySheet::OnSize(unsigned type, int cx, int cy)
{
    const HWND self = GetSafeHwnd();
    CDialog::OnSize(type, cx, cy);
    if (FromHandle(self) == this && data_->tabs && data_->least != CSize())
        data_->place(*this, {cx, cy});
}

int CPropertySheet::OnInitDialog()
{
    const HWND self = GetSafeHwnd();
    Data& data = *data_;
    data.least = {};
    data.tabs = std::make_unique<Data::Tabs>(*this);
    const CRect place = MapDialogRect(CRect(0, 0, 200, 100));
    if (!data.tabs->Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP, place, this, ID_SHEET_TABS))
        return 1;
    for (const CPropertyPage* const page : data.pages)
        data.tabs->InsertItem(data.tabs->GetItemCount(), page->caption());
    data.layOut(*this);
    enableApply();
    const int first = data.has(data.first) ? data.first : 0;
    data.tabs->SetCurSel(first);
    data.takesFocus = true;
    data.isLeaving = 0;
    if (!data.enter(*this, first))
        return 1;
    return FromHandle(self) != this;
}

void CPropertySheet::enableApply()
{
    if (CWnd* const button = GetDlgItem(ID_APPLY_NOW))
        button->EnableWindow(std::any_of(data_->pages.begin(), data_->pages.end(),
                                         [](const auto* page) { return page->isModified_ != 0; }));
}

int CPropertySheet::apply()
{
    const HWND self = GetSafeHwnd();
    if (!data_->mayLeave(*this))
        return 0;
    for (int i = 0; FromHandle(self) == this && i < GetPageCount(); ++i) {
        CPropertyPage* const page = GetPage(i);
        if (!page->GetSafeHwnd())
            continue;
        const int isTaken = page->OnApply();
        if (FromHandle(self) != this)
            return 0;
        if (GetPage(i) != page)
            continue;  // it removed itself
        if (!isTaken) {
            data_->takesFocus = true;
            data_->enter(*this, i);
            return 0;
        }
        page->isModified_ = 0;
    }
    if (FromHandle(self) != this)
        return 0;
    enableApply();
    return 1;
}

void CPropertySheet::OnOK()
{
    if (apply())
        EndDialog(IDOK);
}

void CPropertySheet::OnCancel()
{
    const HWND self = GetSafeHwnd();
    for (int i = 0; FromHandle(self) == this && i < GetPageCount(); ++i)
        if (GetPage(i)->GetSafeHwnd())
            GetPage(i)->OnReset();
    if (FromHandle(self) == this)
        EndDialog(IDCANCEL);
}

int CPropertySheet::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == ID_SHEET_TABS && code == TCN_SELCHANGE)
        return data_->enter(*this, GetActiveIndex());
    if (id == ID_APPLY_NOW && code == BN_CLICKED)
        return apply(), 1;
    return CDialog::OnCommand(id, code, control);
}

int CPropertySheet::PreTranslateMessage(const MSG& message)
{
    const bool isHeld = GetKeyState(VK_CONTROL) < 0;
    const auto key = static_cast<int>(message.wParam);
    if (message.message == WM_KEYDOWN && isHeld && data_->tabs &&
        (key == VK_TAB || key == VK_NEXT || key == VK_PRIOR)) {
        const bool goesBack = key == VK_PRIOR || (key == VK_TAB && GetKeyState(VK_SHIFT) < 0);
        data_->tabs->SelectNext(goesBack ? -1 : 1);
        return 1;
    }
    return CDialog::PreTranslateMessage(message);
}

}  // namespace pavane
