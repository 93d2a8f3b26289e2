#include "pavane/dialogs/AGainFilesDlg.h"

#include "pavane/resources/gain_dialog.h"
#include "pavane/windows/library_resources.h"
#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/AFile.h"
#include "tessel/gains/gain_files.h"
#include "tessel/trimmed.h"

namespace pavane
{

namespace
{

const DlgTemplate& knownDialog(const DlgTemplate& dialog)
{
    AddLibraryResources();
    return dialog;
}

int isThere(const CString& file)
{
    AFile in;
    return in.open(file, AFile::readOnly);
}

/// The clauses as lines of a message.
CString asLines(const std::vector<std::string>& clauses)
{
    CString text;
    for (const std::string& clause : clauses)
        text.append(text.empty() ? "" : "\n").append(clause);
    return text;
}

}  // namespace

std::vector<GainFileForm> gainFileForms()
{
    const auto readText = [](const std::string& file, AGains& gains,
                             std::vector<std::string>& notes, std::string& error) {
        notes.clear();
        return readGainText(file, gains, error);
    };
    return {{"AIPS SN table (FITS)", "Gain tables|*.fits;*.sn;*.uvfits", "fits", writeGainTable,
             readGainTable, gainTableLosses},
            {"Text with tabs", "Gains as text|*.txt;*.tsv", "txt", writeGainText, readText,
             gainTextLosses}};
}

AGainFilesDlg::AGainFilesDlg(const AGains& gains, CWnd* parent)
    : AResizeDialog(knownDialog(gainWriteDialog), parent), gains_(&gains), forms_(gainFileForms())
{
    SetResizeItems(gainFileResize);
    SetPlacementSection("WriteGains");
}

AGainFilesDlg::AGainFilesDlg(const GainFacts& data, CWnd* parent)
    : AResizeDialog(knownDialog(gainReadDialog), parent), data_(data), forms_(gainFileForms())
{
    SetResizeItems(gainFileResize);
    SetPlacementSection("ReadGains");
}

const GainFileForm* AGainFilesDlg::form() const
{
    const auto* const list = dynamic_cast<const CComboBox*>(GetDlgItem(IDC_GAIN_FORM));
    const int chosen = list ? list->GetCurSel() : -1;
    return chosen < 0 || chosen >= static_cast<int>(forms_.size())
               ? nullptr
               : &forms_[static_cast<std::size_t>(chosen)];
}

int AGainFilesDlg::OnInitDialog()
{
    isShowing_ = 1;
    if (auto* const list = dynamic_cast<CComboBox*>(GetDlgItem(IDC_GAIN_FORM))) {
        for (const GainFileForm& each : forms_)
            (void)list->AddString(each.name);
        (void)list->SetCurSel(0);
    }
    if (auto* const edit = dynamic_cast<CEdit*>(GetDlgItem(IDC_GAIN_FILE)))
        edit->LimitText(0);
    SetDlgItemText(IDC_GAIN_FILE, file_);
    isShowing_ = 0;
    if (isWriting()) {
        SetDlgItemText(IDC_GAIN_SUMMARY, gainSummary(*gains_));
        showLosses();
    }
    return AResizeDialog::OnInitDialog();
}

void AGainFilesDlg::showLines(const CString& title, const std::vector<std::string>& lines)
{
    SetDlgItemText(IDC_GAIN_TITLE, title);
    auto* const list = dynamic_cast<CListBox*>(GetDlgItem(IDC_GAIN_LIST));
    if (!list)
        return;
    list->ResetContent();
    for (const std::string& line : lines)
        (void)list->AddString(line);
}

void AGainFilesDlg::showLosses()
{
    const GainFileForm* const chosen = form();
    std::vector<std::string> losses;
    if (chosen && chosen->losses)
        losses = chosen->losses(*gains_);
    if (losses.empty())
        losses.emplace_back(gainNothingLost);
    showLines(gainLossTitle, losses);
}

void AGainFilesDlg::browse()
{
    const GainFileForm* const chosen = form();
    if (!chosen)
        return;
    CString name = GetDlgItemText(IDC_GAIN_FILE);
    const HWND self = GetSafeHwnd();
    const unsigned flags =
        isWriting() ? OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY : OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;
    const int isChosen = fnFileDialog1(name, chosen->filter + "|All files|*",
                                       isWriting() ? "Write gains" : "Read gains", !isWriting(),
                                       chosen->ending, flags, this);
    if (!isChosen || FromHandle(self) != this)
        return;
    SetDlgItemText(IDC_GAIN_FILE, name);
    asked_ = name;
    if (!isWriting())
        (void)look();
}

/// Tells why, with the focus in the name of the file. 0.
int AGainFilesDlg::refuse(const CString& message)
{
    const HWND self = GetSafeHwnd();
    (void)AfxMessageBox(message, MB_OK | MB_ICONWARNING);
    auto* const edit =
        FromHandle(self) == this ? dynamic_cast<CEdit*>(GetDlgItem(IDC_GAIN_FILE)) : nullptr;
    if (edit) {
        (void)edit->SetFocus();
        edit->SetSel(0, -1);
    }
    return 0;
}

/// Reads the file and shows what is found. 0, and the user is told, when it cannot be used.
int AGainFilesDlg::look()
{
    isRead_ = 0;
    notes_.clear();
    showLines(gainFoundTitle, {});
    SetDlgItemText(IDC_GAIN_SUMMARY, {});
    const GainFileForm* const chosen = form();
    const CString file = GetDlgItemText(IDC_GAIN_FILE);
    if (!chosen || trimmed(file, whiteSpace).empty())
        return refuse(gainNoFile);
    AGains gains;
    std::string error;
    std::vector<std::string> notes;
    if (!chosen->read || !chosen->read(file, gains, notes, error))
        return refuse(file + ": " + (error.empty() ? "cannot be read" : error) + ".");
    const GainMatch match = gainMatch(gains, data_);
    SetDlgItemText(IDC_GAIN_SUMMARY, gainSummary(gains));
    if (!match.isUsable()) {
        showLines(gainFaultTitle, match.faults);
        return refuse("The gains of " + file + " cannot be used:\n" + asLines(match.faults));
    }
    notes.insert(notes.end(), match.notes.begin(), match.notes.end());
    showLines(notes.empty() ? gainFoundTitle : gainNoteTitle,
              notes.empty() ? std::vector<std::string>{"They meet the data."} : notes);
    read_ = std::move(gains);
    notes_ = std::move(notes);
    file_ = file;
    return isRead_ = 1;
}

int AGainFilesDlg::write()
{
    const GainFileForm* const chosen = form();
    const CString file = GetDlgItemText(IDC_GAIN_FILE);
    if (!chosen || trimmed(file, whiteSpace).empty())
        return refuse(gainNoFile);
    const HWND self = GetSafeHwnd();
    if (file != asked_ && isThere(file) &&
        (AfxMessageBox(file + " is there already. Replace it?",
                       MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES ||
         FromHandle(self) != this))
        return 0;
    std::string error;
    if (!chosen->write || !chosen->write(file, *gains_, error))
        return refuse(file + ": " + (error.empty() ? "cannot be written" : error) + ".");
    file_ = file;
    return 1;
}

void AGainFilesDlg::OnOK()
{
    const HWND self = GetSafeHwnd();
    if (isWriting()) {
        if (write())
            AResizeDialog::OnOK();
        return;
    }
    const int wasSeen = isRead_;
    if (!isRead_ && !look())
        return;
    // who has not seen the list is asked
    if (!wasSeen && !notes_.empty() &&
        AfxMessageBox(asLines(notes_) + "\nTake them all the same?", MB_YESNO | MB_ICONQUESTION) !=
            IDYES)
        return;
    if (FromHandle(self) == this)
        AResizeDialog::OnOK();
}

int AGainFilesDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    switch (id) {
    case IDC_GAIN_BROWSE:
        return browse(), 1;
    case IDC_GAIN_LOOK:
        return (void)look(), 1;
    case IDC_GAIN_FORM:
        if (code == CBN_SELCHANGE && isWriting())
            showLosses();
        if (code == CBN_SELCHANGE)
            isRead_ = 0;
        return 1;
    case IDC_GAIN_FILE:
        if (code == EN_CHANGE && !isShowing_)
            isRead_ = 0;
        return 1;
    default:
        return AResizeDialog::OnCommand(id, code, control);
    }
}

}  // namespace pavane
