// The areas of the window: their files, sets, and those that come of masks and components.
#include "apps/clean/clean_menu.h"
#include "apps/clean/CleanWindow.h"
#include "apps/view/same_file.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/clean/AAreaSetsDlg.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"
#include "tessel/folders.h"
#include "tessel/paths.h"

namespace pavane
{

namespace
{

/// In the folder of the study; sets beyond this size are none of ours.
constexpr const char* setsFile = "/area-sets";
constexpr std::int64_t mostSetBytes = std::int64_t{64} << 20;

}  // namespace

AreaPlace CleanWindow::place() const
{
    if (!shown_.isOpen())
        return {};
    const AMatrix<float>& cells = shown_.content().map.cells;
    return {shown_.content().frame.centres(), cells.rows(), cells.columns(), &shown_.sky()};
}

void CleanWindow::takeAreas(const std::string& stored, const char* label)
{
    MemoryFile bytes;
    areas().BeginEdits(label);
    const int loaded =
        bytes.write(stored.data(), std::ssize(stored)) && bytes.seek(0) && areas().Load(bytes);
    areas().EndEdits(&map_);
    if (!loaded)
        return complain("The areas cannot be read");
    areas().FillAreasCB(&map_);
    map_.FollowAreas();
}

void CleanWindow::openAreaFile()
{
    if (!shown_.isOpen())
        return;
    CString name = folderOf(session_.data());
    if (!askName(name, openAreaFilter, "Open areas", 1, "areas"))
        return;
    ATrackerArrayInAxis read;
    AreaNotes notes;
    std::string error;
    if (!openAreas(name, place(), read, notes, error))
        return complain(error);
    if (!notes.loss.empty())
        return complain(name + ": " + notes.lossText());
    if (!giveAreas(read, "Open areas"))
        return;
    areas().FillAreasCB(&map_);
    map_.FollowAreas();
}

void CleanWindow::saveAreaFile()
{
    if (!shown_.isOpen())
        return;
    CString name = folderOf(session_.data()) + "clean.areas";
    if (!askName(name, saveAreaFilter, "Save areas", 0, "areas") || !closeOpenArea("saved") ||
        !mayWrite(name))
        return;
    const AreaNotes losses = lossesOfSaving(name, place(), areas());
    if (!losses.lines.empty() && AfxMessageBox(baseNameOf(name) + " cannot hold everything: " +
                                                   losses.lines.front() + "\n\nSave all the same?",
                                               MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES)
        return;
    std::string error;
    if (saveAreas(name, place(), areas(), error))
        status_.SetMessage("Saved the areas in " + name);
    else
        complain(error);
}

int CleanWindow::runAreaCommand(unsigned id)
{
    switch (id) {
    case idOpenAreaFile:
        return openAreaFile(), 1;
    case idSaveAreaFile:
        return saveAreaFile(), 1;
    case idDelete:
        return map_.DeleteFocused();
    }
    if (!shown_.isOpen())
        return 0;
    switch (id) {
    case idAreasOfMask:
        return addAreasOfMaskFile(folderOf(session_.data())), 1;
    case idAreasOfRound:
        return areasOfRound(), 1;
    case idAreaSets:
        return askAreaSets(), 1;
    }
    return 0;
}

/// Of the components as they stand in the table.
void CleanWindow::areasOfRound()
{
    showComponents(1);
    if (!componentTable_.GetNote().empty())
        return complain(componentTable_.GetNote());
    if (components_.list().count() == 0)
        return status_.SetMessage("The round has no component yet: clean first");
    addAreasOfComponents(components_.list(), shown_.content().frame);
}

/// Sets of areas by name lie in the study.
void CleanWindow::askAreaSets()
{
    if (!closeOpenArea("kept"))
        return;
    const std::string file = session_.study().folder() + setsFile;
    AAreaSets sets;
    std::string bytes, fault;
    if (IsFileExists(file)) {
        MemoryFile in;
        if (readWhole(file, mostSetBytes, bytes, fault))
            in.assign(bytes);
        if (!fault.empty() || !sets.Load(in))
            return complain(file + ": " +
                            (fault.empty() ? "there are no sets of areas in it" : fault));
    }
    MemoryFile now;
    AreaCollection onMap;
    if (!storeAreas(areas(), now) || !now.seek(0) || !onMap.Load(now))
        return complain("There is not enough memory for the areas");
    const AreaPlace on = place();
    AAreaSetsDlg dialog(sets, onMap, {on.range, on.rows, on.columns, on.sky}, this);
    if (dialog.DoModal() != IDOK)
        return;
    MemoryFile taken;
    if (dialog.IsOtherAreas() && onMap.Store(taken))
        takeAreas(taken.bytes(), "Set of areas");
    if (!dialog.IsOtherSets())
        return;
    MemoryFile kept;
    if (session_.study().isReadOnly())
        fault = "the study is open to be read only";
    else if (sets.Store(kept) && writeWhole(file, kept.bytes(), fault))
        return;
    complain("The sets of areas were not kept: " + fault);
}

}  // namespace pavane
