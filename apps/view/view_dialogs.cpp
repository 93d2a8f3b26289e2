#include "apps/view/view_dialogs.h"

#include "pavane/axes/maps/cells/level_list.h"
#include "pavane/windows/AResizeDialog.h"
#include "pavane/windows/controls/AComboBox.h"
#include "pavane/windows/controls/AInfoText.h"
#include "platform/message.h"

#include <iterator>
#include <string_view>

namespace pavane
{

namespace
{

enum Control : unsigned { idHeading = 101, idLines, idQuestion, idText, idHint };

constexpr DlgItem lineItems[] = {
    {ControlKind::staticText, idHeading, "", 8, 8, 304, 10},
    {ControlKind::placeholder, idLines, "", 8, 22, 304, 120, WS_TABSTOP},
    {ControlKind::staticText, idQuestion, "", 8, 148, 304, 10},
    {ControlKind::defaultButton, IDOK, "", 196, 164, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 256, 164, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate lineDialog = {0, "", 320, 186, lineItems, std::size(lineItems)};
constexpr ResizeItem lineResize[] = {{idHeading, 0, 0, 100, 0},
                                     {idLines, 0, 0, 100, 100},
                                     {idQuestion, 0, 100, 100, 100},
                                     {IDOK, 100, 100, 100, 100},
                                     {IDCANCEL, 100, 100, 100, 100}};

constexpr DlgItem levelItems[] = {
    {ControlKind::staticText, idHeading, "Contour levels:", 8, 8, 244, 10},
    {ControlKind::placeholder, idText, "", 8, 20, 244, 80},
    {ControlKind::staticText, idHint,
     "peak: per cent of the peak, sigma: multiples of the noise, abs: values.", 8, 40, 244, 10},
    {ControlKind::staticText, idQuestion,
     "A list that ends in ... goes on up to the peak: peak:-1,1,2,4,...", 8, 52, 244, 10},
    {ControlKind::defaultButton, IDOK, "OK", 136, 70, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 196, 70, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate levelDialog = {0,  "Contour levels", 260,
                                     92, levelItems,       std::size(levelItems)};
constexpr ResizeItem levelResize[] = {
    {idText, 0, 0, 100, 0}, {IDOK, 100, 0, 100, 0}, {IDCANCEL, 100, 0, 100, 0}};

/// The lines may be long and many: they are seen in a larger window, found in and copied.
class LineDialog : public AResizeDialog
{
public:
    LineDialog(CWnd* parent, const CString& title, const CString& heading,
               const std::vector<std::string>& lines, const CString& question, const CString& yes)
        : AResizeDialog(lineDialog, parent), title_(title), heading_(heading), lines_(lines),
          question_(question), yes_(yes)
    {
        SetResizeItems(lineResize);
        SetPlacementSection("LineDialog");
    }

protected:
    int OnInitDialog() override
    {
        SetWindowText(title_);
        SetDlgItemText(idHeading, heading_);
        SetDlgItemText(idQuestion, question_);
        SetDlgItemText(IDOK, yes_);
        (void)text_.UpDateControl("", this, idLines,
                                  WS_TABSTOP | WS_BORDER | WS_VSCROLL | WS_HSCROLL);
        text_.SetName(heading_);
        for (const std::string& line : lines_)
            text_.Append(line);
        return AResizeDialog::OnInitDialog();
    }

private:
    const CString& title_;
    const CString& heading_;
    const std::vector<std::string>& lines_;
    const CString& question_;
    const CString& yes_;
    AInfoText text_;
};

/// Proposes the last levels that were taken.
class LevelDialog : public AResizeDialog
{
public:
    LevelDialog(CWnd* parent, CString& text) : AResizeDialog(levelDialog, parent), text_(text)
    {
        SetResizeItems(levelResize);
        SetPlacementSection("LevelDialog");
    }

protected:
    int OnInitDialog() override
    {
        CRect place;
        CWnd* const old = GetDlgItem(idText);
        (void)old->GetWindowRect(place);
        ScreenToClient(place);
        (void)old->DestroyWindow();
        (void)levels_.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP, place, this, idText,
                             "Contour levels");
        (void)levels_.SetHistory("ContourLevels");
        levels_.SetWindowText(text_);
        (void)AResizeDialog::OnInitDialog();
        (void)levels_.SetFocus();
        return 0;
    }
    void OnOK() override
    {
        LevelChoice choice;
        std::string error;
        const CString text = levels_.GetWindowText();
        if (!parseLevels(text, choice, error)) {
            AfxMessageBox("The list of levels " + error, MB_ICONERROR);
            return;
        }
        text_ = text;
        (void)levels_.Remember();
        EndDialog(IDOK);
    }

private:
    CString& text_;
    AComboBox levels_;
};

}  // namespace

int askAboutLines(CWnd* parent, const CString& title, const CString& heading,
                  const std::vector<std::string>& lines, const CString& question,
                  const CString& yes)
{
    LineDialog dialog(parent, title, heading, lines, question, yes);
    return dialog.DoModal();
}

int askLevels(CWnd* parent, CString& text)
{
    LevelDialog dialog(parent, text);
    return dialog.DoModal() == IDOK;
}

}  // namespace pavane
