#pragma once

#include "apps/view/any_area_file.h"
#include "apps/view/StatusLine.h"
#include "pavane/axes/windows/ATrackerToolBar.h"
#include "pavane/axes/windows/ATrackToolBarOwnerWnd.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/controls.h"

namespace pavane
{

class AAxisWnd;
class ABitMatrix;
class AComponents;
class ARPTrackerArray;
class ATrackerArrayInAxis;
struct MapFrame;

/// The kinds of maps, and of area files, for the dialog of files.
inline constexpr const char* mapFilter =
    "Maps, visibilities and work files (*.fits *.fit *.fts *.FITS *.uvfits *.uvf *.work)|"
    "*.fits *.fit *.fts *.FITS *.uvfits *.uvf *.work|All files (*)|*|";
inline constexpr const char* openAreaFilter =
    "Area files (*.areas *.cma *.reg *.crtf *.win)|*.areas *.cma *.reg *.crtf *.win|"
    "All files (*)|*|";
inline constexpr const char* saveAreaFilter =
    "Areas, nothing lost (*.areas)|*.areas|Polygons of cells (*.cma)|*.cma|"
    "DS9 regions (*.reg)|*.reg|CASA regions (*.crtf)|*.crtf|"
    "Windows of Difmap (*.win)|*.win|";

/// "2 areas", "1 area".
std::string countText(int count, const char* what);

/// A main window of a program that marks areas on a map: its toolbar with the list of areas, its
/// status line and tips, and what is done to areas in the same way everywhere.
class AreaWindow : public ATrackToolBarOwnerWnd
{
public:
    const StatusLine& statusLine() const { return status_; }

protected:
    /// The map on which the areas of now lie.
    virtual AreaPlace place() const = 0;

    /// Makes toolbar and list as children, before the map.
    int makeBar(unsigned id);
    /// Lets toolbar, list and pointer work on the areas of a map, and makes the tips. After map and
    /// status line were made.
    void useMap(AAxisWnd& map);
    ATrackerArrayInAxis& areas() const;

    /// Asks for a file; non-zero when there is a name.
    int askName(CString& name, const CString& filter, const CString& title, int open,
                const CString& ending);
    /// Closes the polygon that is being drawn; 0 when it cannot be, which the user is told. `what`
    /// is to be done next: "saved".
    int closeOpenArea(const char* what);
    /// Puts areas in the place of those of the map, as one step of undo. 0, and said, without
    /// memory.
    int giveAreas(const ARPTrackerArray& read, const char* label);
    /// Adds areas of the cells of a mask file near `folder`, that the user chooses.
    void addAreasOfMaskFile(const std::string& folder);
    /// Adds areas of the cells of components, with so many about each as the user says.
    void addAreasOfComponents(const AComponents& components, const MapFrame& frame);

    ATrackerToolBar bar_;
    CComboBox list_;
    StatusLine status_;
    AToolTip tips_;

private:
    void addAreas(const ABitMatrix& mask, const char* label);
    void tellOfAdded(int added);
    int cellsAboutComponents_ = 2;
};

}  // namespace pavane
