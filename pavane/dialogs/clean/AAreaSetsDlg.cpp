#include "pavane/dialogs/clean/AAreaSetsDlg.h"

#include "pavane/containers/MemoryFile.h"
#include "pavane/resources/area_sets_dialog.h"
#include "pavane/windows/library_resources.h"
#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/trimmed.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr std::size_t mostTold = 8;

const DlgTemplate& knownDialog()
{
    AddLibraryResources();
    return areaSetsDialog;
}

CString countText(int areas) { return std::to_string(areas) + (areas == 1 ? " area" : " areas"); }

int copyAreas(const AreaCollection& from, AreaCollection& to)
{
    MemoryFile bytes;
    return from.Store(bytes) && bytes.seek(0) && to.Load(bytes);
}

/// The first notes as lines of a message.
CString asLines(const RegionNotes& notes)
{
    CString text;
    for (std::size_t i = 0; i < std::min(notes.lines.size(), mostTold); ++i)
        text.append("\n").append(notes.lines[i]);
    const std::size_t more = notes.lines.size() - std::min(notes.lines.size(), mostTold) +
                             static_cast<std::size_t>(std::max(notes.more, 0));
    if (more > 0)
        text.append("\n... and " + std::to_string(more) + " more");
    return text;
}

/// The name of a file without folder and ending, as a name of a set.
CString stemOf(const CString& file)
{
    const std::size_t slash = file.find_last_of('/');
    CString stem = slash == CString::npos ? file : file.substr(slash + 1);
    const std::size_t dot = stem.find_last_of('.');
    if (dot != CString::npos && dot > 0)
        stem.resize(dot);
    stem = CString(trimmed(stem, whiteSpace)).substr(0, AAreaSets::longestName);
    return stem;
}

}  // namespace

AAreaSetsDlg::AAreaSetsDlg(AAreaSets& sets, AreaCollection& areas, const AreaMap& map, CWnd* parent)
    : AResizeDialog(knownDialog(), parent), sets_(sets), areas_(areas), map_(map), edited_(sets)
{
    (void)copyAreas(areas, shown_);
    SetResizeItems(areaSetsResize);
    SetPlacementSection("CleanAreas");
}

int AAreaSetsDlg::OnInitDialog()
{
    list(0);
    return AResizeDialog::OnInitDialog();
}

/// The set that is chosen, -1 for the areas on the map.
int AAreaSetsDlg::chosen() const
{
    const auto* const lines = dynamic_cast<const CListBox*>(GetDlgItem(IDC_SETS_LIST));
    return lines ? lines->GetCurSel() - 1 : -1;
}

void AAreaSetsDlg::list(int line)
{
    auto* const lines = dynamic_cast<CListBox*>(GetDlgItem(IDC_SETS_LIST));
    if (!lines)
        return;
    lines->ResetContent();
    (void)lines->AddString("On the map: " + countText(shown_.count()));
    for (int i = 0; i < edited_.count(); ++i)
        (void)lines->AddString(edited_.name(i) + ": " + countText(edited_.areas(i)));
    (void)lines->SetCurSel(std::clamp(line, 0, edited_.count()));
    showChoice();
}

void AAreaSetsDlg::showChoice()
{
    const int set = chosen();
    for (const unsigned id : {IDC_SETS_USE, IDC_SETS_REMOVE, IDC_SETS_RENAME})
        if (CWnd* const button = GetDlgItem(id)) {
            // a button that goes grey gives the focus to the list
            if (set < 0 && CWnd::GetFocus() == button && GetDlgItem(IDC_SETS_LIST))
                (void)GetDlgItem(IDC_SETS_LIST)->SetFocus();
            (void)button->EnableWindow(set >= 0);
        }
    if (set >= 0)
        SetDlgItemText(IDC_SETS_NAME, edited_.name(set));
}

void AAreaSetsDlg::note(const CString& text) { SetDlgItemText(IDC_SETS_NOTE, text); }

void AAreaSetsDlg::refuse(const CString& text, unsigned id)
{
    const HWND self = GetSafeHwnd();
    (void)AfxMessageBox(text, MB_OK | MB_ICONWARNING);
    CWnd* const field = FromHandle(self) == this ? GetDlgItem(id) : nullptr;
    if (!field)
        return;
    (void)field->SetFocus();
    if (auto* const edit = dynamic_cast<CEdit*>(field))
        edit->SetSel(0, -1);
}

/// Non-zero when the user says yes and the dialog is still there.
int AAreaSetsDlg::ask(const CString& text)
{
    const HWND self = GetSafeHwnd();
    return AfxMessageBox(text, MB_YESNO | MB_ICONQUESTION) == IDYES && FromHandle(self) == this;
}

void AAreaSetsDlg::use()
{
    const int set = chosen();
    if (!edited_.give(set, shown_))
        return;
    isOtherAreas_ = 1;
    list(set + 1);
    note("The map gets the areas of '" + edited_.name(set) + "'.");
}

void AAreaSetsDlg::keep()
{
    const CString name(trimmed(GetDlgItemText(IDC_SETS_NAME), whiteSpace));
    const int known = edited_.find(name);
    if (known >= 0 &&
        !ask("There is a set '" + edited_.name(known) + "' of " + countText(edited_.areas(known)) +
             " already. Replace it by the " + countText(shown_.count()) + " on the map?"))
        return;
    CString error;
    const int kept = edited_.keep(name, shown_, error);
    if (kept < 0)
        return refuse(error, IDC_SETS_NAME);
    isOtherSets_ = 1;
    list(kept + 1);
    note("Kept as '" + name + "'.");
}

void AAreaSetsDlg::rename()
{
    const int set = chosen();
    const CString name(trimmed(GetDlgItemText(IDC_SETS_NAME), whiteSpace));
    CString error;
    if (!edited_.rename(set, name, error))
        return refuse(error, IDC_SETS_NAME);
    isOtherSets_ = 1;
    list(set + 1);
    note({});
}

void AAreaSetsDlg::remove()
{
    const int set = chosen();
    const CString name = edited_.name(set);
    if (!edited_.remove(set))
        return;
    isOtherSets_ = 1;
    list(set + 1);
    note("'" + name + "' is removed. Cancel brings it back.");
}

/// A file becomes a set of its name, or of its name with a number where there is one already.
void AAreaSetsDlg::readFile()
{
    CString file;
    const HWND self = GetSafeHwnd();
    if (!fnFileDialog1(file, anyAreaFileFilter, "Read areas", 1, "areas",
                       OFN_FILEMUSTEXIST | OFN_HIDEREADONLY, this) ||
        FromHandle(self) != this)
        return;
    AreaCollection read;
    RegionNotes notes;
    std::string error;
    if (!readAreas(file, map_, read, notes, error))
        return refuse(error, IDC_SETS_LIST);
    if (!notes.lines.empty() &&
        !ask(file + " gives " + countText(read.count()) + ":" + asLines(notes) + "\nTake them?"))
        return;
    const CString stem = stemOf(file);
    CString name = stem;
    for (int number = 2; edited_.find(name) >= 0; ++number) {
        const CString tail = CString(" ").append(std::to_string(number));
        name = stem.substr(0, AAreaSets::longestName - tail.size()) + tail;
    }
    CString fault;
    const int kept = edited_.keep(name, read, fault);
    if (kept < 0)
        return refuse(fault, IDC_SETS_LIST);
    isOtherSets_ = 1;
    list(kept + 1);
    note("Read as '" + name + "'. 'Use on the map' makes it the map's areas.");
}

void AAreaSetsDlg::writeFile()
{
    const int set = chosen();
    AreaCollection areas;
    if (!(set < 0 ? copyAreas(shown_, areas) : edited_.give(set, areas)))
        return;
    CString file = set < 0 ? CString() : edited_.name(set);
    const HWND self = GetSafeHwnd();
    if (!fnFileDialog1(file, areaFileFilter, "Write areas", 0, "areas",
                       OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY, this) ||
        FromHandle(self) != this)
        return;
    const RegionNotes losses = lossesOfAreas(file, map_, areas);
    if (!losses.lines.empty() &&
        !ask("This form does not hold all of it:" + asLines(losses) + "\nWrite it all the same?"))
        return;
    std::string error;
    if (!writeAreas(file, map_, areas, error))
        return refuse(error, IDC_SETS_LIST);
    note("Written to " + file + ".");
}

void AAreaSetsDlg::OnOK()
{
    if (isOtherAreas_ && !copyAreas(shown_, areas_)) {
        refuse("The map cannot take these areas.", IDC_SETS_LIST);
        return;
    }
    if (isOtherSets_)
        sets_ = edited_;
    AResizeDialog::OnOK();
}

int AAreaSetsDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == IDC_SETS_LIST) {
        if (code == LBN_SELCHANGE)
            showChoice();
        else if (code == LBN_DBLCLK)
            use();
        return 1;
    }
    if (code != BN_CLICKED)
        return AResizeDialog::OnCommand(id, code, control);
    switch (id) {
    case IDC_SETS_USE:
        return use(), 1;
    case IDC_SETS_KEEP:
        return keep(), 1;
    case IDC_SETS_RENAME:
        return rename(), 1;
    case IDC_SETS_REMOVE:
        return remove(), 1;
    case IDC_SETS_READ:
        return readFile(), 1;
    case IDC_SETS_WRITE:
        return writeFile(), 1;
    default:
        return AResizeDialog::OnCommand(id, code, control);
    }
}

}  // namespace pavane
