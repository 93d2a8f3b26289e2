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

/// A line of the help: what to press, and what it does.
struct KeyLine {
    const char* keys;
    const char* what;
};
constexpr KeyLine keyLines[] = {
    {"1  2  3  4  5  6", "arrow, rectangle, turned rectangle, ellipse, polygon, zoom in"},
    {"Drag with a tool", "draws a shape; clicks set the vertices of a polygon"},
    {"Double click, Enter", "closes the polygon; so does a click on its first vertex"},
    {"Enter", "with a tool: puts its shape into the middle"},
    {"Click", "picks an area with the arrow"},
    {"Drag a handle", "changes the area; the one inside turns it, with Shift in steps"},
    {"Esc, right button", "cancels a drag"},
    {"Ctrl+click, Ctrl+A", "picks several areas, all areas"},
    {"Tab, Shift+Tab", "to the next area or handle, to the one before"},
    {"Arrows", "move by a cell, with Shift by ten, with Ctrl by a pixel"},
    {"Click a vertex", "gives it the focus: Del and the arrows act on it"},
    {"Ins, Del", "a new vertex after the one with the focus; deletes it, or the area"},
    {"Ctrl+D", "copies the area"},
    {"Ctrl+Z, Ctrl+Shift+Z", "undo, redo"},
    {"Ctrl+C", "the picture of the map to the clipboard"},
    {"Ctrl+wheel", "zooms about the pointer"},
    {"Wheel, Shift+wheel", "moves a zoomed map; so do the middle button and Space with the left"},
    {"+  -", "zooms about the middle"},
    {"7  0", "zooms back, shows the whole map"},
    {"M", "shows the cells of the mask"},
};

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

/// The lines of help stand in two columns of a dialog that is as high as they need.
class KeyDialog : public CDialog
{
public:
    explicit KeyDialog(CWnd* parent) : CDialog(layOut(), parent) {}

private:
    static constexpr int lines = std::size(keyLines);
    static constexpr int lineStep = 12;
    static constexpr int foot = 8 + lines * lineStep + 6;
    static std::vector<DlgItem> items()
    {
        std::vector<DlgItem> items;
        for (int i = 0; i < lines; ++i) {
            const int y = 8 + i * lineStep;
            items.push_back({ControlKind::staticText, 0, keyLines[i].keys, 8, y, 96, 10});
            items.push_back({ControlKind::staticText, 0, keyLines[i].what, 108, y, 264, 10});
        }
        items.push_back({ControlKind::defaultButton, IDOK, "Close", 316, foot, 56, 14, WS_TABSTOP});
        return items;
    }
    static const DlgTemplate& layOut()
    {
        static const std::vector<DlgItem> all = items();
        static const DlgTemplate dialog = {
            0, "Keys and mouse", 380, foot + 22, all.data(), static_cast<int>(all.size())};
        return dialog;
    }
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

void showKeys(CWnd* parent)
{
    KeyDialog dialog(parent);
    dialog.DoModal();
}

}  // namespace pavane
