// Named positions over the map of the window.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/view_dialogs.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/paths.h"

namespace pavane
{

namespace
{

constexpr const char* openFilter =
    "Names and positions (*.csv *.tsv *.txt)|*.csv *.tsv *.txt|All files (*)|*|";

}  // namespace

int MainWindow::runMarkCommand(unsigned id)
{
    if (id == idOpenMarks && map_) {
        CString name = folderOf(marksFile_.empty() ? map_->file() : marksFile_);
        if (fnFileDialog1(name, openFilter, "Open marks", 1, "csv", OFN_FILEMUSTEXIST, this) &&
            !name.empty())
            (void)openMarks(name);
        return 1;
    }
    if (id != idNoMarks)
        return 0;
    skyMarks_.clear();
    marksFile_.clear();
    placeMarks();
    status_.SetMessage("No marks");
    return 1;
}

void MainWindow::showMarkCommands(CMenu& popup)
{
    for (CMenu::Line& line : popup.lines())
        if (line.id == idOpenMarks || line.id == idSaveWork)
            line.enabled = map_ != nullptr;
        else if (line.id == idNoMarks)
            line.enabled = !marksFile_.empty();
}

int MainWindow::openMarks(const std::string& file)
{
    SkyMarks read;
    std::string error;
    if (!readSkyMarks(file, map_->sky().skyFrame(), read, error)) {
        AfxMessageBox(file + ": " + error, MB_ICONERROR);
        return 0;
    }
    if (read.lostCount > 0 &&
        askAboutLines(this, "Open marks", lostMarksText(read), read.lost,
                      "Show the other " + std::to_string(read.marks.size()) + "?", "Show") != IDOK)
        return 0;
    skyMarks_ = std::move(read.marks);
    marksFile_ = file;
    placeMarks();
    const int placed = view().GetSkyMarks().placed();
    status_.SetMessage(countText(static_cast<int>(skyMarks_.size()), "mark") + " of " +
                       baseNameOf(file) +
                       (placed == static_cast<int>(skyMarks_.size())
                            ? std::string()
                            : "; the map has a place for " + std::to_string(placed)));
    return 1;
}

/// Marks are of the sky: each map of the window has them, and those that are opened later.
void MainWindow::placeMarks()
{
    for (int i = 0; i < maps_.count(); ++i)
        placeMarks(viewOf(i), *documentOf(i));
}

void MainWindow::placeMarks(MapWindow& window, const MapDocument& document) const
{
    SkyMarkLayer layer;
    layer.setMarks(skyMarks_, document.sky(), document.inputs().frame);
    window.SetSkyMarks(std::move(layer));
}

}  // namespace pavane
