// Areas that are made of the cells of a mask file or of components.
#include "apps/view/MainWindow.h"
#include "pavane/tables/components/AComponents.h"
#include "pavane/tables/table_dialogs.h"
#include "pavane/trackers/masks/cell_regions.h"
#include "pavane/trackers/masks/component_mask.h"
#include "pavane/trackers/masks/mask_outlines.h"
#include "platform/message.h"
#include "tessel/fits_map.h"
#include "tessel/paths.h"

#include <cmath>
#include <vector>

namespace pavane
{

namespace
{

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

void MainWindow::tellOfAdded(int added)
{
    if (added < 0)
        return (void)AfxMessageBox(noMemory, MB_ICONERROR);
    status_.SetMessage(!added       ? "There is no cell to mark"
                       : added == 1 ? "1 area added"
                                    : std::to_string(added) + " areas added");
}

void MainWindow::areasOfMask()
{
    CString name = folderOf(map_->file());
    if (!closeOpenArea() || !askName(name, maskFiles, "Areas from mask", 1, "fits"))
        return;
    const AreaPlace on = place();
    FitsMap file;
    ABitMatrix mask(on.rows, on.columns);
    std::string error = noMemory;
    if (!mask.rows() || !readFitsMap(name, -1, file, error) || !maskOf(file, mask, error)) {
        AfxMessageBox(name + ": " + error, MB_ICONERROR);
        return;
    }
    if (agreesToMany(mask))
        tellOfAdded(view_.AddAreasOfMask(mask, "Areas from mask"));
}

void MainWindow::areasOfModel()
{
    if (!map_ || !model_.session().isOpen() || !closeOpenArea() ||
        !askNumber(this, "Areas from components", "Cells about each", 0, mostCellsAbout,
                   cellsAboutComponents_))
        return;
    const AreaPlace on = place();
    ABitMatrix mask(on.rows, on.columns);
    ABitMatrix grown;
    if (!mask.rows() ||
        !componentMask(model_.session().components().list(), map_->inputs().frame, mask) ||
        (cellsAboutComponents_ && !growMask(mask, cellsAboutComponents_, grown)))
        return tellOfAdded(-1);
    const ABitMatrix& cells = cellsAboutComponents_ ? grown : mask;
    if (agreesToMany(cells))
        tellOfAdded(view_.AddAreasOfMask(cells, "Areas from components"));
}

}  // namespace pavane
