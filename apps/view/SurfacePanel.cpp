#include "apps/view/SurfacePanel.h"

#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
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

void SurfacePanel::Show(MapDocument* document)
{
    const BoxView before = picture_ ? picture_->axis().view() : BoxView();
    const bool isNew = !picture_;
    window_.SetBox(nullptr, 0);
    window_.SetCellLink(nullptr);
    map_.SetCellLink(nullptr);
    map_.SetLinkedCell(-1, -1);
    picture_.reset();
    document_ = document;
    if (!document)
        return;
    picture_ = std::make_unique<SurfacePicture>();
    picture_->show(document->inputs());
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
    picture_->follow(document_->picture().graph());
    window_.ContentChanged();
}

void SurfacePanel::SetAreas(const ARPTrackerArray& areas)
{
    if (!picture_)
        return;
    picture_->setAreas(outlinesOf(areas));
    window_.ContentChanged();
}

}  // namespace pavane
