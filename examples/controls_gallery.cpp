// Opens a window with a menu, a toolbar and a dialog of every control, to try them by hand. What
// they tell is shown in the line at the bottom.

#include "platform/CDialog.h"
#include "platform/CMenu.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "platform/platform.h"
#include "platform/profile.h"

#include <iterator>

using namespace pavane;

namespace
{

enum Command : unsigned { idUndo = 101, idArrow, idEllipse, idGrid, idArea, idExit, idNames };
enum Control : unsigned { idShape = 201, idTurned, idRound, idAngle, idSteps, idPalette, idCells };

constexpr MenuItem editItems[] = {{"&Undo\tCtrl+Z", idUndo, nullptr, 0},
                                  {"&Grid\tG", idGrid, nullptr, 0},
                                  {},
                                  {"&Area...\tF4", idArea, nullptr, 0},
                                  {"E&xit\tCtrl+Q", idExit, nullptr, 0}};
constexpr MenuItem bar[] = {{"&Edit", 0, editItems, std::size(editItems)}};
constexpr MenuTemplate mainMenu{1, bar, std::size(bar)};

constexpr unsigned tab = WS_TABSTOP;
constexpr DlgItem areaItems[] = {
    {ControlKind::groupBox, 1000, "Shape", 7, 7, 100, 54},
    {ControlKind::radioButton, idShape, "&Rectangle", 13, 18, 80, 11, tab | WS_GROUP},
    {ControlKind::radioButton, idTurned, "&Turned rectangle", 13, 31, 80, 11},
    {ControlKind::radioButton, idRound, "&Ellipse", 13, 44, 80, 11},
    {ControlKind::staticText, 1001, "&Angle:", 115, 9, 30, 9, WS_GROUP},
    {ControlKind::edit, idAngle, "", 150, 7, 60, 13, tab},
    {ControlKind::staticText, 1002, "&Steps:", 115, 26, 30, 9},
    {ControlKind::spin, idSteps, "", 150, 24, 60, 13, tab},
    {ControlKind::staticText, 1003, "&Palette:", 115, 43, 30, 9},
    {ControlKind::comboBox, idPalette, "", 150, 41, 60, 80, tab},
    {ControlKind::checkBox, idCells, "Show the &cells", 115, 60, 95, 11, tab},
    {ControlKind::defaultButton, IDOK, "OK", 105, 80, 50, 14, tab},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 160, 80, 50, 14, tab},
};
constexpr DlgTemplate areaTemplate{2, "Area", 217, 101, areaItems, std::size(areaItems)};

const char* const arrowRows[] = {"#     ", "##    ", "#.#   ", "#..#  ", "#...# ",
                                 "#....#", "#..###", "#.#   ", "##    ", "#     "};
const char* const ellipseRows[] = {"   ######   ", " ##      ## ", "#          #", "#    ++    #",
                                   "#          #", " ##      ## ", "   ######   "};
const char* const gridRows[] = {"###########", "#....#....#", "#....#....#", "###########",
                                "#....#....#", "#....#....#", "###########"};

class AreaDialog : public CDialog
{
public:
    explicit AreaDialog(CWnd* parent) : CDialog(areaTemplate, parent) {}

protected:
    int OnInitDialog() override
    {
        static_cast<CButton*>(GetDlgItem(idShape))->SetCheck(1);
        auto* const steps = static_cast<CSpinButtonCtrl*>(GetDlgItem(idSteps));
        steps->SetRange(1, 100);
        steps->SetPos(GetProfileInt("controls_gallery", "Steps", 12));
        auto* const palettes = static_cast<CComboBox*>(GetDlgItem(idPalette));
        for (const char* name : {"Grey", "Rainbow", "Heat"})
            palettes->AddString(name);
        palettes->SetCurSel(0);
        SetDlgItemText(idAngle, "34.5");
        return 1;
    }
    void OnOK() override
    {
        const int steps = static_cast<CSpinButtonCtrl*>(GetDlgItem(idSteps))->GetPos();
        if (!WriteProfileInt("controls_gallery", "Steps", steps))
            AfxMessageBox("The number of steps could not be kept.", MB_ICONWARNING);
        CDialog::OnOK();
    }
};

class GalleryWindow : public CWnd
{
public:
    int Create()
    {
        return CWnd::Create("Gallery", "Controls", WS_OVERLAPPEDWINDOW, CRect(100, 100, 520, 300),
                            nullptr, 0);
    }
    void OnInitMenuPopup(CMenu& popup) override
    {
        popup.CheckMenuItem(idGrid, tools_.IsButtonChecked(idGrid) ? MF_CHECKED : MF_UNCHECKED);
        popup.EnableMenuItem(idUndo, MF_GRAYED);  // there is nothing to undo
    }

protected:
    int OnCreate(CREATESTRUCT&) override
    {
        if (!tools_.Create(WS_CHILD | WS_VISIBLE, CRect(), this, 1) ||
            !status_.Create("", WS_CHILD | WS_VISIBLE | SS_ENDELLIPSIS, CRect(), this, 2) ||
            !names_.Create(WS_CHILD | WS_VISIBLE | CBS_DROPDOWNLIST, CRect(), &tools_, idNames))
            return -1;
        tools_.AddButton({idArrow, "Arrow", arrowRows, std::size(arrowRows), 0, 1, 0});
        tools_.AddButton({idEllipse, "Ellipse", ellipseRows, std::size(ellipseRows), 0, 1, 0});
        tools_.AddButton({});
        tools_.AddButton({idGrid, "Grid (G)", gridRows, std::size(gridRows), 1, 0, 0});
        tools_.AddControl(&names_, 110);
        tools_.CheckButton(idArrow, 1);
        names_.AddString("Area 1");
        names_.AddString("Area 2");
        // last, because it takes room and so tells of the size
        CMenu menu;
        return menu.LoadMenu(mainMenu) && SetMenu(menu) ? 0 : -1;
    }
    void OnSize(unsigned, int cx, int cy) override
    {
        constexpr int lineHeight = 22;
        tools_.MoveWindow(CRect(0, 0, cx, tools_.GetBarHeight(cx)));
        status_.MoveWindow(CRect(0, cy - lineHeight, cx, cy));
    }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (id == idExit)
            return PostMessage(WM_CLOSE);
        if (id == idArea)
            return AreaDialog(this).DoModal(), 1;
        if (id == idGrid && !control)
            tools_.CheckButton(idGrid, !tools_.IsButtonChecked(idGrid));
        status_.SetWindowText("  command " + std::to_string(id) + ", code " + std::to_string(code));
        return 1;
    }
    void OnDestroy() override { PostQuitMessage(0); }

private:
    CToolBar tools_;
    CComboBox names_;
    CStatic status_;
};

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int result = 1;
    {
        GalleryWindow window;
        if (window.Create()) {
            window.ShowWindow(SW_SHOW);
            result = RunMessages();
        }
    }
    ShutdownPlatform();
    return result;
}
