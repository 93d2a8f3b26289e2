// The parts of the window: whose commands the menu and the keys mean, what is printed and saved.
#include "apps/clean/CleanWindow.h"
#include "apps/view/part_menu.h"
#include "apps/view/same_file.h"
#include "apps/view/save_picture.h"
#include "pavane/axes/ABAxis.h"
#include "platform/CMenu.h"
#include "tessel/paths.h"

#include <iterator>

namespace pavane
{

void CleanWindow::goToPart(int step)
{
    CWnd* const page = tabs_.GetItemPage(tabs_.GetCurSel());
    CWnd* const parts[] = {&map_, &curve_, &rounds_, page, &row_};
    constexpr int count = static_cast<int>(std::size(parts));
    int at = 0;
    while (at < count && !isWithin(CWnd::GetFocus(), parts[at]))
        ++at;
    at = at == count ? 0 : (at + step + count) % count;
    if (parts[at] == &row_)
        row_.FocusIterations();
    else if (parts[at])
        parts[at]->SetFocus();
}

/// The part with the keyboard, or that had it before a menu or a button.
CWnd* CleanWindow::part()
{
    CWnd* const parts[] = {&map_, &curve_, &rounds_, &areaTable_, &componentTable_, &log_};
    const CWnd* const focus = CWnd::GetFocus();
    if (isWithin(focus, &row_))
        part_ = &map_;
    for (CWnd* const each : parts)
        if (isWithin(focus, each))
            part_ = each;
    // a page of the tabs that is behind has nothing to say
    if (isWithin(part_, &tabs_) && part_ != tabs_.GetItemPage(tabs_.GetCurSel()))
        part_ = &map_;
    return part_;
}

/// The table among the parts that it is; null for another part.
ATableWnd* CleanWindow::partTable()
{
    CWnd* const now = part();
    ATableWnd* const tables[] = {&rounds_, &areaTable_, &componentTable_};
    for (ATableWnd* const each : tables)
        if (each == now)
            return each;
    return nullptr;
}

/// Runs what a command of the menu means in the part with the keyboard; 0 when that is the map's.
int CleanWindow::runPartCommand(unsigned id)
{
    if (ATableWnd* const table = partTable())
        return runInTable(*table, table == &componentTable_, id);
    if (part() == &log_ && id == ID_COPY_TO_CLIPBOARD)
        return log_.Copy(), 1;
    const int isCurves = id == ID_COPY_TO_CLIPBOARD || id == ID_ZOOM_MINUS || id == ID_WHOLE_MAP ||
                         id == ID_VIEW_BACK || id == ID_VIEW_FORWARD;
    return part() == &curve_ && isCurves && curve_.RunCommand(id);
}

/// Texts and states of the lines that mean something else in each part.
void CleanWindow::showPartCommands(CMenu& popup)
{
    if (ATableWnd* const table = partTable())
        return showForTable(popup, *table, table == &componentTable_);
    for (CMenu::Line& line : popup.lines())
        if (line.id == ID_COPY_TO_CLIPBOARD && part() == &log_)
            line.text = "Copy &log\tCtrl+C";
        else if (line.id == ID_COPY_TO_CLIPBOARD && part() == &curve_)
            line.text = "Copy c&urve\tCtrl+C";
}

int CleanWindow::storeEditors()
{
    return rounds_.storeEditor() && areaTable_.storeEditor() && componentTable_.storeEditor();
}

std::string CleanWindow::shownTitle()
{
    return baseNameOf(session_.data()) + ", round " + std::to_string(session_.shown()) + ", " +
           mapKindName(shown_.kind());
}

/// Non-zero when it was a command of printing. A log is no picture: the map is printed for it.
int CleanWindow::print(unsigned id)
{
    if (!shown_.isOpen() || !storeEditors())
        return 1;
    ABWindow* printed = partTable();
    if (!printed)
        printed = part() == &curve_ ? static_cast<ABWindow*>(&curve_) : &map_;
    return printing_.run(id, *printed, shownTitle(), *this);
}

/// 0, and said, when a file is the user's data or lies in the study.
int CleanWindow::mayWrite(const std::string& file)
{
    const std::string folder = session_.study().folder() + '/';
    const int isData = isSameFile(file, session_.data());
    if (!isData && file.compare(0, folder.size(), folder) != 0)
        return 1;
    complain(
        file +
        (isData ? " holds the visibilities" : " lies in the study, which keeps its own files") +
        ". Choose another name.");
    return 0;
}

void CleanWindow::savePicture()
{
    if (!shown_.isOpen())
        return;
    APlotWnd& view = part() == &curve_ ? static_cast<APlotWnd&>(curve_) : map_;
    const std::string kind = &view == &map_ ? mapKindName(shown_.kind()) : "peak";
    std::string name = folderOf(session_.data()) + "round" + std::to_string(session_.shown()) +
                       '-' + kind + ".png";
    if (savePictureOf(view, shownTitle(), name,
                      [this](const std::string& file) { return mayWrite(file); }))
        status_.SetMessage("Saved a picture in " + name);
}

}  // namespace pavane
