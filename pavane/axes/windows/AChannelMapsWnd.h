#pragma once

#include "pavane/windows/ABWindow.h"

#include <memory>

namespace pavane
{

class ChannelMaps;
class PaletteFollower;

/// Channel maps in a window, and on paper; printing needs no window to be open. Shows one of their
/// pages, in the module's palette unless their Prepare sets another.
class PAVANE_API AChannelMapsWnd : public ABWindow
{
public:
    AChannelMapsWnd();
    ~AChannelMapsWnd() override;
    /// Not owned; null for none.
    void SetMaps(ChannelMaps* maps);
    ChannelMaps* GetMaps() const { return maps_; }
    /// The page on the screen, from 1.
    void SetShownPage(int page);
    int GetShownPage() const { return shownPage_; }

    int GetPages(CDC& dc) override;
    /// The object and "~C".
    CString GetSubscript() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    const char* GetWndClassName() override;

private:
    ChannelMaps* maps_ = nullptr;
    int shownPage_ = 1;
    std::unique_ptr<PaletteFollower> palette_;
};

}  // namespace pavane
