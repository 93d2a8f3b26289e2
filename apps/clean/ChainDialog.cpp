#include "apps/clean/ChainDialog.h"

#include "apps/clean/job_text.h"
#include "platform/controls.h"
#include "platform/messages.h"
#include "tessel/gains/gain_files.h"

#include <iterator>

namespace pavane
{

namespace
{

constexpr unsigned idDialog = 41600, idList = 41601, idSwitch = 41602, idRemove = 41603,
                   idConfirm = 41604, idSolve = 41605, idGraph = 41606, idRounds = 41607,
                   idTakeRound = 41608, idStudy = 41609, idUndo = 41610, idRedo = 41611,
                   idNote = 41612;

constexpr DlgItem items[] = {
    {ControlKind::staticText, 0, "&Gains, applied from the first to the last", 8, 8, 250, 9},
    {ControlKind::placeholder, idList, "", 8, 19, 404, 92, WS_TABSTOP},
    {ControlKind::pushButton, idSwitch, "On or o&ff", 418, 19, 76, 14, WS_TABSTOP},
    {ControlKind::pushButton, idRemove, "Re&move", 418, 35, 76, 14, WS_TABSTOP},
    {ControlKind::pushButton, idConfirm, "Take as it &is", 418, 51, 76, 14, WS_TABSTOP},
    {ControlKind::pushButton, idSolve, "&Solve again...", 418, 67, 76, 14, WS_TABSTOP},
    {ControlKind::pushButton, idGraph, "Grap&h", 418, 83, 76, 14, WS_TABSTOP},
    {ControlKind::staticText, idNote, "", 8, 116, 486, 18},
    {ControlKind::staticText, 0, "&Round", 8, 141, 28, 9},
    {ControlKind::comboBox, idRounds, "", 38, 139, 118, 120, WS_TABSTOP},
    {ControlKind::pushButton, idTakeRound, "&Take its chain", 160, 138, 70, 14, WS_TABSTOP},
    {ControlKind::pushButton, idStudy, "Copy from a stu&dy...", 236, 138, 90, 14, WS_TABSTOP},
    {ControlKind::pushButton, idUndo, "&Undo", 8, 162, 60, 14, WS_TABSTOP},
    {ControlKind::pushButton, idRedo, "R&edo", 72, 162, 60, 14, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 380, 162, 55, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 439, 162, 55, 14, WS_TABSTOP},
};
constexpr ResizeItem resize[] = {
    {idList, 0, 0, 100, 100},    {idSwitch, 100, 0, 100, 0},     {idRemove, 100, 0, 100, 0},
    {idConfirm, 100, 0, 100, 0}, {idSolve, 100, 0, 100, 0},      {idGraph, 100, 0, 100, 0},
    {idNote, 0, 100, 100, 100},  {idRounds, 0, 100, 0, 100},     {idTakeRound, 0, 100, 0, 100},
    {idStudy, 0, 100, 0, 100},   {idUndo, 0, 100, 0, 100},       {idRedo, 0, 100, 0, 100},
    {IDOK, 100, 100, 100, 100},  {IDCANCEL, 100, 100, 100, 100},
};
constexpr DlgTemplate dialog = {
    idDialog, "Chain of gains", 502, 184, items, static_cast<int>(std::size(items)), WS_THICKFRAME};

}  // namespace

ChainDialog::ChainDialog(ChainEdits& edits, const AStudy& study, CWnd* parent)
    : AResizeDialog(dialog, parent), edits_(edits), study_(study), table_(edits)
{
    SetResizeItems(resize);
    SetPlacementSection("ChainOfGains");
    table_.edited = [this] { showLines(); };
    table_.chosen = [this] { showButtons(); };
}

ChainDialog::~ChainDialog()
{
    table_.edited = nullptr;
    table_.chosen = nullptr;
    DestroyWindow();
}

int ChainDialog::OnInitDialog()
{
    (void)ReplaceControl(idList, table_, table_.GetWndClassName(), "Gains",
                         WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL);
    if (auto* const list = dynamic_cast<CComboBox*>(GetDlgItem(idRounds))) {
        int chosen = 0;
        for (const StudyRound& each : study_.rounds()) {
            const int at = list->AddString(std::to_string(each.id) + "  " + roundNameOf(each));
            if (each.id == study_.settings().round)
                chosen = at;
        }
        (void)list->SetCurSel(chosen);
    }
    (void)AResizeDialog::OnInitDialog();
    showLines();
    (void)table_.SetFocus();
    return 0;
}

void ChainDialog::showLines()
{
    const std::vector<StudyLink>& chain = edits_.chain();
    std::vector<LinkLine> lines;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        auto found = known_.find(chain[i].gains);
        if (found == known_.end()) {
            LinkLine read;
            AGains gains;
            std::string error;
            if (readGainText(study_.gainText(chain[i].gains), gains, error))
                describeGains(gains, read);
            else
                read.kind = "cannot be read";
            found = known_.emplace(chain[i].gains, read).first;
        }
        LinkLine line = linkLineOf(chain, i);
        line.kind = found->second.kind;
        line.interval = found->second.interval;
        line.solved = found->second.solved;
        lines.push_back(line);
    }
    table_.SetLines(std::move(lines));
    showButtons();
}

void ChainDialog::showButtons()
{
    const std::vector<StudyLink>& chain = edits_.chain();
    const int at = table_.selected();
    const int isThere = at >= 0 && at < std::ssize(chain);
    const int stale = isThere && isStale(chain, static_cast<std::size_t>(at));
    const struct {
        unsigned id;
        int isOn;
    } buttons[] = {{idSwitch, isThere},
                   {idRemove, isThere},
                   {idConfirm, stale},
                   {idSolve, isThere},
                   {idGraph, isThere},
                   {idTakeRound, !study_.rounds().empty()},
                   {idStudy, copyFromStudy != nullptr},
                   {idUndo, !edits_.undoLabel().empty()},
                   {idRedo, !edits_.redoLabel().empty()}};
    for (const auto& each : buttons)
        if (CWnd* const button = GetDlgItem(each.id)) {
            if (!each.isOn && CWnd::GetFocus() == button)
                (void)table_.SetFocus();
            (void)button->EnableWindow(each.isOn);
        }
    CString note = "Data of a solution that failed are left out, or stay as they are: F8 asks.";
    if (chain.empty())
        note = "The chain has no gains: the data are as they were observed.";
    else if (stale)
        note =
            "Links before it have changed since it was solved: solve again, or take it as it is.";
    if (const CString undo = edits_.undoLabel(); !undo.empty())
        note += "\nUndo takes back: " + undo;
    SetDlgItemText(idNote, note);
}

void ChainDialog::takeRound()
{
    const auto* const list = dynamic_cast<const CComboBox*>(GetDlgItem(idRounds));
    const int at = list ? list->GetCurSel() : -1;
    if (at < 0 || at >= std::ssize(study_.rounds()))
        return;
    if (edits_.take(study_.rounds()[static_cast<std::size_t>(at)].data.chain))
        showLines();
}

void ChainDialog::end(Wish wish)
{
    wish_ = wish;
    link_ = table_.selected();
    OnOK();
}

int ChainDialog::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code != BN_CLICKED)
        return AResizeDialog::OnCommand(id, code, control);
    const int row = table_.selected();
    const auto at = row < 0 ? edits_.chain().size() : static_cast<std::size_t>(row);
    int isChanged = 0;
    switch (id) {
    case idSwitch:
        isChanged = row >= 0 && edits_.setOn(at, !edits_.chain()[at].isOn);
        break;
    case idRemove:
        isChanged = edits_.remove(at);
        break;
    case idConfirm:
        isChanged = edits_.confirm(at);
        break;
    case idUndo:
        isChanged = edits_.undo();
        break;
    case idRedo:
        isChanged = edits_.redo();
        break;
    case idTakeRound:
        return takeRound(), 1;
    case idStudy: {
        const HWND self = GetSafeHwnd();
        isChanged = copyFromStudy && copyFromStudy(*this, edits_);
        if (FromHandle(self) != this)
            return 1;
        break;
    }
    case idSolve:
        return end(Wish::solve), 1;
    case idGraph:
        return end(Wish::graph), 1;
    default:
        return AResizeDialog::OnCommand(id, code, control);
    }
    if (isChanged)
        showLines();
    return 1;
}

}  // namespace pavane
