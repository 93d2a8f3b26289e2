#include "platform/controls.h"
#include "platform/qt/Control.h"
#include "platform/qt/fonts.h"

#include <algorithm>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QProxyStyle>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

namespace pavane
{

namespace
{

constexpr int maxTextLength = 128;
constexpr int maxShownLines = 16;

/// Lists open below the line, where their rectangle is, and not over it.
class ListsBelow : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        return hint == SH_ComboBox_Popup ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QStyle* listsBelow()
{
    // goes with the application object
    static QPointer<QStyle> style;
    if (!style) {
        style = new ListsBelow;
        style->setParent(qApp);
    }
    return style;
}

/// Lines of a list at a height that the program chose.
class LineHeight : public QStyledItemDelegate
{
public:
    LineHeight(int height, QObject* parent) : QStyledItemDelegate(parent), height_(height) {}
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return {QStyledItemDelegate::sizeHint(option, index).width(), height_};
    }

private:
    int height_;
};

class ComboBox : public Control<QComboBox>
{
public:
    explicit ComboBox(QWidget* parent) : Control<QComboBox>(parent) { setStyle(listsBelow()); }
    int itemHeight = 0;  ///< of the line without its frame; 0: what the font needs
    int listRoom = 0;    ///< of the rectangle below the line

    void showPopup() override
    {
        const QPointer<QWidget> alive = this;
        notifyFrom(this, CBN_DROPDOWN);  // the list may be filled only now
        if (!alive)
            return;
        const int line = view()->sizeHintForRow(0);
        const int room = line > 0 ? listRoom / line : 0;
        setMaxVisibleItems(room > 0 ? room : maxShownLines);
        isChosen_ = false;
        QComboBox::showPopup();
    }
    void hidePopup() override
    {
        const bool wasOpen = view()->isVisible();
        const QPointer<ComboBox> alive = this;
        QComboBox::hidePopup();
        if (!wasOpen || !alive)
            return;
        // some displays leave no window active after a list
        if (const WindowPeer* const top = peerOf(window()))
            reactivate(top->hwnd);
        // a choice is told of after the list is gone
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!isChosen_)
                    notifyFrom(this, CBN_SELENDCANCEL);
            },
            Qt::QueuedConnection);
        notifyFrom(this, CBN_CLOSEUP);
    }
    void choose()
    {
        isChosen_ = true;
        notifyFrom(this, CBN_SELCHANGE);
    }
    /// As high as an edit beside it would be, unless the program says it; what is left of the
    /// rectangle is the list's.
    CRect lineOf(const CRect& rect)
    {
        constexpr int aroundText = 8;
        constexpr int frame = 6;
        const int own = fontMetrics().height() + aroundText;
        const int height = itemHeight > 0      ? itemHeight + frame
                           : rect.Height() > 0 ? std::min(own, rect.Height())
                                               : own;
        listRoom = std::max(0, rect.Height() - height);
        return {rect.left, rect.top, rect.right, rect.top + height};
    }

private:
    bool isChosen_ = false;
};

bool hasLine(int index, int count) { return index >= 0 && index < count; }

void selectText(QComboBox& box, const CString& text)
{
    const QSignalBlocker quiet(&box);
    const int line = box.findText(textOf(text));
    if (line >= 0 || !box.isEditable())
        box.setCurrentIndex(line);
    if (box.isEditable())
        box.setEditText(textOf(text));
}

}  // namespace

int CComboBox::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const box = new ComboBox(client);
    box->keepsWheel = false;
    box->setMaxVisibleItems(maxShownLines);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    if ((style & CBS_DROPDOWNLIST) == CBS_DROPDOWN) {
        box->setEditable(true);
        box->setCompleter(nullptr);
        box->lineEdit()->setMaxLength(maxTextLength);
        QObject::connect(box->lineEdit(), &QLineEdit::textEdited,
                         [box] { notifyFrom(box, CBN_EDITCHANGE); });
    }
    box->notices = {CBN_SETFOCUS, CBN_KILLFOCUS};
    QObject::connect(box, &QComboBox::activated, [box] { box->choose(); });
    if (!attachNative(*this, box, "ComboBox", CString(), style, box->lineOf(rect), parent, id))
        return 0;
    peerOf(this)->covered = [box](const CRect& whole) { return box->lineOf(whole); };
    setTextAccess(
        *this, [box](const CString& t) { selectText(*box, t); },
        [box] { return box->currentText().toStdString(); });
    return 1;
}

int CComboBox::AddString(const CString& text)
{
    auto* const box = widgetOf<QComboBox>(this);
    if (!box)
        return -1;
    const QSignalBlocker quiet(box);
    const int chosen = box->currentIndex();
    const QString typed = box->currentText();
    box->addItem(textOf(text));
    box->setCurrentIndex(chosen);
    if (box->isEditable())
        box->setEditText(typed);
    return box->count() - 1;
}

int CComboBox::DeleteString(int index)
{
    auto* const box = widgetOf<QComboBox>(this);
    if (!box || !hasLine(index, box->count()))
        return -1;
    const QSignalBlocker quiet(box);
    const int chosen = box->currentIndex();
    box->removeItem(index);
    // the toolkit would go on to a neighbour of the line that was chosen
    if (chosen == index)
        box->setCurrentIndex(-1);
    return box->count();
}

void CComboBox::ResetContent()
{
    if (auto* const box = widgetOf<QComboBox>(this)) {
        const QSignalBlocker quiet(box);
        box->clear();
    }
}

int CComboBox::GetCount() const
{
    const auto* const box = widgetOf<QComboBox>(this);
    return box ? box->count() : 0;
}

int CComboBox::GetCurSel() const
{
    const auto* const box = widgetOf<QComboBox>(this);
    return box ? box->currentIndex() : -1;
}

int CComboBox::SetCurSel(int index)
{
    auto* const box = widgetOf<QComboBox>(this);
    if (!box)
        return -1;
    const QSignalBlocker quiet(box);
    box->setCurrentIndex(hasLine(index, box->count()) ? index : -1);
    return box->currentIndex();
}

int CComboBox::SelectString(int after, const CString& text)
{
    auto* const box = widgetOf<QComboBox>(this);
    const int count = box ? box->count() : 0;
    const QString wanted = textOf(text);
    for (int i = 1; i <= count; ++i) {
        const int line = (std::clamp(after, -1, count - 1) + i) % count;
        if (box->itemText(line).startsWith(wanted, Qt::CaseInsensitive))
            return SetCurSel(line);
    }
    return -1;
}

CString CComboBox::GetLBText(int index) const
{
    const auto* const box = widgetOf<QComboBox>(this);
    return box ? box->itemText(index).toStdString() : CString();
}

void CComboBox::ShowDropDown(int show)
{
    if (auto* const box = widgetOf<QComboBox>(this))
        show ? box->showPopup() : box->hidePopup();
}

int CComboBox::GetDroppedState() const
{
    auto* const box = widgetOf<QComboBox>(this);
    return box && box->view()->isVisible() ? 1 : 0;
}

int CComboBox::SetItemHeight(int index, int height)
{
    auto* const box = widgetOf<ComboBox>(this);
    if (!box || index < -1 || height < 1)
        return 0;
    if (index >= 0) {
        auto* const lines = new LineHeight(height, box);
        box->view()->setItemDelegate(lines);
        return 1;
    }
    const QRect now = box->geometry();
    const int bottom = now.y() + now.height() + box->listRoom;
    box->itemHeight = height;
    const CRect line = box->lineOf({now.x(), now.y(), now.x() + now.width(), bottom});
    box->setGeometry(line.left, line.top, line.Width(), line.Height());
    return 1;
}

int CListBox::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const list = new Control<QListWidget>(client);
    list->setUniformItemSizes(true);
    QObject::connect(list, &QListWidget::currentRowChanged,
                     [list] { notifyFrom(list, LBN_SELCHANGE); });
    QObject::connect(list, &QListWidget::itemDoubleClicked,
                     [list] { notifyFrom(list, LBN_DBLCLK); });
    return attachNative(*this, list, "ListBox", CString(), style, rect, parent, id);
}

int CListBox::AddString(const CString& text)
{
    auto* const list = widgetOf<QListWidget>(this);
    if (!list)
        return -1;
    const QSignalBlocker quiet(list);
    list->addItem(textOf(text));
    return list->count() - 1;
}

int CListBox::DeleteString(int index)
{
    auto* const list = widgetOf<QListWidget>(this);
    if (!list || !hasLine(index, list->count()))
        return -1;
    const QSignalBlocker quiet(list);
    const bool wasChosen = list->currentRow() == index;
    delete list->takeItem(index);
    if (wasChosen)
        list->setCurrentRow(-1);
    return list->count();
}

void CListBox::ResetContent()
{
    if (auto* const list = widgetOf<QListWidget>(this)) {
        const QSignalBlocker quiet(list);
        list->clear();
    }
}

int CListBox::GetCount() const
{
    const auto* const list = widgetOf<QListWidget>(this);
    return list ? list->count() : 0;
}

int CListBox::GetCurSel() const
{
    const auto* const list = widgetOf<QListWidget>(this);
    return list ? list->currentRow() : -1;
}

int CListBox::SetCurSel(int index)
{
    auto* const list = widgetOf<QListWidget>(this);
    if (!list)
        return -1;
    const QSignalBlocker quiet(list);
    list->setCurrentRow(hasLine(index, list->count()) ? index : -1);
    return list->currentRow();
}

CString CListBox::GetText(int index) const
{
    const auto* const list = widgetOf<QListWidget>(this);
    const QListWidgetItem* const item = list ? list->item(index) : nullptr;
    return item ? item->text().toStdString() : CString();
}

}  // namespace pavane
