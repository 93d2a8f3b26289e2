#include "apps/view/sky_dialogs.h"

#include "pavane/windows/AResizeDialog.h"
#include "pavane/windows/controls/AComboBox.h"
#include "pavane/windows/controls/AInfoText.h"
#include "platform/message.h"

#include <iterator>

namespace pavane
{

namespace
{

enum Control : unsigned { idHeading = 101, idText, idHint, idHint2, idLines };

constexpr DlgItem positionItems[] = {
    {ControlKind::staticText, idHeading, "Position:", 8, 8, 244, 10},
    {ControlKind::placeholder, idText, "", 8, 20, 244, 80},
    {ControlKind::staticText, idHint, "12:30:49.4 +12:23:28, 12h30m49.4s +12d23m28s, 187.7 12.4,",
     8, 40, 244, 10},
    {ControlKind::staticText, idHint2, "", 8, 52, 244, 10},
    {ControlKind::defaultButton, IDOK, "Go there", 136, 70, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 196, 70, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate positionDialog = {0,  "Go to a position", 260,
                                        92, positionItems,      std::size(positionItems)};
constexpr ResizeItem positionResize[] = {
    {idText, 0, 0, 100, 0}, {IDOK, 100, 0, 100, 0}, {IDCANCEL, 100, 0, 100, 0}};

constexpr DlgItem lineItems[] = {
    {ControlKind::staticText, idHeading, "", 8, 8, 344, 10},
    {ControlKind::placeholder, idLines, "", 8, 22, 344, 210, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "Close", 296, 238, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate lineDialog = {0, "", 360, 260, lineItems, std::size(lineItems)};
constexpr ResizeItem lineResize[] = {
    {idHeading, 0, 0, 100, 0}, {idLines, 0, 0, 100, 100}, {IDOK, 100, 100, 100, 100}};

class PositionDialog : public AResizeDialog
{
public:
    PositionDialog(CWnd* parent, const SkyFrame& usual, SkyPosition& position)
        : AResizeDialog(positionDialog, parent), usual_(usual), position_(position)
    {
        SetResizeItems(positionResize);
        SetPlacementSection("PositionDialog");
    }

protected:
    int OnInitDialog() override
    {
        SetDlgItemText(idHint2, "with the name of a frame before or behind unless it is " +
                                    nameOf(usual_) + ".");
        CRect place;
        CWnd* const old = GetDlgItem(idText);
        (void)old->GetWindowRect(place);
        ScreenToClient(place);
        (void)old->DestroyWindow();
        (void)text_.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP, place, this, idText, "Position");
        (void)text_.SetHistory("Positions");
        (void)AResizeDialog::OnInitDialog();
        (void)text_.SetFocus();
        return 0;
    }
    void OnOK() override
    {
        std::string error;
        if (!readSkyPosition(text_.GetWindowText(), usual_, position_, error)) {
            AfxMessageBox(error, MB_ICONERROR);
            return;
        }
        (void)text_.Remember();
        EndDialog(IDOK);
    }

private:
    SkyFrame usual_;
    SkyPosition& position_;
    AComboBox text_;
};

class LinesDialog : public AResizeDialog
{
public:
    LinesDialog(CWnd* parent, const CString& title, const CString& heading,
                const std::vector<std::string>& lines)
        : AResizeDialog(lineDialog, parent), title_(title), heading_(heading), lines_(lines)
    {
        SetResizeItems(lineResize);
        SetPlacementSection("HeaderDialog");
    }

protected:
    int OnInitDialog() override
    {
        SetWindowText(title_);
        SetDlgItemText(idHeading, heading_);
        (void)text_.UpDateControl("", this, idLines,
                                  WS_TABSTOP | WS_BORDER | WS_VSCROLL | WS_HSCROLL);
        text_.SetName(title_);
        for (const std::string& line : lines_)
            text_.Append(line);
        (void)AResizeDialog::OnInitDialog();
        (void)text_.SetFocus();
        return 0;
    }

private:
    const CString& title_;
    const CString& heading_;
    const std::vector<std::string>& lines_;
    AInfoText text_;
};

}  // namespace

int askPosition(CWnd* parent, const SkyFrame& usual, SkyPosition& position)
{
    PositionDialog dialog(parent, usual, position);
    return dialog.DoModal() == IDOK;
}

void showLines(CWnd* parent, const CString& title, const CString& heading,
               const std::vector<std::string>& lines)
{
    LinesDialog dialog(parent, title, heading, lines);
    (void)dialog.DoModal();
}

}  // namespace pavane
