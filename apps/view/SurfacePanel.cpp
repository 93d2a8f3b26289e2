#include "apps/view/SurfacePanel.h"

#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/collections/area_outlines.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"

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
    BoxView before = picture_ ? picture_->axis().view() : BoxView();
    if (hasSecond())  // which goes with its map
        before.setHeight(before.height() / 2);
    const bool isNew = !picture_;
    window_.ShowBar(nullptr);
    window_.SetBox(nullptr, 0);
    window_.SetCellLink(nullptr);
    window_.SetLinkedCell(-1, -1);
    map_.SetCellLink(nullptr);
    map_.SetLinkedCell(-1, -1);
    picture_.reset();
    document_ = document;
    if (!document)
        return;
    picture_ = std::make_unique<SurfacePicture>();
    picture_->show(document->inputs());
    picture_->setDisplay(display_);
    picture_->axis().setView(picture_->firstView());
    window_.SetBox(&picture_->axis(), 0);
    if (!isNew)  // which is not the first view of the window
        picture_->axis().setView(before);
    window_.SetCellLink([this](int row, int column) { map_.SetLinkedCell(row, column); });
    map_.SetCellLink([this](int row, int column) { window_.SetLinkedCell(row, column); });
    SetAreas(*map_.GetTrackers());
    Follow();
}

void SurfacePanel::Follow()
{
    if (!picture_ || !document_)
        return;
    if (picture_->follow(document_->picture().graph()))
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

int SurfacePanel::SetSecond(std::unique_ptr<MapContent> second)
{
    if (!picture_)
        return 0;
    window_.ShowBar(nullptr);
    picture_->setSecond(std::move(second));
    pictureChanged();
    return 1;
}

int SurfacePanel::SetColorMap(std::unique_ptr<MapContent> colors)
{
    if (!picture_)
        return 0;
    window_.ShowBar(nullptr);
    const int isTaken = picture_->setColorMap(std::move(colors));
    pictureChanged();
    return isTaken;
}

}  // namespace pavane
