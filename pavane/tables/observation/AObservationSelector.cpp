#include "pavane/tables/observation/AObservationSelector.h"

#include "pavane/resources/observation_texts.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"
#include "platform/system_colors.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr unsigned tableId = 1, countId = 2, stripId = 3;
constexpr int edge = 6;
constexpr int buttonWidth = 84, buttonHeight = 26, textHeight = 20;
constexpr int stripHeight = buttonHeight + 2 * edge;

struct MarkButton {
    unsigned id;
    const char *text, *tip;
};
constexpr MarkButton markButtons[] = {
    {ID_MARK_ALL, markAllText, markAllTip},
    {ID_MARK_NONE, markNoneText, markNoneTip},
    {ID_MARK_INVERT, markInvertText, markInvertTip},
};

}  // namespace

class AObservationSelector::Button : public CButton
{
public:
    explicit Button(const char* tip) : tip_(tip) {}
    CString OnToolTip(CPoint) override { return tip_; }

private:
    const char* tip_;
};

AObservationSelector::AObservationSelector(UvTable table) : table_(table, MarkItems::rows)
{
    SetFlag(windowNoWaitCursor, 1);
}

AObservationSelector::~AObservationSelector() { (void)DestroyWindow(); }

const char* AObservationSelector::GetWndClassName() { return "AObservationSelector"; }

int AObservationSelector::PreCreateWindow(CREATESTRUCT& cs)
{
    if (cs.title.empty())
        cs.title = CString(markTitle) + uvTableLook(table_.table()).name;
    return ABWindow::PreCreateWindow(cs);
}

int AObservationSelector::OnCreate(CREATESTRUCT& cs)
{
    if (ABWindow::OnCreate(cs) != 0)
        return -1;
    const CRect none(0, 0, 10, 10);
    int made = table_.Create("", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL,
                             none, this, tableId);
    made &= strip_.Create("", WS_CHILD | WS_VISIBLE, none, this, stripId);
    for (const MarkButton& button : markButtons) {
        buttons_.push_back(std::make_unique<Button>(button.tip));
        made &= buttons_.back()->Create(button.text, CButton::Kind::push,
                                        WS_CHILD | WS_VISIBLE | WS_TABSTOP, none, this, button.id);
    }
    made &= count_.Create("", WS_CHILD | WS_VISIBLE | SS_ENDELLIPSIS, none, this, countId);
    layOut();
    showCount();
    return made ? 0 : -1;
}

void AObservationSelector::layOut()
{
    CRect client;
    GetClientRect(client);
    const int top = std::max(client.Height() - stripHeight, 0);
    table_.MoveWindow({0, 0, client.right, top});
    strip_.MoveWindow({0, top, client.right, client.bottom});
    int left = edge;
    for (const auto& button : buttons_) {
        button->MoveWindow({left, top + edge, left + buttonWidth, top + edge + buttonHeight});
        left += buttonWidth + edge;
    }
    const int line = top + (stripHeight - textHeight) / 2;
    count_.MoveWindow({left, line, std::max(client.right - edge, left), line + textHeight});
}

void AObservationSelector::DrawWindow(CDC& dc, CRect&, CRect& update)
{
    dc.FillSolidRect(update, GetSysColor(COLOR_BTNFACE));
}

CString AObservationSelector::CountText() const
{
    const CString state = table_.StateText();
    return table_.markCountText() + (state.empty() ? "" : "; " + state);
}

void AObservationSelector::showCount()
{
    const CString text = CountText();
    if (count_.GetSafeHwnd() && count_.GetWindowText() != text)
        count_.SetWindowText(text);
}

void AObservationSelector::OnSize(unsigned type, int cx, int cy)
{
    ABWindow::OnSize(type, cx, cy);
    if (count_.GetSafeHwnd())
        layOut();
}

void AObservationSelector::OnSetFocus(CWnd*) { (void)table_.SetFocus(); }

int AObservationSelector::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == tableId) {
        showCount();
        CWnd* const parent = GetParent();
        return parent && parent->SendMessage(WM_COMMAND, (GetDlgCtrlID() & 0xFFFF) | code << 16,
                                             static_cast<LPARAM>(GetSafeHwnd())) != 0;
    }
    if (code != BN_CLICKED || !control || !table_.RunTableCommand(id))
        return ABWindow::OnCommand(id, code, control);
    // keys are for the table again
    if (CWnd* const focus = GetFocus(); focus && focus->GetParent() == this)
        (void)table_.SetFocus();
    return 1;
}

}  // namespace pavane
