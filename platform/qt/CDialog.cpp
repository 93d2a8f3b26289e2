#include "platform/CDialog.h"

#include "platform/controls.h"
#include "platform/core/dialog_units.h"
#include "platform/qt/Control.h"
#include "platform/qt/dialog_controls.h"
#include "platform/qt/DialogWidget.h"
#include "platform/qt/fonts.h"
#include "platform/qt/look.h"
#include "platform/qt/WindowPeer.h"
#include "platform/resources.h"

#include <QLabel>
#include <utility>

namespace pavane
{

namespace
{

DialogAnswer dialogAnswer = nullptr;

/// How a dialog ended; outlives the object, which a handler may delete.
struct Outcome {
    bool ended = false;
    int result = -1;
};

/// The native side of a dialog that stands in another window.
class PageWidget : public Control<QWidget>
{
public:
    using Control<QWidget>::Control;

protected:
    void resizeEvent(QResizeEvent*) override
    {
        if (const WindowPeer* const peer = peerOf(this); peer && peer->widget == this)
            sendTo(peer->hwnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(width(), height()));
    }
};

/// The native dialog that is this one or that it stands in.
DialogWidget* dialogAround(const CWnd* window)
{
    QWidget* const widget = clientOf(window);
    return widget ? dynamic_cast<DialogWidget*>(widget->window()) : nullptr;
}

/// Makes a window in the place of a control; lists keep their native side.
int makeInPlace(CWnd& window, unsigned exStyle, const CString& className, const CString& title,
                unsigned style, const CRect& place, CWnd& dialog, unsigned id)
{
    if (auto* const list = dynamic_cast<CListBox*>(&window))
        return list->Create(style, place, &dialog, id);
    return window.CreateEx(exStyle, className, title, style, place, &dialog, id);
}

/// The text whose letter gives the focus to a control; null for none.
QLabel* labelOf(QWidget* control)
{
    for (QObject* const each : control->parentWidget()->children())
        if (auto* const label = qobject_cast<QLabel*>(each); label && label->buddy() == control)
            return label;
    return nullptr;
}

}  // namespace

struct CDialog::Data {
    const DlgTemplate* dialogTemplate = nullptr;
    HWND parent = 0;
    DialogControls controls;
    std::shared_ptr<Outcome> modal;  ///< null while nobody waits

    int create(CDialog& dialog);
    int createWithin(CDialog& dialog, CWnd& around);
    int fill(CDialog& dialog, HWND hwnd);
    void giveFirstFocus(CDialog& dialog) const;
};

CDialog::CDialog(unsigned templateId, CWnd* parent) : data_(std::make_unique<Data>())
{
    data_->dialogTemplate = FindDialogTemplate(templateId);
    data_->parent = parent ? parent->GetSafeHwnd() : 0;
}

CDialog::CDialog(const DlgTemplate& dialog, CWnd* parent) : data_(std::make_unique<Data>())
{
    data_->dialogTemplate = &dialog;
    data_->parent = parent ? parent->GetSafeHwnd() : 0;
}

// the window goes before the objects of its controls
CDialog::~CDialog() { DestroyWindow(); }

/// Makes the window and its controls, and lets the object fill them.
int CDialog::Data::create(CDialog& dialog)
{
    if (!dialogTemplate || dialog.GetSafeHwnd() || !canShowWindows())
        return 0;
    QWidget* const owner = clientOf(FromHandle(parent));
    QWidget* const front = owner ? owner->window() : frontWindow();
    auto* const widget = new DialogWidget(front, (dialogTemplate->style & WS_THICKFRAME) != 0);
    CREATESTRUCT cs;
    cs.className = "Dialog";
    cs.title = dialogTemplate->title ? dialogTemplate->title : "";
    cs.style = WS_CAPTION | WS_SYSMENU | dialogTemplate->style;
    const WindowPeer* const frontPeer = peerOf(front);
    cs.parent = owner ? FromHandle(parent) : frontPeer ? frontPeer->window : nullptr;
    const HWND hwnd = attach(dialog, widget, cs)->hwnd;
    widget->setHandle(hwnd);
    widget->setWindowTitle(textOf(cs.title));
    const CRect size = dialogUnits().pixels(0, 0, dialogTemplate->cx, dialogTemplate->cy);
    widget->setClientSize(QSize(size.Width(), size.Height()));
    if (!fill(dialog, hwnd))
        return 0;
    if (dialog.OnInitDialog() && peerOf(hwnd))
        giveFirstFocus(dialog);
    return peerOf(hwnd) != nullptr;
}

int CDialog::Data::createWithin(CDialog& dialog, CWnd& around)
{
    QWidget* const client = clientOf(&around);
    if (!dialogTemplate || dialog.GetSafeHwnd() || !client)
        return 0;
    auto* const widget = new PageWidget(client);
    widget->setFocusPolicy(Qt::NoFocus);
    widget->hide();
    CREATESTRUCT cs;
    cs.className = "Page";
    cs.style = WS_CHILD;
    cs.parent = &around;
    const HWND hwnd = attach(dialog, widget, cs)->hwnd;
    const CRect size = dialogUnits().pixels(0, 0, dialogTemplate->cx, dialogTemplate->cy);
    widget->resize(size.Width(), size.Height());
    if (fill(dialog, hwnd))
        dialog.OnInitDialog();
    return peerOf(hwnd) != nullptr;
}

int CDialog::Data::fill(CDialog& dialog, HWND hwnd)
{
    controls = {};
    if (!makeControls(dialog, *dialogTemplate, controls)) {
        destroyPeer(hwnd);
        return 0;
    }
    return 1;
}

void CDialog::Data::giveFirstFocus(CDialog& dialog) const
{
    for (const HWND hwnd : controls.order) {
        const WindowPeer* const peer = peerOf(hwnd);
        if (peer && peer->widget && peer->widget->focusPolicy() & Qt::TabFocus &&
            peer->widget->isEnabled()) {
            peer->widget->setFocus(Qt::TabFocusReason);
            return;
        }
    }
    if (QWidget* const widget = clientOf(&dialog))
        widget->setFocus(Qt::OtherFocusReason);
}

int CDialog::CreateWithin(CWnd& around)
{
    data_->modal = nullptr;
    return data_->createWithin(*this, around);
}

int CDialog::CreateModeless()
{
    data_->modal = nullptr;
    return data_->create(*this);
}

int CDialog::DoModal()
{
    const auto outcome = std::make_shared<Outcome>();
    data_->modal = outcome;
    const WindowPeer* const front = peerOf(frontWindow());
    const HWND owner = data_->parent ? data_->parent : front ? front->hwnd : 0;
    cancelCapture();
    if (!data_->create(*this))
        return outcome->result;
    const HWND hwnd = GetSafeHwnd();
    // OnInitDialog may have ended it already
    if (!outcome->ended && dialogAnswer) {
        const int answer = dialogAnswer(*this);
        if (!outcome->ended)
            outcome->result = answer;
    } else if (!outcome->ended) {
        peerOf(hwnd)->isModal = true;
        const QPointer<QDialog> shown = static_cast<QDialog*>(clientOf(this));
        shown->exec();
    }
    destroyPeer(hwnd);
    reactivate(owner);
    return outcome->result;
}

void CDialog::EndDialog(int result)
{
    const HWND hwnd = GetSafeHwnd();
    if (!data_->modal) {
        DestroyWindow();
        return;
    }
    data_->modal->ended = true;
    data_->modal->result = result;
    // DoModal goes on once it is hidden
    if (QWidget* const widget = clientOf(FromHandle(hwnd)))
        widget->hide();
}

void CDialog::NextDlgCtrl() { moveFocus(true); }
void CDialog::PrevDlgCtrl() { moveFocus(false); }

void CDialog::moveFocus(bool forward)
{
    auto* const widget = dialogAround(this);
    if (!widget)
        return;
    widget->moveFocus(forward);
    // a dialog that is not active yet has only noted it
    const WindowPeer* const peer = peerOf(widget->focusWidget());
    if (peer && peer->window && !widget->isActiveWindow())
        peer->window->SetFocus();
}

CString CDialog::GetDlgItemText(unsigned id) const
{
    const CWnd* const control = GetDlgItem(id);
    return control ? control->GetWindowText() : CString();
}

void CDialog::SetDlgItemText(unsigned id, const CString& text)
{
    if (CWnd* const control = GetDlgItem(id))
        control->SetWindowText(text);
}

int CDialog::ReplaceControl(unsigned id, CWnd& window, const CString& className,
                            const CString& title, unsigned style)
{
    CWnd* const old = GetDlgItem(id);
    const WindowPeer* const peer = peerOf(old);
    if (!peer || !peer->outer() || window.GetSafeHwnd())
        return 0;
    const HWND oldHandle = peer->hwnd;
    const unsigned exStyle = peer->exStyle;
    QWidget* const outer = peer->outer();
    const QRect r = outer->geometry();
    // its neighbour above, in the stacking order
    const QObjectList siblings = outer->parentWidget()->children();
    QPointer<QWidget> above;
    for (auto i = siblings.indexOf(outer) + 1; i > 0 && i < siblings.size() && !above; ++i)
        above = qobject_cast<QWidget*>(siblings[i]);
    const QPointer<QLabel> label = labelOf(outer);
    old->DestroyWindow();
    const CRect place(r.x(), r.y(), r.x() + r.width(), r.y() + r.height());
    if (!makeInPlace(window, exStyle, className, title, style | WS_CHILD | WS_VISIBLE, place, *this,
                     id))
        return 0;
    const WindowPeer* const made = peerOf(&window);
    if (made && above)
        made->outer()->stackUnder(above);
    if (made && label)
        label->setBuddy(made->widget.data());
    for (HWND& hwnd : data_->controls.order)
        if (hwnd == oldHandle)
            hwnd = window.GetSafeHwnd();
    chainControls(data_->controls.order);
    return 1;
}

void CDialog::SetClientSize(int cx, int cy)
{
    if (auto* const widget = widgetOf<DialogWidget>(this))
        widget->setClientSize(QSize(cx, cy));
}

void CDialog::AllowResize(int cx, int cy, int across, int down)
{
    if (auto* const widget = widgetOf<DialogWidget>(this))
        widget->allowResize(QSize(cx, cy), across != 0, down != 0);
}

CRect CDialog::MapDialogRect(const CRect& units) const
{
    return dialogUnits().pixels(units.left, units.top, units.Width(), units.Height());
}

int CDialog::OnCommand(unsigned id, unsigned code, CWnd*)
{
    if (code != 0 || (id != IDOK && id != IDCANCEL))
        return 0;
    if (id == IDOK)
        OnOK();
    else
        OnCancel();
    return 1;
}

DialogAnswer SetDialogAnswer(DialogAnswer answer) { return std::exchange(dialogAnswer, answer); }

}  // namespace pavane
