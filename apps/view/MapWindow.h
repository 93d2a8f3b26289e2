#pragma once

#include "apps/view/main_menu.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "platform/CMenu.h"

namespace pavane
{

/// What the map window tells the main window.
class MapWindowOwner
{
public:
    virtual ~MapWindowOwner() = default;
    virtual void mapStatus(const AxisStatus& status) = 0;
    virtual void mapAreasChanged() = 0;
    virtual void mapNotice(const CString& text) = 0;
    virtual void mapSavePicture() = 0;
};

/// The map with its areas, in the main window.
class MapWindow : public AAxisWnd
{
public:
    explicit MapWindow(MapWindowOwner& owner) : owner_(owner) {}
    /// The areas were replaced behind the window's back.
    void FollowAreas()
    {
        Invalidate();
        areasChanged();
    }
    void OnStatus(const AxisStatus& status) override
    {
        AAxisWnd::OnStatus(status);
        owner_.mapStatus(status);
    }
    void OnAreasChanged() override
    {
        AAxisWnd::OnAreasChanged();
        owner_.mapAreasChanged();
    }
    void OnNotice(const CString& text) override { owner_.mapNotice(text); }
    /// The pictures of the program are called as in its own menus.
    void amMenuParse(CMenu* popup) override
    {
        AAxisWnd::amMenuParse(popup);
        for (CMenu::Line& line : popup->lines())
            if (line.id == ID_COPY_TO_CLIPBOARD)
                line.text = copyPictureText;
            else if (line.id == ID_COPY_TO_BMP)
                line.text = savePictureText;
    }

protected:
    void OnCopyToBMP() override { owner_.mapSavePicture(); }

private:
    MapWindowOwner& owner_;
};

}  // namespace pavane
