#pragma once

#include "pavane/dialogs/values/AAreaSets.h"
#include "pavane/dialogs/values/area_files.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "pavane/windows/AResizeDialog.h"

namespace pavane
{

/// The dialog "CLEAN areas": the areas on the map and sets of areas under names. A set can become
/// the map's areas, these can be kept as a set, and each can be read from and written to a file of
/// any form, what the form cannot hold being told before anything is written. OK takes it all,
/// Cancel leaves areas and sets as they were; files stay written.
class PAVANE_API AAreaSetsDlg : public AResizeDialog
{
public:
    /// `sets` and `areas`, those on the map, outlive the dialog.
    AAreaSetsDlg(AAreaSets& sets, AreaCollection& areas, const AreaMap& map,
                 CWnd* parent = nullptr);

    /// After OK: whether the map has other areas now, and whether sets were changed.
    int IsOtherAreas() const { return isOtherAreas_; }
    int IsOtherSets() const { return isOtherSets_; }

protected:
    int OnInitDialog() override;
    void OnOK() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    int chosen() const;
    void list(int line);
    void showChoice();
    void note(const CString& text);
    void refuse(const CString& text, unsigned id);
    void use();
    void keep();
    void rename();
    void remove();
    void readFile();
    void writeFile();
    int ask(const CString& text);

    AAreaSets& sets_;
    AreaCollection& areas_;
    AreaMap map_;
    AAreaSets edited_;
    AreaCollection shown_;  ///< what the map has after OK
    int isOtherAreas_ = 0, isOtherSets_ = 0;
};

}  // namespace pavane
