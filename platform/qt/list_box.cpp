#include "platform/controls.h"
#include "platform/image_list.h"
#include "platform/qt/Control.h"
#include "platform/qt/fonts.h"
#include "platform/qt/line_pictures.h"

#include <algorithm>
#include <QListWidget>
#include <QSignalBlocker>

namespace pavane
{

namespace
{

class ListWidget : public Control<QListWidget>
{
public:
    explicit ListWidget(QWidget* parent) : Control<QListWidget>(parent)
    {
        setUniformItemSizes(true);
    }
    bool hasChecks = false;
    bool hasSeveral() const { return selectionMode() == QAbstractItemView::ExtendedSelection; }
    bool has(int index) const { return index >= 0 && index < count(); }
    int showIcon(int index, const QIcon& icon, QSize size)
    {
        if (!has(index))
            return 0;
        const QSignalBlocker quiet(this);
        item(index)->setIcon(icon);
        if (!icon.isNull()) {
            icons_ = icons_.expandedTo(size);
            setIconSize(icons_);
            setUniformItemSizes(false);  // the first line may have none
        }
        return 1;
    }

private:
    QSize icons_;
};

ListWidget* listOf(const CListBox* control) { return widgetOf<ListWidget>(control); }

/// The control's widget when it has such a line.
ListWidget* listWith(const CListBox* control, int index)
{
    ListWidget* const list = listOf(control);
    return list && list->has(index) ? list : nullptr;
}

}  // namespace

int CListBox::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const list = new ListWidget(client);
    list->hasChecks = (style & LBS_CHECKS) != 0;
    if (style & LBS_EXTENDEDSEL) {
        list->setSelectionMode(QAbstractItemView::ExtendedSelection);
        QObject::connect(list, &QListWidget::itemSelectionChanged,
                         [list] { notifyFrom(list, LBN_SELCHANGE); });
    } else {
        QObject::connect(list, &QListWidget::currentRowChanged,
                         [list] { notifyFrom(list, LBN_SELCHANGE); });
    }
    QObject::connect(list, &QListWidget::itemDoubleClicked,
                     [list] { notifyFrom(list, LBN_DBLCLK); });
    QObject::connect(list, &QListWidget::itemChanged, [list] { notifyFrom(list, LBN_CHECKED); });
    return attachNative(*this, list, "ListBox", CString(), style, rect, parent, id);
}

int CListBox::AddString(const CString& text) { return InsertString(GetCount(), text); }

int CListBox::InsertString(int index, const CString& text)
{
    ListWidget* const list = listOf(this);
    if (!list)
        return -1;
    const QSignalBlocker quiet(list);
    const int at = list->has(index) ? index : list->count();
    auto* const line = new QListWidgetItem(textOf(text));
    if (list->hasChecks) {
        line->setFlags(line->flags() | Qt::ItemIsUserCheckable);
        line->setCheckState(Qt::Unchecked);
    }
    list->insertItem(at, line);
    return at;
}

int CListBox::DeleteString(int index)
{
    ListWidget* const list = listWith(this, index);
    if (!list)
        return -1;
    const QSignalBlocker quiet(list);
    const bool wasChosen = list->currentRow() == index;
    delete list->takeItem(index);
    if (wasChosen && !list->hasSeveral())
        list->setCurrentRow(-1);
    return list->count();
}

void CListBox::ResetContent()
{
    if (ListWidget* const list = listOf(this)) {
        const QSignalBlocker quiet(list);
        list->clear();
    }
}

int CListBox::GetCount() const
{
    const ListWidget* const list = listOf(this);
    return list ? list->count() : 0;
}

int CListBox::GetCurSel() const
{
    const ListWidget* const list = listOf(this);
    return list ? list->currentRow() : -1;
}

int CListBox::SetCurSel(int index)
{
    ListWidget* const list = listOf(this);
    if (!list)
        return -1;
    const QSignalBlocker quiet(list);
    list->setCurrentRow(list->has(index) ? index : -1);
    if (!list->has(index))
        list->clearSelection();
    return list->currentRow();
}

CString CListBox::GetText(int index) const
{
    const ListWidget* const list = listWith(this, index);
    return list ? list->item(index)->text().toStdString() : CString();
}

int CListBox::GetSel(int index) const
{
    const ListWidget* const list = listWith(this, index);
    return list && list->item(index)->isSelected() ? 1 : 0;
}

int CListBox::SetSel(int index, int on)
{
    ListWidget* const list = listOf(this);
    if (!list || !list->hasSeveral() || (index != -1 && !list->has(index)))
        return 0;
    const QSignalBlocker quiet(list);
    if (index == -1)
        on ? list->selectAll() : list->clearSelection();
    else
        list->item(index)->setSelected(on != 0);
    return 1;
}

int CListBox::GetSelCount() const { return static_cast<int>(GetSelItems().size()); }

std::vector<int> CListBox::GetSelItems() const
{
    std::vector<int> chosen;
    if (const ListWidget* const list = listOf(this)) {
        for (const QModelIndex& line : list->selectionModel()->selectedIndexes())
            chosen.push_back(line.row());
    }
    std::sort(chosen.begin(), chosen.end());
    return chosen;
}

int CListBox::SelectString(int after, const CString& text)
{
    const int count = GetCount();
    const QString wanted = textOf(text);
    for (int i = 1; i <= count; ++i) {
        const int line = (std::clamp(after, -1, count - 1) + i) % count;
        if (textOf(GetText(line)).startsWith(wanted, Qt::CaseInsensitive))
            return SetCurSel(line);
    }
    return -1;
}

int CListBox::SetItemImage(int index, const CImageList& images, int image)
{
    ListWidget* const list = listOf(this);
    const QIcon icon = lineIcon(images, image);
    const CSize size = images.GetImageSize();
    return list && !icon.isNull() && list->showIcon(index, icon, {size.cx, size.cy});
}

int CListBox::SetItemPicture(int index, const CPicture& picture, int ratio)
{
    ListWidget* const list = listOf(this);
    return list && list->showIcon(index, lineIcon(picture, ratio), lineIconSize(picture, ratio));
}

int CListBox::GetCheck(int index) const
{
    const ListWidget* const list = listWith(this, index);
    return list && list->hasChecks && list->item(index)->checkState() == Qt::Checked ? 1 : 0;
}

int CListBox::SetCheck(int index, int on)
{
    ListWidget* const list = listWith(this, index);
    if (!list || !list->hasChecks)
        return 0;
    const QSignalBlocker quiet(list);
    list->item(index)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
    return 1;
}

int CListBox::MoveItem(int from, int to)
{
    ListWidget* const list = listWith(this, from);
    if (!list || !list->has(to))
        return 0;
    const QSignalBlocker quiet(list);
    const QListWidgetItem* const current = list->currentItem();
    const QList<QListWidgetItem*> chosen = list->selectedItems();
    list->insertItem(to, list->takeItem(from));
    // the toolkit chose a neighbour meanwhile
    list->clearSelection();
    for (QListWidgetItem* const line : chosen)
        line->setSelected(true);
    if (current)
        list->setCurrentRow(list->row(current), QItemSelectionModel::NoUpdate);
    return 1;
}

CRect CListBox::GetItemRect(int index) const
{
    const ListWidget* const list = listWith(this, index);
    if (!list)
        return {};
    const QPoint at = list->viewport()->pos();
    const QRect r = list->visualItemRect(list->item(index)).intersected(list->viewport()->rect());
    return {r.x() + at.x(), r.y() + at.y(), r.x() + r.width() + at.x(),
            r.y() + r.height() + at.y()};
}

int CListBox::ItemFromPoint(CPoint point) const
{
    const ListWidget* const list = listOf(this);
    return list ? list->indexAt(QPoint(point.x, point.y) - list->viewport()->pos()).row() : -1;
}

}  // namespace pavane
