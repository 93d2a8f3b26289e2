#include "platform/controls.h"
#include "platform/image_list.h"
#include "platform/qt/Control.h"
#include "platform/qt/fonts.h"
#include "platform/qt/line_pictures.h"

#include <algorithm>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>
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
    /// Room for pictures as large as `size` beside those that there are.
    void showIcons(QSize size)
    {
        icons_ = icons_.expandedTo(size);
        setIconSize(icons_);
    }
    void choose()
    {
        isChosen_ = true;
        const QPointer<QWidget> alive = this;
        const WindowPeer* const peer = peerOf(this);
        auto* const control = peer ? static_cast<CComboBox*>(peer->window) : nullptr;
        const int tells = !control || control->OnSelChosen(currentIndex());
        if (tells && alive)
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
    QSize icons_;
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

int CComboBox::AddString(const CString& text) { return InsertString(GetCount(), text); }

int CComboBox::InsertString(int index, const CString& text)
{
    auto* const box = widgetOf<QComboBox>(this);
    if (!box)
        return -1;
    const QSignalBlocker quiet(box);
    const int chosen = box->currentIndex();
    const QString typed = box->currentText();
    const int at = hasLine(index, box->count()) ? index : box->count();
    box->insertItem(at, textOf(text));
    box->setCurrentIndex(chosen >= at ? chosen + 1 : chosen);
    if (box->isEditable())
        box->setEditText(typed);
    return at;
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

namespace
{

int showIcon(ComboBox* box, int index, const QIcon& icon, QSize size)
{
    if (!box || !hasLine(index, box->count()))
        return 0;
    box->setItemIcon(index, icon);
    if (!icon.isNull())
        box->showIcons(size);
    return 1;
}

}  // namespace

int CComboBox::SetItemImage(int index, const CImageList& images, int image)
{
    const QIcon icon = lineIcon(images, image);
    const CSize size = images.GetImageSize();
    return !icon.isNull() && showIcon(widgetOf<ComboBox>(this), index, icon, {size.cx, size.cy});
}

int CComboBox::SetItemPicture(int index, const CPicture& picture, int ratio)
{
    return showIcon(widgetOf<ComboBox>(this), index, lineIcon(picture, ratio),
                    lineIconSize(picture, ratio));
}

int CComboBox::SetFilter(int on)
{
    auto* const box = widgetOf<QComboBox>(this);
    if (!box || !box->isEditable())
        return 0;
    QCompleter* completer = nullptr;
    if (on) {
        completer = new QCompleter(box->model(), box);
        completer->setFilterMode(Qt::MatchContains);
        completer->setCaseSensitivity(Qt::CaseInsensitive);
        completer->setMaxVisibleItems(maxShownLines);
    }
    box->setCompleter(completer);
    return 1;
}

}  // namespace pavane
