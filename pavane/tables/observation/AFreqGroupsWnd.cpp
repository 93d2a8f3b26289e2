#include "pavane/tables/observation/AFreqGroupsWnd.h"

#include "pavane/resources/tracker_messages.h"
#include "pavane/tables/freq/group_look.h"
#include "platform/message.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr unsigned splitterId = 1, groupsId = 2, infoId = 3, selectionsId = 4, statusId = 5;
constexpr int gap = 4;
constexpr int buttonFrame = 10;  ///< above and below the text of a button, both together
constexpr int buttonSides = 24;
constexpr int mostSelectionRows = 3;
constexpr double shareOfIfs = 0.6;
constexpr unsigned tableStyle = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL;
constexpr const char* closeQuestion = "\nClose all the same?";

CString countOf(int count, const char* one)
{
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

}  // namespace

AFreqGroupsWnd::AFreqGroupsWnd() : steps_(std::make_shared<FreqGroupSteps>())
{
    SetFlag(windowNoWaitCursor, 1);
    splitter_.SetShare(shareOfIfs);
    groupTbl_.UseSteps(steps_);
    infoTbl_.UseSteps(steps_);
    idTbl_.UseSteps(steps_);
    steps_->addView(this);  // the last, so that it tells others of what all tables show
}

AFreqGroupsWnd::~AFreqGroupsWnd()
{
    steps_->removeView(this);
    (void)DestroyWindow();
}

const char* AFreqGroupsWnd::GetWndClassName() { return "AFreqGroupsWnd"; }

void AFreqGroupsWnd::DrawWindow(CDC& dc, CRect&, CRect& update)
{
    dc.FillSolidRect(update, GetSysColor(COLOR_BTNFACE));
}

int AFreqGroupsWnd::GetPages(CDC& dc) { return ActiveTable().GetPages(dc); }
int AFreqGroupsWnd::GetPrintPercent(CDC& dc) { return ActiveTable().GetPrintPercent(dc); }
CString AFreqGroupsWnd::GetSubscript() { return ActiveTable().GetSubscript(); }
void AFreqGroupsWnd::PrintWindow(CDC& dc, CRect& rect, int page)
{
    ActiveTable().PrintWindow(dc, rect, page);
}

// --- its parts

int AFreqGroupsWnd::OnCreate(CREATESTRUCT& cs)
{
    if (ABWindow::OnCreate(cs) == -1)
        return -1;
    makeButtons();
    makeTables();
    layOut();
    showNow();
    return 0;
}

void AFreqGroupsWnd::makeButtons()
{
    const auto add = [this](unsigned id, const char* text) {
        buttons_.push_back(std::make_unique<CButton>());
        buttons_.back()->Create(text, CButton::Kind::push, WS_CHILD | WS_VISIBLE, CRect(), this,
                                id);
    };
    buttons_.clear();
    for (const FreqCommand& command : freqCommands)
        if (command.button)
            add(command.id, command.button);
    add(ID_TABLE_UNDO, "Undo");
    add(ID_TABLE_REDO, "Redo");
    (void)status_.Create("", SS_ENDELLIPSIS | WS_CHILD | WS_VISIBLE, CRect(), this, statusId);
    (void)idTbl_.Create("", "", tableStyle & ~WS_VISIBLE, CRect(), this, selectionsId);
}

/// The splitter with its two tables; made anew when they shall stand otherwise.
void AFreqGroupsWnd::makeTables()
{
    using Split = CSplitterWnd::Split;
    (void)splitter_.DestroyWindow();
    (void)splitter_.Create(direct_ ? Split::rows : Split::columns, WS_CHILD | WS_VISIBLE, CRect(),
                           this, splitterId);
    (void)groupTbl_.Create("", "", tableStyle, CRect(), &splitter_, groupsId);
    (void)infoTbl_.Create("", "", tableStyle, CRect(), &splitter_, infoId);
    splitter_.SetPanes(&groupTbl_, &infoTbl_);
}

void AFreqGroupsWnd::SetDirect(int direct)
{
    if ((direct != 0) == (direct_ != 0))
        return;
    direct_ = direct != 0;
    if (!GetSafeHwnd())
        return;
    const CWnd* const focus = GetFocus();
    const bool mine = focus == &groupTbl_ || focus == &infoTbl_;
    FreqTable& active = ActiveTable();
    const HWND self = GetSafeHwnd();
    makeTables();
    if (FromHandle(self) != this)
        return;
    layOut();
    if (mine)
        active.SetFocus();
}

void AFreqGroupsWnd::SetScrollMode(int mode)
{
    FreqTable* const tables[] = {&groupTbl_, &infoTbl_, &idTbl_};
    for (FreqTable* const table : tables) {
        table->SetScrollMode(mode);
        table->SetUpWindow();
    }
}

int AFreqGroupsWnd::lineHeight()
{
    CClientDC dc(this);
    CFont font = GetFont();
    dc.SelectObject(&font);
    TEXTMETRIC metrics;
    (void)dc.GetTextMetrics(metrics);
    return metrics.tmHeight;
}

void AFreqGroupsWnd::layOut()
{
    if (!splitter_.GetSafeHwnd() || buttons_.empty())
        return;
    CRect client;
    GetClientRect(client);
    const int height = lineHeight() + buttonFrame;
    CClientDC dc(this);
    CFont font = GetFont();
    dc.SelectObject(&font);
    int x = gap;
    int y = gap;
    for (const auto& button : buttons_) {
        const int width = dc.GetTextExtent(button->GetWindowText()).cx + buttonSides;
        if (x > gap && x + width > client.right - gap) {
            x = gap;
            y += height + gap;
        }
        button->MoveWindow(CRect(x, y, x + width, y + height));
        x += width + gap;
    }
    // the line of texts behind the buttons, or below them where that is too short
    const int enough = dc.GetTextExtent("000 of 000 IFs marked, 000 groups").cx;
    if (client.right - x < enough) {
        x = gap;
        y += height + gap;
    }
    status_.MoveWindow(CRect(x + gap, y, std::max(x + gap, client.right - gap), y + height));
    y += height + gap;
    const int selections = steps_->groups() ? steps_->groups()->FqTbl().selectionCount() : 0;
    if (selections > 1) {
        const int rows = std::min(selections, mostSelectionRows) + 1;
        const int bottom = y + rows * idTbl_.GetCellHeight() + 2;
        idTbl_.MoveWindow(CRect(0, y, client.right, bottom));
        y = bottom + gap;
    }
    idTbl_.ShowWindow(selections > 1 ? SW_SHOW : SW_HIDE);
    splitter_.MoveWindow(CRect(0, y, client.right, std::max(y, client.bottom)));
}

void AFreqGroupsWnd::OnSize(unsigned type, int cx, int cy)
{
    ABWindow::OnSize(type, cx, cy);
    layOut();
}

// --- what the user does

FreqTable& AFreqGroupsWnd::ActiveTable()
{
    const CWnd* const focus = GetFocus();
    const FreqGroupView* const active = steps_->active();
    FreqTable* const tables[] = {&groupTbl_, &infoTbl_, &idTbl_};
    for (FreqTable* const table : tables)
        if (focus == table)
            return *table;
    for (FreqTable* const table : tables)
        if (active && active == table->asView())
            return *table;
    return groupTbl_;
}

int AFreqGroupsWnd::FocusNextTable(int back)
{
    // as they are seen, from the top
    FreqTable* const tables[] = {&idTbl_, &groupTbl_, &infoTbl_};
    const int first = idTbl_.IsWindowVisible() ? 0 : 1;
    int at = &ActiveTable() == tables[0] ? 0 : &ActiveTable() == tables[1] ? 1 : 2;
    at += back ? -1 : 1;
    if (at < first || at > 2)
        return 0;
    tables[at]->SetFocus();
    return 1;
}

void AFreqGroupsWnd::OnSetFocus(CWnd*) { ActiveTable().SetFocus(); }

int AFreqGroupsWnd::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    const HWND self = GetSafeHwnd();
    if (code != BN_CLICKED || !ActiveTable().RunTableCommand(id))
        return ABWindow::OnCommand(id, code, control);
    // a button took the focus from the table that it works on
    if (FromHandle(self) == this && control && GetFocus() == control)
        ActiveTable().SetFocus();
    return 1;
}

int AFreqGroupsWnd::IsValidClose(int ask)
{
    int hasGroups = 0;
    std::string question;
    if (!steps_->groups() || areComplete(*steps_->groups(), hasGroups, question))
        return 1;
    if (!hasGroups || !ask)
        return (void)AfxMessageBox(question, MB_OK | MB_ICONWARNING), 0;
    return AfxMessageBox(question + closeQuestion, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

// --- what has changed

void AFreqGroupsWnd::showNow()
{
    if (!status_.GetSafeHwnd())
        return;
    FreqTable& active = ActiveTable();
    for (const FreqCommand& command : freqCommands)
        if (CWnd* const button = command.button ? GetDlgItem(command.id) : nullptr)
            button->EnableWindow(active.isTimeOf(command.when));
    if (CWnd* const button = GetDlgItem(ID_TABLE_UNDO))
        button->EnableWindow(canUndo());
    if (CWnd* const button = GetDlgItem(ID_TABLE_REDO))
        button->EnableWindow(canRedo());
    const int groups = steps_->groups() ? steps_->groups()->count() : 0;
    status_.SetWindowText(std::to_string(steps_->edit().marked().ones()) + " of " +
                          countOf(steps_->ifCount(), "IF") + " marked, " +
                          countOf(groups, "group"));
}

void AFreqGroupsWnd::GroupsChanged(const FreqGroupNews& news)
{
    const HWND self = GetSafeHwnd();
    if (!self)
        return;
    if (news.other)
        layOut();
    showNow();
    if (const EditRecorded loss = steps_->takeLoss(); loss == editLost || loss == editGaveUpOld)
        (void)AfxMessageBox(loss == editLost ? allStepsGone : oldStepsGone, MB_OK | MB_ICONWARNING);
    if (CWnd* const parent = FromHandle(self) == this ? GetParent() : nullptr)
        (void)parent->SendMessage(WM_COMMAND, (GetDlgCtrlID() & 0xFFFF) | WPARAM{MTN_GROUPS} << 16,
                                  static_cast<LPARAM>(self));
}

}  // namespace pavane
