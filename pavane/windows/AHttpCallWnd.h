#pragma once

#include "pavane/windows/ABWindow.h"
#include "platform/accessibility.h"

#include <memory>

namespace pavane
{

/// The service that shows web addresses has answered a link; wParam is who.
inline constexpr unsigned WM_DDE_ACK = 0x03E4;

/// A link: a label that opens a web address in the user's browser, by mouse, Enter or Space; or,
/// not visible, a window that only opens addresses. Addresses are http, https, ftp and mailto; what
/// else could be meant by one is never opened (CheckedWebAddress).
class PAVANE_API AHttpCallWnd : public ABWindow, public AccessSource
{
public:
    /// Reads what the desktop has registered for "http".
    AHttpCallWnd();
    ~AHttpCallWnd() override;

    void SetHttp(const CString& url) { url_ = url; }
    /// Whether the window will be a label; 0 at first.
    void SetVisible(int visible) { visible_ = visible; }
    /// A child window with identifier 0; its title is the label's text. Non-zero on success.
    int Create(CWnd* parent, const CRect& rect);
    /// Takes the place of control `controlId` of `dialog` as a visible label with the control's
    /// text. Non-zero on success.
    int UpDateControl(const CString& text, CWnd* dialog, unsigned controlId);

    /// Opens the address: by the desktop's opener, or when that is not there or fails by the
    /// registered program, its service on the session's bus before its command. Waits a second at
    /// most while there is a window, which then goes on by a timer; else two for the opener, which
    /// is left to itself then, and for an answer of the service. Non-zero when a program has the
    /// address or is still at it; 0 when none took it or it may not be opened.
    int GotoURL();

    int Create(const CString& className, const CString& title, unsigned style, const CRect& rect,
               CWnd* parent, unsigned id) = delete;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    /// On paper the letters are as high as on the screen.
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    int GetClassParms(WNDCLASSA& wc) override;
    /// Draws the label's text; font, colour and background have been chosen.
    virtual void PaintText(CDC& dc, CRect& rect);

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    CString OnToolTip(CPoint point) override;
    AccessSource* GetAccess() override { return visible_ ? this : nullptr; }
    int GetAccessPart(AccessId id, AccessPart& part) const override;
    int AccessActivate(AccessId id) override;
    int AccessSetFocus(AccessId id) override;

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnTimer(unsigned id) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnSetFocus(CWnd* old) override;
    void OnKillFocus(CWnd* next) override;

private:
    class Opening;
    int open(int withOpener);
    int goOn(int milliseconds);
    void acknowledged(HWND server);
    void drawLabel(CDC& dc, CRect& rect);

    CString command_;  ///< starts the browser
    CString ddeExec_;  ///< what is sent to it: a template with "%1", "" for the address alone
    CString ddeApplication_;  ///< its service
    CString ddeTopic_;        ///< and object
    CString url_;
    int visible_ = 0;
    HWND server_ = 0;  ///< who answered
    std::unique_ptr<Opening> opening_;
};

}  // namespace pavane
