#include "apps/view/SurfacePanel.h"

#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/collections/area_outlines.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace pavane
{

int SurfacePanel::Create(CWnd* parent, unsigned id)
{
    return window_.Create(window_.GetWndClassName(), CString(), WS_CHILD | WS_TABSTOP, CRect(),
                          parent, id);
}

void SurfacePanel::Window::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const int step = key == VK_NEXT ? 1 : key == VK_PRIOR ? -1 : 0;
    const int isPlain = GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_SHIFT) >= 0;
    if (step == 0 || !isPlain || !panel_.stepPlane || !panel_.stepPlane(step))
        ASurfaceWnd::OnKeyDown(key, repeat, flags);
}

void SurfacePanel::Show(MapDocument* document)
{
    if (document && document == document_ && picture_) {
        picture_->contentChanged();
        return Follow();
    }
    if (picture_)
        keptView_ = viewOfOne();
    window_.ShowBar(nullptr);
    window_.SetBox(nullptr, 0);
    window_.SetCellLink(nullptr);
    window_.SetLinkedCell(-1, -1);
    map_->SetCellLink(nullptr);
    map_->SetLinkedCell(-1, -1);
    const std::unique_ptr<SurfacePicture> old = std::move(picture_);
    document_ = document;
    if (!document)
        return;
    picture_ = std::make_unique<SurfacePicture>();
    picture_->show(document->inputs());
    picture_->setDisplay(display_);
    picture_->axis().setView(picture_->firstView());
    window_.SetBox(&picture_->axis(), 0);
    if (keptView_)  // which is not the first view of the window
        picture_->axis().setView(*keptView_);
    if (old && old->isAsLargeAs(*picture_)) {
        (void)picture_->setSecond(old->setSecond(nullptr));
        (void)picture_->setColorMap(old->setColorMap(nullptr));
        pictureChanged();
    }
    window_.SetCellLink([this](int row, int column) { map_->SetLinkedCell(row, column); });
    map_->SetCellLink([this](int row, int column) { window_.SetLinkedCell(row, column); });
    SetAreas(*map_->GetTrackers());
    Follow();
}

void SurfacePanel::Follow()
{
    if (!picture_ || !document_)
        return;
    if (picture_->follow(document_->picture().graph(), levels ? levels() : LevelChoice()))
        window_.ShowMoves();
    window_.ContentChanged();
}

void SurfacePanel::SetAreas(const ARPTrackerArray& areas)
{
    if (!picture_)
        return;
    picture_->setAreas(outlinesOf(areas));
    window_.ContentChanged();
}

/// The view with the height that one map has.
BoxView SurfacePanel::viewOfOne() const
{
    BoxView view = picture_->axis().view();
    if (hasSecond())
        view.setHeight(view.height() / 2);
    return view;
}

std::string SurfacePanel::LookText() const
{
    if (!picture_ && !keptView_)
        return {};
    const BoxView view = picture_ ? viewOfOne() : *keptView_;
    std::string text;
    for (const double value :
         {view.azimuth(), view.elevation(), view.height(), static_cast<double>(display_.style),
          static_cast<double>(display_.floor), static_cast<double>(display_.sameRange)})
        text.append(text.empty() ? "" : ",").append(valToStr(value, 6));
    return text;
}

void SurfacePanel::TakeLook(const std::string& text)
{
    std::array<double, 6> values{};
    std::size_t start = 0;
    for (double& value : values) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        if (start > text.size() ||
            !stoval(std::string_view(text).substr(start, end - start), value))
            return;
        start = end + 1;
    }
    constexpr int styles = surfaceContours * 2 - 1, floors = floorColors | floorContours;
    BoxView view;
    if (!view.setView(values[0], values[1]) || !view.setHeight(values[2]) ||
        !(values[3] >= 0 && values[3] <= styles && values[4] >= 0 && values[4] <= floors))
        return;
    keptView_ = view;
    display_.style = static_cast<int>(values[3]);
    display_.floor = static_cast<int>(values[4]);
    display_.sameRange = values[5] != 0;
}

/// What is shown beside colours has changed.
void SurfacePanel::pictureChanged()
{
    window_.ShowBar(picture_->otherBar());
    window_.SetFirstView(picture_->firstView());
    window_.ContentChanged();
}

void SurfacePanel::SetDisplay(const SurfaceDisplay& display)
{
    display_ = display;
    if (!picture_)
        return;
    picture_->setDisplay(display);
    pictureChanged();
}

int SurfacePanel::SetSecond(std::unique_ptr<SideMap> second)
{
    if (!picture_)
        return 0;
    window_.ShowBar(nullptr);
    (void)picture_->setSecond(std::move(second));
    pictureChanged();
    return 1;
}

int SurfacePanel::SetColorMap(std::unique_ptr<SideMap> colors)
{
    if (!picture_)
        return 0;
    window_.ShowBar(nullptr);
    const SideMap* const wanted = colors.get();
    const std::unique_ptr<SideMap> back = picture_->setColorMap(std::move(colors));
    pictureChanged();
    return !wanted || back.get() != wanted;
}

}  // namespace pavane
