#include "platform/tab_control.h"

#include "platform/qt/Control.h"
#include "platform/qt/fonts.h"

#include <algorithm>
#include <QTabBar>
#include <utility>
#include <vector>

namespace pavane
{

namespace
{

/// A wheel over the tabs leaves them alone, as it does other controls.
class Tabs : public QTabBar
{
public:
    using QTabBar::QTabBar;

protected:
    void wheelEvent(QWheelEvent* e) override { e->ignore(); }
};

/// Shows or hides a page once, whether its parents can be seen or not.
void setShown(HWND page, bool shows)
{
    CWnd* const window = CWnd::FromHandle(page);
    if (window && ((window->GetStyle() & WS_VISIBLE) != 0) != shows)
        window->ShowWindow(shows ? SW_SHOW : SW_HIDE);
}

class TabWidget : public Control<QWidget>
{
public:
    explicit TabWidget(QWidget* parent) : Control<QWidget>(parent), bar_(new Tabs(this))
    {
        setAutoFillBackground(true);
        setFocusPolicy(Qt::NoFocus);  // the tabs have one of their own
        setFocusProxy(bar_);
        bar_->setExpanding(false);
        bar_->setElideMode(Qt::ElideNone);
        QObject::connect(bar_, &QTabBar::currentChanged, [this] {
            if (!isSetting_)
                chosenByUser();
        });
    }
    QTabBar& bar() { return *bar_; }
    bool has(int index) const { return index >= 0 && index < bar_->count(); }
    HWND page(int index) const { return pages_[static_cast<std::size_t>(index)]; }
    QRect pageRect() const
    {
        const int top = std::min(height(), bar_->sizeHint().height());
        return {0, top, width(), height() - top};
    }
    int insert(int index, const QString& text, HWND page)
    {
        const int at = std::clamp(index, 0, bar_->count());
        isSetting_ = true;
        pages_.insert(pages_.begin() + at, page);
        bar_->insertTab(at, text);
        isSetting_ = false;
        layOut();
        return at;
    }
    void remove(int index)
    {
        const HWND page = pages_[static_cast<std::size_t>(index)];
        isSetting_ = true;
        pages_.erase(pages_.begin() + index);
        bar_->removeTab(index);
        isSetting_ = false;
        const QPointer<TabWidget> alive = this;
        setShown(page, false);
        if (alive)
            layOut();
    }
    void setPage(int index, HWND page)
    {
        const HWND before = std::exchange(pages_[static_cast<std::size_t>(index)], page);
        const QPointer<TabWidget> alive = this;
        if (before != page)
            setShown(before, false);
        if (alive)
            layOut();
    }
    void choose(int index)
    {
        setCurrent(index);
        layOut();
    }
    /// The page that was chosen comes before the others go, so that the room is never empty.
    void layOut()
    {
        bar_->setGeometry(0, 0, width(), bar_->sizeHint().height());
        const QRect room = pageRect();
        const CRect rect(0, room.top(), width(), room.top() + room.height());
        const int chosen = shown_ = bar_->currentIndex();
        const QPointer<TabWidget> alive = this;
        const std::vector<HWND> pages = pages_;  // handlers may change them
        if (has(chosen)) {
            if (CWnd* const shown = CWnd::FromHandle(pages[static_cast<std::size_t>(chosen)]))
                shown->MoveWindow(rect, 0);
            setShown(pages[static_cast<std::size_t>(chosen)], true);
        }
        for (std::size_t i = 0; alive && i < pages.size(); ++i) {
            if (static_cast<int>(i) != chosen)
                setShown(pages[i], false);
        }
    }

protected:
    bool event(QEvent* e) override
    {
        if (e->type() == QEvent::Resize || e->type() == QEvent::LayoutRequest ||
            e->type() == QEvent::Show)
            layOut();
        return Control<QWidget>::event(e);
    }

private:
    void setCurrent(int index)
    {
        isSetting_ = true;
        bar_->setCurrentIndex(index);
        isSetting_ = false;
    }
    /// The window may keep the tab before; until it has said so, that one is shown as chosen.
    void chosenByUser()
    {
        const QPointer<TabWidget> alive = this;
        const int next = bar_->currentIndex();
        const WindowPeer* const peer = peerOf(this);
        auto* const control = peer ? static_cast<CTabCtrl*>(peer->window) : nullptr;
        if (control && has(shown_) && shown_ != next) {
            setCurrent(shown_);
            const int goesOn = control->OnSelChanging(next);
            if (!alive || !goesOn || !has(next))
                return;
            setCurrent(next);
        }
        layOut();
        if (alive)
            notifyFrom(this, TCN_SELCHANGE);
    }

    QTabBar* bar_;
    std::vector<HWND> pages_;
    bool isSetting_ = false;
    int shown_ = -1;  ///< the tab whose page was shown last
};

TabWidget* tabsOf(const CTabCtrl* control) { return widgetOf<TabWidget>(control); }

/// The control's widget when it has such a tab.
TabWidget* tabsWith(const CTabCtrl* control, int index)
{
    TabWidget* const tabs = tabsOf(control);
    return tabs && tabs->has(index) ? tabs : nullptr;
}

}  // namespace

int CTabCtrl::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const tabs = new TabWidget(client);
    if (!(style & WS_TABSTOP))
        tabs->bar().setFocusPolicy(Qt::NoFocus);
    return attachNative(*this, tabs, "TabControl", CString(), style, rect, parent, id);
}

int CTabCtrl::InsertItem(int index, const CString& text, CWnd* page)
{
    TabWidget* const tabs = tabsOf(this);
    if (!tabs || (page && page->GetParent() != this))
        return -1;
    return tabs->insert(index, textOf(text), page ? page->GetSafeHwnd() : 0);
}

int CTabCtrl::DeleteItem(int index)
{
    TabWidget* const tabs = tabsWith(this, index);
    if (tabs)
        tabs->remove(index);
    return tabs != nullptr;
}

int CTabCtrl::GetItemCount() const
{
    TabWidget* const tabs = tabsOf(this);
    return tabs ? tabs->bar().count() : 0;
}

CString CTabCtrl::GetItemText(int index) const
{
    TabWidget* const tabs = tabsWith(this, index);
    return tabs ? tabs->bar().tabText(index).toStdString() : CString();
}

int CTabCtrl::SetItemText(int index, const CString& text)
{
    TabWidget* const tabs = tabsWith(this, index);
    if (tabs)
        tabs->bar().setTabText(index, textOf(text));
    return tabs != nullptr;
}

CWnd* CTabCtrl::GetItemPage(int index) const
{
    const TabWidget* const tabs = tabsWith(this, index);
    return tabs ? FromHandle(tabs->page(index)) : nullptr;
}

int CTabCtrl::SetItemPage(int index, CWnd* page)
{
    TabWidget* const tabs = tabsWith(this, index);
    if (!tabs || (page && page->GetParent() != this))
        return 0;
    tabs->setPage(index, page ? page->GetSafeHwnd() : 0);
    return 1;
}

int CTabCtrl::GetCurSel() const
{
    TabWidget* const tabs = tabsOf(this);
    return tabs ? tabs->bar().currentIndex() : -1;
}

int CTabCtrl::SetCurSel(int index)
{
    const int before = GetCurSel();
    TabWidget* const tabs = tabsWith(this, index);
    if (tabs && index != before)
        tabs->choose(index);
    return before;
}

int CTabCtrl::SelectNext(int step)
{
    TabWidget* const tabs = tabsOf(this);
    const int count = GetItemCount();
    if (count < 2)
        return 0;
    const int before = GetCurSel();
    const int next = ((before + step % count) + count) % count;
    if (next == before)
        return 0;
    const QPointer<TabWidget> alive = tabs;
    tabs->bar().setCurrentIndex(next);  // which tells as a click does
    return alive && alive->bar().currentIndex() != before;
}

CRect CTabCtrl::GetItemRect(int index) const
{
    TabWidget* const tabs = tabsWith(this, index);
    return tabs ? rectOf(tabs->bar().tabRect(index)) : CRect();
}

CRect CTabCtrl::GetPageRect() const
{
    const TabWidget* const tabs = tabsOf(this);
    return tabs ? rectOf(tabs->pageRect()) : CRect();
}

}  // namespace pavane
