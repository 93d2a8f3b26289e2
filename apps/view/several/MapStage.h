#pragma once

#include "apps/view/several/MapList.h"
#include "apps/view/several/MapPane.h"
#include "platform/tab_control.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// The place of the maps in the main window: one alone, behind tabs, side by side, or two with a
/// slider between them. Windows in one place all have its size, whether they are seen or not, and
/// so the pictures that they keep: each shows at once.
class MapStage : public ABWindow
{
public:
    MapStage();
    int Create(CWnd* parent, unsigned id);
    /// Makes the window of the next map, which is not owned. Non-zero on success.
    int Add(ABWindow& map);
    /// Before the window of a map goes.
    void Remove(int map);
    /// Places the maps as their list says, the current one in front.
    void ShowMaps(const MapList& maps);
    /// Another one of those that lie in one place comes to the front, in the tabs too.
    void ShowFront(int map);
    /// The number of the one in front, -1 for none.
    int front() const { return front_; }
    /// Whether they lie in one place, of one size.
    int isOnePlace() const { return maps_.shown() != MapsShown::sideBySide || maps_.count() < 2; }
    CTabCtrl& tabs() { return tabs_; }
    /// The bar between two maps; null while there is none.
    SliderBar* slider();

    std::function<void(int map)> chosen;  ///< a tab was
    std::function<void()> resized;        ///< the maps have another size

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override { return "PavaneMapStage"; }

protected:
    void OnSize(unsigned type, int cx, int cy) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    CRect room() const;
    void place();
    void placeFront(const CRect& room);
    void showTabs();
    void moveSlider(int pixels);

    CTabCtrl tabs_;
    std::vector<std::unique_ptr<MapPane>> panes_;
    MapList maps_;
    std::vector<std::string> names_;
    std::vector<CRect> places_;
    std::vector<CRect> toldPlaces_;  ///< when `resized` was called last
    int front_ = -1;
    double edge_ = 0.5;  ///< of the slider, in widths of the room
    int placing_ = 0;
    unsigned nextId_ = 0;
};

}  // namespace pavane
