#include "platform/qt/access.h"

#include "platform/qt/fonts.h"
#include "platform/qt/HostWidget.h"
#include "platform/qt/PartInterface.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <QComboBox>
#include <utility>

namespace pavane
{

namespace
{

/// Lists of selected rows and columns end here: readers say the first few.
constexpr int mostSelected = 1000;

AccessListener listener = nullptr;

QList<int> numbers(int from, int to)
{
    QList<int> list;
    for (int i = from; i < to && list.size() < mostSelected; ++i)
        list << i;
    return list;
}

}  // namespace

QAccessibleInterface* accessFactory(const QString&, QObject* object)
{
    auto* const host = dynamic_cast<HostWidget*>(object);
    return host ? new WindowInterface(host) : nullptr;
}

WindowInterface::~WindowInterface()
{
    for (const auto& [id, known] : parts_)
        QAccessible::deleteAccessibleInterface(known);
}

AccessSource* WindowInterface::source() const
{
    const WindowPeer* const peer = widget() ? peerOf(widget()) : nullptr;
    return peer && peer->window && !peer->isDying ? peer->window->GetAccess() : nullptr;
}

QAccessibleInterface* WindowInterface::part(AccessId id)
{
    const AccessSource* const told = source();
    AccessPart part;
    if (!told || id == 0 || !told->GetAccessPart(id, part))
        return nullptr;
    const auto known = parts_.find(id);
    if (known != parts_.end())
        return QAccessible::accessibleInterface(known->second);
    auto* const made = new PartInterface(widget(), id);
    parts_[id] = QAccessible::registerAccessibleInterface(made);
    return made;
}

void WindowInterface::forgetOldParts()
{
    constexpr std::size_t many = 20000;
    if (parts_.size() < many || !source())
        return;
    std::vector<AccessId> kept = source()->GetAccessChildren();
    kept.push_back(source()->GetAccessFocus());
    std::erase_if(parts_, [&](const auto& known) {
        if (std::find(kept.begin(), kept.end(), known.first) != kept.end())
            return false;
        QAccessible::deleteAccessibleInterface(known.second);
        return true;
    });
}

QRect WindowInterface::onScreen(const CRect& client) const
{
    if (client.IsRectEmpty() || !widget())
        return {};
    return {widget()->mapToGlobal(QPoint(client.left, client.top)),
            QSize(client.Width(), client.Height())};
}

bool WindowInterface::hasFocus() const { return widget() && widget()->hasFocus(); }

int WindowInterface::childCount() const
{
    const int widgets = QAccessibleWidget::childCount();
    return source() ? widgets + static_cast<int>(source()->GetAccessChildren().size()) : widgets;
}

QAccessibleInterface* WindowInterface::child(int index) const
{
    if (!source() || index < 0)
        return QAccessibleWidget::child(index);
    const std::vector<AccessId> shown = source()->GetAccessChildren();
    const auto at = static_cast<std::size_t>(index);
    return at < shown.size() ? const_cast<WindowInterface*>(this)->part(shown[at])
                             : QAccessibleWidget::child(index - static_cast<int>(shown.size()));
}

int WindowInterface::indexOfChild(const QAccessibleInterface* child) const
{
    const std::vector<AccessId> shown =
        source() ? source()->GetAccessChildren() : std::vector<AccessId>();
    if (const auto* const part = dynamic_cast<const PartInterface*>(child)) {
        const auto at = std::find(shown.begin(), shown.end(), part->id());
        return at == shown.end() ? -1 : static_cast<int>(at - shown.begin());
    }
    const int index = QAccessibleWidget::indexOfChild(child);
    return index < 0 ? index : index + static_cast<int>(shown.size());
}

QAccessibleInterface* WindowInterface::childAt(int x, int y) const
{
    // an editor stands over the cell
    if (QAccessibleInterface* const above = QAccessibleWidget::childAt(x, y);
        above && above->object() && above->object() != widget())
        return above;
    if (!source())
        return nullptr;
    const QPoint at = widget()->mapFromGlobal(QPoint(x, y));
    const AccessId id = source()->AccessHitTest({at.x(), at.y()});
    return const_cast<WindowInterface*>(this)->part(id);
}

QAccessibleInterface* WindowInterface::focusChild() const
{
    if (hasFocus() && source()) {
        const AccessId id = source()->GetAccessFocus();
        if (QAccessibleInterface* const focus = const_cast<WindowInterface*>(this)->part(id))
            return focus;
    }
    return QAccessibleWidget::focusChild();
}

QAccessible::Role WindowInterface::role() const
{
    AccessPart part;
    if (!source() || !source()->GetAccessPart(0, part))
        return QAccessible::Client;
    return source()->IsAccessTable() ? QAccessible::Table
                                     : static_cast<QAccessible::Role>(part.role);
}

QString WindowInterface::text(QAccessible::Text kind) const
{
    AccessPart part;
    const bool tells = source() && source()->GetAccessPart(0, part);
    if (tells && kind == QAccessible::Name && !part.name.empty())
        return textOf(part.name);
    if (tells && kind == QAccessible::Value)
        return textOf(part.value);
    if (tells && kind == QAccessible::Description && !part.description.empty())
        return textOf(part.description);
    return QAccessibleWidget::text(kind);
}

QAccessible::State WindowInterface::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    AccessPart part;
    if (source() && source()->GetAccessPart(0, part)) {
        state.focusable = state.focusable || part.state & STATE_SYSTEM_FOCUSABLE;
        state.multiSelectable = (part.state & STATE_SYSTEM_MULTISELECTABLE) != 0;
        state.readOnly = (part.state & STATE_SYSTEM_READONLY) != 0;
        state.linked = part.role == ROLE_SYSTEM_LINK;
    }
    return state;
}

void* WindowInterface::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return source() && source()->IsAccessTable() ? static_cast<QAccessibleTableInterface*>(this)
                                                     : nullptr;
    return QAccessibleWidget::interface_cast(type);
}

bool WindowInterface::isPressed() const
{
    const QAccessible::Role kind = role();
    return kind == QAccessible::Link || kind == QAccessible::PushButton;
}

QStringList WindowInterface::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (isPressed())
        names.prepend(pressAction());
    return names;
}

void WindowInterface::doAction(const QString& name)
{
    if (name == pressAction() && isPressed())
        (void)source()->AccessActivate(0);  // a refusal shows by itself
    else
        QAccessibleWidget::doAction(name);
}

void NotifyWinEvent(unsigned event, HWND window, AccessId id)
{
    if (listener && peerOf(window))
        listener(event, window, id);
    const WindowPeer* const peer = QAccessible::isActive() ? peerOf(window) : nullptr;
    auto* const known = peer && peer->widget
                            ? dynamic_cast<WindowInterface*>(
                                  QAccessible::queryAccessibleInterface(peer->widget.data()))
                            : nullptr;
    if (!known)
        return;
    known->forgetOldParts();
    QAccessibleInterface* const target = id == 0 ? known : known->part(id);
    if (!target)
        return;
    const auto tell = [](QAccessibleEvent told) { QAccessible::updateAccessibility(&told); };
    switch (event) {
    case EVENT_OBJECT_FOCUS:
        return tell({target, QAccessible::Focus});
    case EVENT_OBJECT_NAMECHANGE:
        return tell({target, QAccessible::NameChanged});
    case EVENT_OBJECT_VALUECHANGE: {
        // the text of a cell is its name as well
        if (id != 0)
            tell({target, QAccessible::NameChanged});
        QAccessibleValueChangeEvent told(target, target->text(QAccessible::Value));
        return QAccessible::updateAccessibility(&told);
    }
    case EVENT_OBJECT_STATECHANGE: {
        QAccessible::State changed;
        changed.editable = changed.readOnly = changed.disabled = changed.checked = true;
        QAccessibleStateChangeEvent told(target, changed);
        return QAccessible::updateAccessibility(&told);
    }
    case EVENT_OBJECT_SELECTION:
        return tell({target, QAccessible::Selection});
    case EVENT_OBJECT_SELECTIONWITHIN:
        return tell({target, QAccessible::SelectionWithin});
    case EVENT_OBJECT_REORDER: {
        tell({target, QAccessible::ObjectReorder});
        if (!known->interface_cast(QAccessible::TableInterface))
            return;
        QAccessibleTableModelChangeEvent told(known, QAccessibleTableModelChangeEvent::ModelReset);
        return QAccessible::updateAccessibility(&told);
    }
    default:
        return;
    }
}

void SetAccessName(HWND window, const CString& name)
{
    const WindowPeer* const peer = peerOf(window);
    if (!peer || !peer->widget)
        return;
    peer->widget->setAccessibleName(textOf(name));
    // on this system the toolkit gives the choice of a combo box as its name
    if (qobject_cast<QComboBox*>(peer->widget))
        peer->widget->setAccessibleDescription(textOf(name));
}

int IsAccessActive() { return listener || QAccessible::isActive(); }

AccessListener SetAccessListener(AccessListener wanted) { return std::exchange(listener, wanted); }

// Tables

CRect WindowInterface::wholeRows() const
{
    const CRect selected = source() ? source()->GetAccessSelection() : CRect();
    return selected.left <= 0 && selected.right >= columnCount() ? selected : CRect();
}

CRect WindowInterface::wholeColumns() const
{
    const CRect selected = source() ? source()->GetAccessSelection() : CRect();
    return selected.top <= 0 && selected.bottom >= rowCount() ? selected : CRect();
}

QString WindowInterface::nameOf(AccessId id) const
{
    AccessPart part;
    return source() && id != 0 && source()->GetAccessPart(id, part)
               ? textOf(part.name.empty() ? part.value : part.name)
               : QString();
}

bool WindowInterface::select(AccessId header, bool on)
{
    return header != 0 && source()->AccessSelect(header, on);
}

QAccessibleInterface* WindowInterface::cellAt(int row, int column) const
{
    return source() ? const_cast<WindowInterface*>(this)->part(source()->GetAccessCell(row, column))
                    : nullptr;
}

int WindowInterface::selectedCellCount() const
{
    const CRect selected = source() ? source()->GetAccessSelection() : CRect();
    const long long cells =
        selected.IsRectEmpty() ? 0 : static_cast<long long>(selected.Width()) * selected.Height();
    return static_cast<int>(std::min(cells, 0x7FFF'FFFFLL));
}

/// Those in view: a selection may have more cells than there is memory for.
QList<QAccessibleInterface*> WindowInterface::selectedCells() const
{
    QList<QAccessibleInterface*> cells;
    AccessPart part;
    for (const AccessId id : source() ? source()->GetAccessChildren() : std::vector<AccessId>()) {
        if (source()->GetAccessPart(id, part) && part.role == ROLE_SYSTEM_CELL &&
            part.state & STATE_SYSTEM_SELECTED)
            cells << const_cast<WindowInterface*>(this)->part(id);
    }
    return cells;
}

QString WindowInterface::columnDescription(int column) const
{
    return source() ? nameOf(source()->GetAccessColumnHeader(column)) : QString();
}

QString WindowInterface::rowDescription(int row) const
{
    return source() ? nameOf(source()->GetAccessRowHeader(row)) : QString();
}

int WindowInterface::selectedColumnCount() const { return wholeColumns().Width(); }
int WindowInterface::selectedRowCount() const { return wholeRows().Height(); }
int WindowInterface::columnCount() const { return source() ? source()->GetAccessColumns() : 0; }
int WindowInterface::rowCount() const { return source() ? source()->GetAccessRows() : 0; }

QList<int> WindowInterface::selectedColumns() const
{
    return numbers(wholeColumns().left, wholeColumns().right);
}

QList<int> WindowInterface::selectedRows() const
{
    return numbers(wholeRows().top, wholeRows().bottom);
}

bool WindowInterface::isColumnSelected(int column) const
{
    return column >= wholeColumns().left && column < wholeColumns().right;
}

bool WindowInterface::isRowSelected(int row) const
{
    return row >= wholeRows().top && row < wholeRows().bottom;
}

bool WindowInterface::selectRow(int row)
{
    return source() && select(source()->GetAccessRowHeader(row), true);
}

bool WindowInterface::selectColumn(int column)
{
    return source() && select(source()->GetAccessColumnHeader(column), true);
}

bool WindowInterface::unselectRow(int row)
{
    return source() && select(source()->GetAccessRowHeader(row), false);
}

bool WindowInterface::unselectColumn(int column)
{
    return source() && select(source()->GetAccessColumnHeader(column), false);
}

void WindowInterface::modelChange(QAccessibleTableModelChangeEvent*)
{
    // parts ask the window each time, so none is out of date
}

}  // namespace pavane
