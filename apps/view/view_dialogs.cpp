#include "apps/view/view_dialogs.h"

#include "apps/view/level_list.h"
#include "platform/controls.h"

#include <iterator>
#include <string_view>

namespace pavane
{

namespace
{

enum Control : unsigned { idHeading = 101, idLines, idQuestion, idText, idHint };

constexpr DlgItem lineItems[] = {
    {ControlKind::staticText, idHeading, "", 8, 8, 304, 10},
    {ControlKind::listBox, idLines, "", 8, 22, 304, 120, WS_TABSTOP | WS_VSCROLL | WS_BORDER},
    {ControlKind::staticText, idQuestion, "", 8, 148, 304, 10},
    {ControlKind::defaultButton, IDOK, "", 196, 164, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 256, 164, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate lineDialog = {0, "", 320, 186, lineItems, std::size(lineItems)};

constexpr DlgItem levelItems[] = {
    {ControlKind::staticText, idHeading, "Contour levels:", 8, 8, 244, 10},
    {ControlKind::edit, idText, "", 8, 20, 244, 14, WS_TABSTOP},
    {ControlKind::staticText, idHint,
     "peak: per cent of the peak, sigma: multiples of the noise, abs: values.", 8, 40, 244, 10},
    {ControlKind::staticText, idQuestion,
     "A list that ends in ... goes on up to the peak: peak:-1,1,2,4,...", 8, 52, 244, 10},
    {ControlKind::defaultButton, IDOK, "OK", 136, 70, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 196, 70, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate levelDialog = {0,  "Contour levels", 260,
                                     92, levelItems,       std::size(levelItems)};

class LineDialog : public CDialog
{
public:
    LineDialog(CWnd* parent, const CString& title, const CString& heading,
               const std::vector<std::string>& lines, const CString& question, const CString& yes)
        : CDialog(lineDialog, parent), title_(title), heading_(heading), lines_(lines),
          question_(question), yes_(yes)
    {
    }

protected:
    int OnInitDialog() override
    {
        SetWindowText(title_);
        SetDlgItemText(idHeading, heading_);
        SetDlgItemText(idQuestion, question_);
        SetDlgItemText(IDOK, yes_);
        auto* const list = dynamic_cast<CListBox*>(GetDlgItem(idLines));
        for (const std::string& line : lines_)
            if (list)
                list->AddString(line);
        return 1;
    }

private:
    const CString& title_;
    const CString& heading_;
    const std::vector<std::string>& lines_;
    const CString& question_;
    const CString& yes_;
};

class LevelDialog : public CDialog
{
public:
    LevelDialog(CWnd* parent, CString& text) : CDialog(levelDialog, parent), text_(text) {}

protected:
    int OnInitDialog() override
    {
        SetDlgItemText(idText, text_);
        return 1;
    }
    void OnOK() override
    {
        LevelChoice choice;
        std::string error;
        const CString text = GetDlgItemText(idText);
        if (!parseLevels(text, choice, error)) {
            constexpr std::size_t option = std::string_view("--levels").size();
            AfxMessageBox("The list of levels" + error.substr(option), MB_ICONERROR);
            return;
        }
        text_ = text;
        EndDialog(IDOK);
    }

private:
    CString& text_;
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
