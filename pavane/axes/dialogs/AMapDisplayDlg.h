#pragma once

#include "pavane/axes/dialogs/DirtyBeam.h"
#include "pavane/axes/maps/MapDisplay.h"
#include "pavane/containers/LifeWatch.h"
#include "platform/property_sheet.h"

#include <memory>
#include <vector>

namespace pavane
{

class AAxisWnd;
class DisplayPage;

/// How the map of a window is displayed, on pages: colours, contours, beam, axes with titles, and
/// presets. The map shows at once what is typed and chosen; "Apply" makes it stay, and Cancel
/// brings back what stayed last. Modal (DoModal) or not (CreateModeless and ShowWindow); without
/// its window it changes nothing any more.
class PAVANE_API AMapDisplayDlg : public CPropertySheet
{
public:
    /// `arcseconds` in a unit of the axes (MapFrame); 0 when the map is not on the sky.
    AMapDisplayDlg(AAxisWnd& plot, double arcseconds, CWnd* parent = nullptr);
    ~AMapDisplayDlg() override;

    /// What "Fit" on the page of the beam fits. Before the sheet is shown.
    void SetDirtyBeam(const DirtyBeamFinder& finder) { finder_ = finder; }
    /// The section of the profile that keeps the presets; "MapPresets" at first.
    void SetPresetSection(const CString& section) { section_ = section; }
    const CString& GetPresetSection() const { return section_; }

    /// How the map is displayed now.
    MapDisplay GetDisplay() const;
    /// Shows the map so, as a step of the views; changes that follow within half a second belong to
    /// it.
    void Show(const MapDisplay& display);
    /// The map was changed by others: the page in front is filled anew where it shows something
    /// else, and Cancel leaves these changes.
    void DisplayChanged();
    /// "To all maps": the host gives the style of this display to its other maps (styleFor).
    virtual void OnForAllMaps(const MapDisplay& display) { (void)display; }

    /// The map is displayed in another way now, by the sheet.
    virtual void OnDisplayShown(const MapDisplay& display) { (void)display; }

    const DirtyBeamFinder& dirtyBeam() const { return finder_; }
    double arcseconds() const { return arcseconds_; }

protected:
    int OnInitDialog() override;
    void OnCancel() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    friend class DisplayPage;
    AAxisWnd* window() const;

    AAxisWnd* window_;
    LifeWatch windowLives_;
    LifeToken life_;
    double arcseconds_;
    DirtyBeamFinder finder_;
    CString section_ = "MapPresets";
    MapDisplay stayed_;  ///< what Cancel brings back
    MapDisplay known_;   ///< how the map was displayed when the sheet looked last
    int showing_ = 0;    ///< the map is being changed by the sheet
    int refused_ = 0;    ///< a page could not be applied
    std::vector<std::unique_ptr<DisplayPage>> pages_;
};

}  // namespace pavane
