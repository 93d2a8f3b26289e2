#include "apps/view/AreaWindow.h"

#include "apps/view/area_pointer.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/tables/components/AComponents.h"
#include "pavane/tables/table_dialogs.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/masks/cell_regions.h"
#include "pavane/trackers/masks/component_mask.h"
#include "pavane/trackers/masks/mask_outlines.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/ABitMatrix.h"
#include "tessel/fits_map.h"

#include <cmath>
#include <vector>

namespace pavane
{

namespace
{

constexpr int listWidth = 110;
constexpr const char* maskFiles = "FITS masks (*.fits)|*.fits;*.fit;*.fts|All files (*.*)|*.*|";
constexpr const char* noMemory = "There is no memory for these areas.";
constexpr int mostCellsAbout = 1000;
constexpr std::size_t mostUnasked = 2000;

/// The cells that are not 0; 0 and why for a mask of another size.
int maskOf(const FitsMap& file, ABitMatrix& mask, std::string& error)
{
    const AMatrix<float>& cells = file.cells;
    if (cells.rows() != mask.rows() || cells.columns() != mask.columns()) {
        error = "the mask has " + std::to_string(cells.columns()) + " by " +
                std::to_string(cells.rows()) + " cells, the map " + std::to_string(mask.columns()) +
                " by " + std::to_string(mask.rows());
        return 0;
    }
    for (int r = 0; r < cells.rows(); ++r)
        for (int c = 0; c < cells.columns(); ++c)
            if (const float value = cells(r, c); value != 0 && std::isfinite(value))
                mask.set(r, c);
    return 1;
}

/// The noise of a map becomes more areas than anybody means.
int agreesToMany(const ABitMatrix& mask)
{
    std::vector<MaskOutline> outlines;
    if (!outlinesOfMask(mask, {}, outlines) || outlines.size() <= mostUnasked)
        return 1;
    return AfxMessageBox("These cells make " + std::to_string(outlines.size()) +
                             " areas. Add all of them?",
                         MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

}  // namespace

std::string countText(int count, const char* what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

int AreaWindow::makeBar(unsigned id)
{
    if (!bar_.Create(WS_CHILD | WS_VISIBLE, CRect(), this, id) || !bar_.SetupButtons(0) ||
        !list_.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | CBS_DROPDOWNLIST, CRect(), &bar_,
                      ID_CHANGE_AREA))
        return 0;
    bar_.AddButton({});
    bar_.AddControl(&list_, listWidth);
    bar_.SetOwnerWnd(this, 0);
    return 1;
}

void AreaWindow::useMap(AAxisWnd& map)
{
    setUpPointer(*map.GetTrackers());
    map.SetToolBar(&bar_);
    map.SetComboBox(&list_);
    map.SetPlayByMouse(1);
    SetAxisWnd(&map);
    for (const unsigned id : {ID_TRACK_UNDO, ID_TRACK_REDO, ID_TRACK_COPY, ID_TRACK_DELETE,
                              ID_ZOOM_MINUS, ID_WHOLE_MAP, ID_SHOW_CELLS})
        bar_.EnableButton(id, 0);  // until there is a map
    (void)tips_.Create(this);
    status_.SetNames({"The value under the pointer", "Its offset from the centre of the map",
                      "Its position on the sky", "Its pixel, from 1",
                      "What the areas hold: cells, sum, mean"});
    status_.ExplainBy(tips_);
}

ATrackerArrayInAxis& AreaWindow::areas() const { return *GetAxisWnd()->GetTrackers(); }

int AreaWindow::askName(CString& name, const CString& filter, const CString& title, int open,
                        const CString& ending)
{
    const unsigned flags = open ? OFN_FILEMUSTEXIST : OFN_OVERWRITEPROMPT;
    return fnFileDialog1(name, filter, title, open, ending, flags, this) && !name.empty();
}

int AreaWindow::closeOpenArea(const char* what)
{
    if (areas().KeptState(-1).empty() || areas().CloseArea(GetAxisWnd()))
        return 1;
    AfxMessageBox(CString("The polygon that is being drawn has too few corners to be ") + what +
                      ".\nSet more of them, or press Escape to drop it.",
                  MB_ICONERROR);
    return 0;
}

int AreaWindow::giveAreas(const ARPTrackerArray& read, const char* label)
{
    MemoryFile bytes;
    areas().BeginEdits(label);
    const int loaded = storeAreas(read, bytes) && bytes.seek(0) && areas().Load(bytes);
    const std::vector<AreaLabel> labels = loaded ? labelsOf(read) : std::vector<AreaLabel>();
    for (std::size_t i = 0; i < labels.size(); ++i)
        if (!labels[i].isEmpty())
            (void)areas().SetLabels(nullptr, {static_cast<int>(i)}, labels[i], 1, 1);
    if (loaded)
        (void)areas().ReopenLast(GetAxisWnd());  // of a copy that was written while it was drawn
    areas().EndEdits(GetAxisWnd());
    if (!loaded)
        AfxMessageBox("There is not enough memory for the areas", MB_ICONERROR);
    return loaded;
}

void AreaWindow::tellOfAdded(int added)
{
    if (added < 0)
        return (void)AfxMessageBox(noMemory, MB_ICONERROR);
    status_.SetMessage(added ? countText(added, "area") + " added" : "There is no cell to mark");
}

void AreaWindow::addAreas(const ABitMatrix& mask, const char* label)
{
    if (agreesToMany(mask))
        tellOfAdded(GetAxisWnd()->AddAreasOfMask(mask, label));
}

void AreaWindow::addAreasOfMaskFile(const std::string& folder)
{
    CString name = folder;
    if (!closeOpenArea("kept") || !askName(name, maskFiles, "Areas from mask", 1, "fits"))
        return;
    const AreaPlace on = place();
    FitsMap file;
    ABitMatrix mask(on.rows, on.columns);
    std::string error = noMemory;
    if (!mask.rows() || !readFitsMap(name, -1, file, error) || !maskOf(file, mask, error)) {
        AfxMessageBox(name + ": " + error, MB_ICONERROR);
        return;
    }
    addAreas(mask, "Areas from mask");
}

void AreaWindow::addAreasOfComponents(const AComponents& components, const MapFrame& frame)
{
    if (!closeOpenArea("kept") || !askNumber(this, "Areas from components", "Cells about each", 0,
                                             mostCellsAbout, cellsAboutComponents_))
        return;
    const AreaPlace on = place();
    ABitMatrix mask(on.rows, on.columns);
    ABitMatrix grown;
    if (!mask.rows() || !componentMask(components, frame, mask) ||
        (cellsAboutComponents_ && !growMask(mask, cellsAboutComponents_, grown)))
        return tellOfAdded(-1);
    addAreas(cellsAboutComponents_ ? grown : mask, "Areas from components");
}

}  // namespace pavane
