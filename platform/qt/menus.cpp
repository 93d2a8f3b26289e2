#include "platform/qt/menus.h"

#include "platform/CWnd.h"
#include "platform/qt/fonts.h"
#include "platform/qt/line_pictures.h"
#include "platform/qt/look.h"
#include "platform/qt/translation.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QProxyStyle>
#include <utility>

namespace pavane
{

namespace
{

MenuAnswer menuAnswer = nullptr;

/// The key behind the tab of an item's text; empty when there is none or nobody knows it.
QKeySequence keyOf(const CString& text)
{
    const auto tab = text.find('\t');
    if (tab == text.npos)
        return {};
    const QKeySequence keys =
        QKeySequence::fromString(textOf(text.substr(tab + 1)), QKeySequence::PortableText);
    const bool known = keys.count() == 1 && keys[0].key() != Qt::Key_unknown;
    return known ? keys : QKeySequence();
}

QAction* addItem(QMenu* shown, const CMenu::Line& line, bool takesKeys)
{
    const QKeySequence keys = takesKeys ? keyOf(line.text) : QKeySequence();
    const CString text = keys.isEmpty() ? line.text : line.text.substr(0, line.text.find('\t'));
    QAction* const action = shown->addAction(textOf(text));
    action->setShortcut(keys);
    action->setData(line.id);
    action->setEnabled(line.enabled != 0);
    action->setCheckable(line.checked != 0);
    action->setChecked(line.checked != 0);
    action->setIcon(lineIcon(line));
    return action;
}

/// Pictures of lines in their own sizes: the desktop's menus know small squares only.
class PictureSizes : public QProxyStyle
{
public:
    explicit PictureSizes(int side) : side_(side) {}
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override
    {
        const int usual = QProxyStyle::pixelMetric(metric, option, widget);
        return metric == PM_SmallIconSize ? std::max(usual, side_) : usual;
    }

private:
    int side_;
};

/// To be called with each popup before it is filled.
void makeRoomForPictures(QMenu* shown, const CMenu& menu)
{
    int side = 0;
    for (const CMenu::Line& line : menu.lines()) {
        const QSize size = lineIconSize(line);
        side = std::max({side, size.width(), size.height()});
    }
    if (side == 0)
        return;
    QStyle* const before = shown->style();
    auto* const style = new PictureSizes(side);
    style->setParent(shown);
    shown->setStyle(style);
    if (before->parent() == shown)
        delete before;  // of the last time that it opened
}

/// A popup that stands for itself, without keys.
void fillContextMenu(QMenu* shown, const CMenu& menu)
{
    makeRoomForPictures(shown, menu);
    for (const CMenu::Line& line : menu.lines()) {
        if (line.popup) {
            QMenu* const inner = shown->addMenu(textOf(line.text));
            inner->setEnabled(line.enabled != 0);
            fillContextMenu(inner, *line.popup);
        } else if (line.text.empty()) {
            shown->addSeparator();
        } else {
            addItem(shown, line, false);
        }
    }
}

/// The command's line, and the popups on the way to it from the outside in.
const CMenu::Line* findCommand(CMenu& menu, unsigned id, std::vector<CMenu*>& way)
{
    for (CMenu::Line& line : menu.lines()) {
        if (!line.popup && line.id == id && !line.text.empty())
            return &line;
        if (!line.popup)
            continue;
        way.push_back(line.popup.get());
        if (const CMenu::Line* found = findCommand(*line.popup, id, way))
            return line.enabled ? found : nullptr;
        way.pop_back();
    }
    return nullptr;
}

/// Text fields keep the keys that they edit with.
bool isTextField(const QObject* receiver)
{
    const auto* const list = qobject_cast<const QComboBox*>(receiver);
    return (list && list->isEditable()) || qobject_cast<const QLineEdit*>(receiver) ||
           qobject_cast<const QAbstractSpinBox*>(receiver);
}

/// A window that wants characters keeps the keys that type one.
bool isTypedInto(QWidget* widget, const QKeyEvent& key)
{
    const WindowPeer* const peer = peerOf(widget);
    const bool types =
        !key.text().isEmpty() && key.text()[0].isPrint() &&
        !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    return types && peer && sendTo(peer->hwnd, WM_GETDLGCODE, 0, 0) & DLGC_WANTCHARS;
}

unsigned shownChoice(const CMenu& menu, CPoint screen, CWnd* owner)
{
    if (!canShowWindows())
        return 0;
    const QPointer<QMenu> shown = new QMenu(clientOf(owner));
    fillContextMenu(shown, menu);
    const QAction* const action = shown->exec(QPoint(screen.x, screen.y));
    const unsigned id = shown && action ? action->data().toUInt() : 0;
    if (shown)
        shown->deleteLater();
    return id;
}

}  // namespace

MenuBar::MenuBar(HWND top, CMenu menu) : top_(top), menu_(std::move(menu))
{
    setNativeMenuBar(false);
    for (CMenu::Line& line : menu_.lines()) {
        if (line.popup) {
            QMenu* const popup = addMenu(textOf(line.text));
            popup->menuAction()->setEnabled(line.enabled != 0);
            addPopup(popup, *line.popup);
        } else if (!line.text.empty()) {
            QAction* const action = addAction(textOf(line.text));
            connect(action, &QAction::triggered, this, [this, id = line.id] { run(id); });
        }
    }
    qApp->installEventFilter(this);
    raiseTranslation();
}

void MenuBar::addPopup(QMenu* popup, CMenu& menu)
{
    fill(popup, menu, false);
    connect(popup, &QMenu::aboutToShow, this, [this, top = top_, popup = QPointer(popup), &menu] {
        const QPointer<MenuBar> alive = this;
        if (CWnd* const window = CWnd::FromHandle(top))
            window->OnInitMenuPopup(menu);
        if (alive && popup)
            fill(popup, menu, true);
    });
    connect(popup, &QMenu::aboutToHide, this, [popup] {
        for (QAction* action : popup->actions())
            action->setEnabled(true);
    });
}

/// Deliberate: until a popup opens its items are all enabled, because a disabled one would not tell
/// that its key was pressed; `run` asks the window then.
void MenuBar::fill(QMenu* shown, CMenu& menu, bool opens)
{
    qDeleteAll(shown->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    shown->clear();
    makeRoomForPictures(shown, menu);
    for (CMenu::Line& line : menu.lines()) {
        if (line.popup) {
            QMenu* const inner = shown->addMenu(textOf(line.text));
            inner->menuAction()->setEnabled(!opens || line.enabled);
            addPopup(inner, *line.popup);
        } else if (line.text.empty()) {
            shown->addSeparator();
        } else {
            QAction* const action = addItem(shown, line, true);
            action->setEnabled(!opens || line.enabled);
            connect(action, &QAction::triggered, this, [this, id = line.id] { run(id); });
        }
    }
}

/// Gives the keyboard back, as Escape does.
void MenuBar::leave()
{
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QMenuBar::keyPressEvent(&escape);
}

void MenuBar::keyPressEvent(QKeyEvent* e)
{
    QMenuBar::keyPressEvent(e);
    const bool isModifier = e->key() == Qt::Key_Shift || e->key() == Qt::Key_Control ||
                            e->key() == Qt::Key_Alt || e->key() == Qt::Key_Meta;
    if (e->isAccepted() || isModifier)
        return;
    leave();
    QWidget* const focus = QApplication::focusWidget();
    if (!focus || focus == this)
        return;
    QKeyEvent again(e->type(), e->key(), e->modifiers(), e->text(), e->isAutoRepeat());
    QCoreApplication::sendEvent(focus, &again);
    e->accept();
}

void MenuBar::run(unsigned id)
{
    if (hasFocus())
        leave();  // a shortcut in the menu: the window gets the focus back after a dialog
    const QPointer<MenuBar> alive = this;
    std::vector<CMenu*> way;
    const CMenu::Line* line = findCommand(menu_, id, way);
    for (std::size_t i = 0; i < way.size(); ++i) {
        CWnd* const window = CWnd::FromHandle(top_);
        if (!window)
            return;
        window->OnInitMenuPopup(*way[i]);
        if (!alive)
            return;
        // the window may have changed the menu
        way.clear();
        line = findCommand(menu_, id, way);
    }
    if (line && line->enabled)
        sendTo(top_, WM_COMMAND, id & 0xFFFF, 0);
}

bool MenuBar::eventFilter(QObject* receiver, QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return false;
    const auto widget = qobject_cast<QWidget*>(receiver);
    // a drag takes every key itself
    if (!widget || widget->window() != window() || isTextField(widget) || CWnd::GetCapture() ||
        isTypedInto(widget, *static_cast<QKeyEvent*>(event)))
        return false;
    event->ignore();
    return true;
}

int CWnd::SetMenu(const CMenu& menu)
{
    if (!peerOf(this))
        return 0;
    auto* const bar = new MenuBar(hwnd_, menu.Clone());
    if (setMenuBarWidget(hwnd_, bar))
        return 1;
    delete bar;
    return 0;
}

MenuAnswer SetMenuAnswer(MenuAnswer answer) { return std::exchange(menuAnswer, answer); }

int CMenu::TrackPopupMenu(unsigned flags, CPoint screen, CWnd* owner)
{
    if (lines_.empty())
        return 0;
    const HWND target = owner ? owner->GetSafeHwnd() : 0;
    cancelCapture();
    unsigned id = menuAnswer ? menuAnswer(*this, screen) : shownChoice(*this, screen, owner);
    if (menuAnswer) {
        // what could not be chosen on the screen is not chosen
        std::vector<CMenu*> way;
        const Line* const line = findCommand(*this, id, way);
        id = line && line->enabled ? id : 0;
    }
    if (id == 0)
        return 0;
    if (flags & TPM_RETURNCMD)
        return static_cast<int>(id);
    sendTo(target, WM_COMMAND, id & 0xFFFF, 0);
    return 1;
}

}  // namespace pavane
