#pragma once

#include "pavane/axes/dialogs/AHistogramWnd.h"
#include "pavane/axes/maps/cells/RangeRule.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/trackers/shapes/AreaLayer.h"
#include "pavane/windows/AResizeDialog.h"
#include "pavane/windows/controls/AListBox.h"
#include "tessel/ABitMatrix.h"

#include <functional>
#include <memory>

namespace pavane
{

class AAxisWnd;
class AColorsGraph;

/// Plays with the colours of the map in a window, without holding the window up: range and transfer
/// curve on a histogram, fields, ways to choose the range, scale and palette. The map follows every
/// move; each release is one step of the window's views, and so are keys and letters that follow
/// within half a second. Cancel brings back what was when the dialog came up.
///
/// Give it planes before it is shown, then call CreateModeless and ShowWindow. It follows the
/// window (drags of the right button, steps through the views) and closes when the window goes.
/// Tell it when the window shows another map or plane.
class PAVANE_API APalettePlayDlg : public AResizeDialog
{
public:
    /// Which cells the histogram and the ranges come from.
    enum class Cells { map, view, areas, planes };

    explicit APalettePlayDlg(AAxisWnd& plot, CWnd* parent = nullptr);
    ~APalettePlayDlg() override;

    /// The planes of the cube whose plane the window shows; not owned, and to outlive the dialog or
    /// the next call. Fewer than two: no cube.
    void SetPlanes(const std::vector<const AMatrixAccess*>& planes);
    /// The window shows another plane or map, or its cells have changed. With a range for each
    /// plane the map gets the one that the last way to choose gives here, also when the dialog was
    /// closed meanwhile.
    void MapChanged();
    /// The palette of the module is another one: the list shows it.
    void PaletteChanged();
    /// Non-zero when each plane gets a range of its own, as one that shows its least to greatest
    /// value does. A range that is typed, dragged or brought by others is for all planes.
    int IsByPlane() const { return planes_.size() > 1 && choice_.byPlane && !isOfPlanes(); }
    /// The last way to choose the range; `fixed` for one typed or dragged.
    const RangeRule& GetRule() const { return choice_.rule; }
    /// Chooses a range, as the buttons do.
    void UseRule(const RangeRule& rule);
    const AMapHistogram& GetHistogram() const { return histogram_; }
    AHistogramWnd& histogramWindow() { return histogramWindow_; }
    /// The module's palette was changed for all maps, or, when `IsForAll` is 0, is again what it
    /// was: a host gives it to the maps of its other windows and draws them.
    virtual void OnPaletteForAll() {}
    int IsForAll() const { return usedForAll_; }
    /// The cells of all planes are gone over. Those that take long to come ask `goesOn` now and
    /// then, and break off when it answers 0; it is empty when that has ended.
    virtual void OnCounting(const std::function<int()>& goesOn) { (void)goesOn; }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnOK() override;
    void OnCancel() override;
    void OnDestroy() override;
    void OnTimer(unsigned id) override;

private:
    struct Palette {
        CString name;
        std::vector<COLORREF> colours;
    };
    AAxisWnd* window() const;
    AColorsGraph* graph() const;
    void listen(int on);
    void addLine(unsigned id, const char* text);
    /// How the range came about.
    struct Choice {
        RangeRule rule;
        TMnMx range;      ///< that `rule` has made, or that was found
        int byPlane = 1;  ///< as an unset range is
    };
    MapPart chosenPart();
    int isLeastToGreatest(const RangeRule& rule) const;
    void followRange();
    void setByPlane(int on);
    int isOfPlanes() const { return cells_ == Cells::planes && planes_.size() > 1; }
    void overCells(int ways, const std::function<void()>& work);
    void leavePlanes();
    void countCells();
    TMnMx wantedBars() const;
    void countBars();
    void refresh();
    void setField(unsigned id, const CString& text);
    void show(const ColorLook& look);
    void step(const ColorLook& look);
    void showHandles();
    void fieldChanged(unsigned id);
    void chooseFromList(unsigned id);
    void fillPalettes();
    void showPalette();
    void choosePalette();
    void savePalette();
    void useForAll();
    void note(const CString& text);

    AAxisWnd* window_;
    LifeWatch windowLives_;
    LifeToken life_;
    ColorLook opened_;
    ColorLook dragged_;  ///< before the drag that is going on
    AMapHistogram histogram_;
    AHistogramWnd histogramWindow_;
    AListBox paletteList_;
    std::vector<const AMatrixAccess*> planes_;
    std::unique_ptr<AStackedAccess> stacked_;
    ABitMatrix mask_;
    MapPart shownPart_;     ///< of the histogram; its mask is that of shownMask_
    ABitMatrix shownMask_;  ///< without bits for none
    std::vector<AreaOutline> shownAreas_;
    Cells cells_ = Cells::map;
    Choice choice_;
    Choice openedChoice_;
    Choice draggedChoice_;   ///< before the drag that is going on
    int filling_ = 0;        ///< controls are being filled by the dialog
    int counting_ = 0;       ///< a way over the planes of a cube goes on
    CString openedPalette_;  ///< of the module, when the dialog came up
    int usedForAll_ = 0;     ///< it is another one by this dialog
    unsigned typing_ = 0;
    std::vector<Palette> palettes_;  ///< by line of the list
};

}  // namespace pavane
