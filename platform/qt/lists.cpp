#include "platform/controls.h"
#include "platform/qt/Control.h"
#include "platform/qt/fonts.h"

#include <algorithm>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>

namespace pavane
{

namespace
{

constexpr int maxTextLength = 128;
constexpr int maxShownLines = 16;

class ComboBox : public Control<QComboBox>
{
public:
    using Control<QComboBox>::Control;
    void showPopup() override
    {
        const QPointer<QWidget> alive = this;
        notifyFrom(this, CBN_DROPDOWN);  // the list may be filled only now
        if (alive)
            QComboBox::showPopup();
    }
    void hidePopup() override
    {
        const bool wasOpen = view()->isVisible();
        QComboBox::hidePopup();
        if (wasOpen)
            notifyFrom(this, CBN_CLOSEUP);
    }
};

/// As high as an edit beside it would be.
int lineHeight(const QComboBox& box, const CRect& rect)
{
    constexpr int aroundText = 8;
    const int own = box.fontMetrics().height() + aroundText;
    return rect.Height() > 0 ? std::min(own, rect.Height()) : own;
}

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
    QObject::connect(box, &QComboBox::activated, [box] { notifyFrom(box, CBN_SELCHANGE); });
    const CRect place(rect.left, rect.top, rect.right, rect.top + lineHeight(*box, rect));
    if (!attachNative(*this, box, "ComboBox", CString(), style, place, parent, id))
        return 0;
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
