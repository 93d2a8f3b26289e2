#include "apps/view/several/MapStage.h"

#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr unsigned idTabs = 1, idFirstPane = 10;
/// Of the frame about the current one of maps side by side.
constexpr int frameWidth = 2;

/// "&" is a letter of a file, not the mark of a key.
std::string tabText(std::string name)
{
    for (std::size_t at = 0; (at = name.find('&', at)) != std::string::npos; at += 2)
        name.insert(at, 1, '&');
    return name;
}

}  // namespace

MapStage::MapStage() : nextId_(idFirstPane) { SetFlag(windowNoWaitCursor, 1); }

int MapStage::Create(CWnd* parent, unsigned id)
{
    return CreateEx(0, GetWndClassName(), CString(), WS_CHILD | WS_VISIBLE, CRect(), parent, id) &&
           tabs_.Create(WS_CHILD | WS_TABSTOP, CRect(), this, idTabs);
}

int MapStage::Add(ABWindow& map)
{
    auto pane = std::make_unique<MapPane>();
    if (!pane->Create(this, map, nextId_++))
        return 0;
    pane->bar().moved = [this](int pixels) { moveSlider(pixels); };
    panes_.push_back(std::move(pane));
    return 1;
}

void MapStage::Remove(int map)
{
    if (map < 0 || map >= static_cast<int>(panes_.size()))
        return;
    panes_[static_cast<std::size_t>(map)]->map()->DestroyWindow();
    panes_.erase(panes_.begin() + map);
}

void MapStage::showTabs()
{
    const std::vector<std::string> names = maps_.names();
    while (tabs_.GetItemCount() > static_cast<int>(names.size()))
        (void)tabs_.DeleteItem(tabs_.GetItemCount() - 1);
    for (int i = 0; i < static_cast<int>(names.size()); ++i) {
        const std::string text = tabText(names[static_cast<std::size_t>(i)]);
        if (i == tabs_.GetItemCount())
            (void)tabs_.InsertItem(i, text);
        else if (tabs_.GetItemText(i) != text)
            (void)tabs_.SetItemText(i, text);
    }
    if (tabs_.GetCurSel() != front_)
        (void)tabs_.SetCurSel(front_);
    tabs_.ShowWindow(names.size() > 1 ? SW_SHOW : SW_HIDE);
}

void MapStage::ShowMaps(const MapList& maps)
{
    placing_ = 1;
    maps_ = maps;
    front_ = maps.current();
    showTabs();
    placing_ = 0;
    place();
}

/// Below the tabs.
CRect MapStage::room() const
{
    CRect room;
    if (GetClientRect(room) && maps_.count() > 1)
        room.top = std::min(room.bottom, room.top + std::max(tabs_.GetItemRect(0).bottom, 1));
    return room;
}

void MapStage::place()
{
    if (placing_ || !GetSafeHwnd())
        return;
    placing_ = 1;
    CRect strip;
    GetClientRect(strip);
    const CRect free = room();
    strip.bottom = free.top;
    tabs_.MoveWindow(strip);
    places_ = maps_.places(free);
    places_.resize(panes_.size(), free);  // the window of no map
    if (isOnePlace())
        placeFront(free);
    else
        for (std::size_t i = 0; i < panes_.size(); ++i) {
            CRect at = places_[i];
            at.DeflateRect(frameWidth, frameWidth);
            panes_[i]->Place(at, at, 0);
        }
    Invalidate();
    placing_ = 0;
    if (resized && toldPlaces_ != places_) {
        toldPlaces_ = places_;
        resized();
    }
}

/// Those above the one in front step out of the room: a window that was hidden would lose the
/// keyboard, and would paint itself anew.
void MapStage::placeFront(const CRect& room)
{
    CRect client;
    GetClientRect(client);
    const int left = maps_.shown() == MapsShown::slider ? std::min(front_, maps_.other()) : -1;
    const int right = left < 0 ? -1 : std::max(front_, maps_.other());
    const int front = std::max(0, left < 0 ? front_ : left);
    for (int i = 0; i < static_cast<int>(panes_.size()); ++i) {
        CRect seen = room;
        if (i == right)
            seen.left = std::clamp(static_cast<int>(std::lround(room.left + edge_ * room.Width())),
                                   room.left, std::max(room.left, room.right - SliderBar::width));
        else if (i > front)
            seen.OffsetRect(0, client.Height() + 1);
        panes_[static_cast<std::size_t>(i)]->Place(i > front && i != right ? seen : room, seen,
                                                   i == right);
    }
}

void MapStage::ShowFront(int map)
{
    if (map == front_ || map < 0 || map >= static_cast<int>(panes_.size()))
        return;
    front_ = map;
    if (isOnePlace())
        placeFront(room());
    else
        Invalidate();
    placing_ = 1;
    (void)tabs_.SetCurSel(map);
    placing_ = 0;
}

SliderBar* MapStage::slider()
{
    if (maps_.shown() != MapsShown::slider || maps_.other() < 0)
        return nullptr;
    const int upper = std::max(front_, maps_.other());
    return &panes_[static_cast<std::size_t>(upper)]->bar();
}

void MapStage::moveSlider(int pixels)
{
    const CRect free = room();
    if (free.Width() > 0)
        edge_ = std::clamp(edge_ + static_cast<double>(pixels) / free.Width(), 0.0, 1.0);
    placeFront(free);
}

void MapStage::OnSize(unsigned type, int cx, int cy)
{
    ABWindow::OnSize(type, cx, cy);
    place();
}

int MapStage::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id != idTabs || code != TCN_SELCHANGE)
        return ABWindow::OnCommand(id, code, control);
    if (chosen && !placing_)
        chosen(tabs_.GetCurSel());
    return 1;
}

/// What shows between the maps, with a frame about the current one.
void MapStage::DrawWindow(CDC& dc, CRect& /*client*/, CRect& update)
{
    dc.FillSolidRect(update, GetSysColor(COLOR_BTNFACE));
    if (!isOnePlace() && front_ >= 0)
        dc.FillSolidRect(places_[static_cast<std::size_t>(front_)], GetSysColor(COLOR_HIGHLIGHT));
}

}  // namespace pavane
