#pragma once

#include "apps/view/AreaNumbersTbl.h"
#include "apps/view/PartWindow.h"
#include "pavane/containers/LifeWatch.h"

#include <functional>
#include <optional>
#include <string>

namespace pavane
{

class AAxisWnd;
class ATracker;
class MapDocument;

/// The numbers of the areas below the map. They follow the areas, also while one is dragged, and
/// the plane that is shown. The row of an area chooses it on the map; its name is edited in the
/// table, as a step of undo of the areas.
class AreaNumbersPanel : public PartWindow<AreaNumbersTbl>
{
public:
    /// The window of the map, not owned, which outlives this one's use of it.
    void SetAxisWnd(AAxisWnd* window) { view_ = window; }
    /// The map that is shown, not owned; null for none. To be told of another plane too.
    void SetMap(const MapDocument* map);
    /// Areas, or the current one, are others.
    void AreasChanged();
    /// One of them is dragged: followed as fast as that can be done.
    void AreasChanging();
    /// Whether the panel shows; a hidden one finds no numbers.
    int isShown() const { return isShown_; }
    void Show(int on);
    /// The area without a source, whose noise is that of the errors, by its number from 0; -1: the
    /// noise is that of the map.
    int emptyArea() const { return measures_.noiseArea(); }
    /// Numbers of all planes, until areas or the plane change.
    int isOfAllPlanes() const { return isOfAllPlanes_; }
    const AreaTable& numbers() const { return numbers_; }

    std::function<void(const CString&)> notice;
    /// Called when numbers were found anew and are shown.
    std::function<void()> measured;

    const char* GetWndClassName() override { return "AreaNumbersPanel"; }
    CString strCell(int row, int column) override;
    int isEnableAutoEdit(int row, int column) override;
    int setCellStr(int row, int column, const CString& text) override;
    int SelChanged(ASelectRect& next, ASelectRect& previous) override;
    void amMenuParse(CMenu* popup) override;
    int RunTableCommand(unsigned id) override;
    int canUndo() override;
    int canRedo() override;
    int Undo() override { return walkHistory(0); }
    int Redo() override { return walkHistory(1); }
    CString undoLabel() override;
    CString redoLabel() override;

protected:
    void OnDestroy() override;

private:
    void refresh();
    int measure();
    void fill();
    int areaAt(int row) const;
    int indexOf(const ATracker* tracker) const;
    void toggleEmptyArea();
    void showAllPlanes();
    int walkHistory(int forward);
    void tell(const CString& text) const
    {
        if (notice)
            notice(text);
    }

    AAxisWnd* view_ = nullptr;
    const MapDocument* map_ = nullptr;
    std::optional<AFloatMatrixAccess> cells_;
    AreaMeasures measures_;
    AreaTable numbers_;
    const ATracker* emptyTracker_ = nullptr;
    std::optional<LifeWatch> empty_;  ///< of that
    int isOtherMap_ = 0;
    int isShown_ = 0;
    int isOfAllPlanes_ = 0;
    int choosing_ = 0;  ///< a row and its area follow each other: not round again
    int leaving_ = 0;
    double lastTook_ = 0;  ///< seconds
    double lastEnd_ = 0;
};

}  // namespace pavane
