#pragma once

#include "platform/CWnd.h"
#include "platform/dialog_template.h"
#include "platform/message.h"

#include <memory>

namespace pavane
{

/// A dialog built from a template. Its controls are made with the classes of controls.h and belong
/// to the dialog; GetDlgItem finds them. A placeholder is an empty frame until ReplaceControl.
class PAVANE_API CDialog : public CWnd
{
public:
    explicit CDialog(unsigned templateId, CWnd* parent = nullptr);
    explicit CDialog(const DlgTemplate& dialog, CWnd* parent = nullptr);
    ~CDialog() override;

    /// Shows the dialog and returns when EndDialog was called (IDOK, IDCANCEL ...); -1 when there
    /// is no such template.
    virtual int DoModal();
    /// Makes the dialog without showing it or waiting; ShowWindow shows it. Non-zero on success.
    int CreateModeless();
    /// Ends DoModal with that result; a dialog that nobody waits for is destroyed.
    void EndDialog(int result);
    int IsDialog() const override { return 1; }

    /// Moves the focus to the next or the previous control with WS_TABSTOP, around the ends.
    void NextDlgCtrl();
    void PrevDlgCtrl();
    CString GetDlgItemText(unsigned id) const;
    void SetDlgItemText(unsigned id, const CString& text);
    /// Destroys control `id` and makes `window` with its rectangle, identifier, place in the tab
    /// order and stacking order; `style` with WS_CHILD | WS_VISIBLE. Non-zero on success.
    int ReplaceControl(unsigned id, CWnd& window, const CString& className, const CString& title,
                       unsigned style);
    /// The same frame with other dimensions, in pixels; for dialogs that lay out themselves.
    void SetClientSize(int cx, int cy);
    /// Lets the user change the size of the client area, in pixels never below `cx` and `cy`;
    /// across or down only where that is of use. With a grip, and a box to maximise when both are.
    void AllowResize(int cx, int cy, int across = 1, int down = 1);
    /// Pixels of a rectangle in dialog units.
    CRect MapDialogRect(const CRect& units) const;

protected:
    /// Before it shows; 0 when it set the focus itself.
    virtual int OnInitDialog() { return 1; }
    /// The Enter key, or the button IDOK.
    virtual void OnOK() { EndDialog(IDOK); }
    /// The Escape key, the close box, or the button IDCANCEL.
    virtual void OnCancel() { EndDialog(IDCANCEL); }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnClose() override { OnCancel(); }
    /// Makes the dialog as a hidden child of `around`, with its controls and without a frame; keys
    /// that end a dialog go to the one that it stands in. Non-zero on success.
    int CreateWithin(CWnd& around);

private:
    void moveFocus(bool forward);
    struct Data;
    std::unique_ptr<Data> data_;
};

/// For tests: called with the dialog, complete but not shown, when it would wait for the user;
/// returns its result, unless it called EndDialog (sent WM_COMMAND IDOK ...). Null shows dialogs.
using DialogAnswer = int (*)(CDialog& dialog);
PAVANE_API DialogAnswer SetDialogAnswer(DialogAnswer answer);

}  // namespace pavane
