#pragma once

#include "pavane/windows/ABWindow.h"

namespace pavane
{

class AAxisWnd;

/// The window behind a tracker toolbar: has one handler for each button and hands the command to
/// its axis window. Heirs that want a tool to do something else override its handler.
class PAVANE_API ATrackToolBarOwnerWnd : public ABWindow
{
public:
    /// Where the tools work, not owned; null for none.
    void SetAxisWnd(AAxisWnd* window) { axisWnd_ = window; }
    AAxisWnd* GetAxisWnd() const { return axisWnd_; }
    // Its pages are those of the axis window.
    int GetPages(CDC& dc) override;
    CString GetSubscript() override;
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    const char* GetWndClassName() override;

    virtual void OnArrow();
    virtual void OnRect();
    virtual void OnRotateRect();
    virtual void OnArea();
    virtual void OnEllipse();
    virtual void OnZoomPlus();
    virtual void OnZoomMinus();
    virtual void OnTrackDelete();
    virtual void OnTrackCopy();
    /// The zoom factors 2, 3, 4, 6 and 8; each also takes the zoom tool up.
    virtual void OnZoom1();
    virtual void OnZoom2();
    virtual void OnZoom3();
    virtual void OnZoom4();
    virtual void OnZoom5();
    /// Another line of the list of areas was chosen.
    virtual void OnChangeArea();
    /// The list of zoom factors below the zoom button.
    virtual void OnDropDown();
    virtual void OnUndo();
    virtual void OnRedo();
    virtual void OnShowCells();
    virtual void OnWholeMap();

protected:
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void run(unsigned id);
    void focusAxis(HWND self);

    AAxisWnd* axisWnd_ = nullptr;
};

}  // namespace pavane
