#include "platform/qt/PartInterface.h"

#include "platform/qt/fonts.h"

namespace pavane
{

WindowInterface* PartInterface::owner() const
{
    return widget_ ? dynamic_cast<WindowInterface*>(QAccessible::queryAccessibleInterface(widget_))
                   : nullptr;
}

AccessSource* PartInterface::source() const
{
    const WindowInterface* const known = owner();
    return known ? known->source() : nullptr;
}

AccessPart PartInterface::told() const
{
    AccessPart part;
    const AccessSource* const known = source();
    if (!known || !known->GetAccessPart(id_, part))
        part = {};
    return part;
}

bool PartInterface::isValid() const
{
    AccessPart part;
    const AccessSource* const known = source();
    return known && known->GetAccessPart(id_, part);
}

QString PartInterface::text(QAccessible::Text kind) const
{
    const AccessPart part = told();
    switch (kind) {
    case QAccessible::Name:
        // readers say the name of a cell, which is its text
        return textOf(part.name.empty() ? part.value : part.name);
    case QAccessible::Value:
        return textOf(part.value);
    case QAccessible::Description:
        return textOf(part.description);
    default:
        return {};
    }
}

void PartInterface::setText(QAccessible::Text kind, const QString& text)
{
    AccessSource* const known = source();
    if (known && kind == QAccessible::Value)
        (void)known->AccessSetValue(id_, text.toStdString());  // a refusal shows in the value
}

QRect PartInterface::rect() const
{
    const WindowInterface* const known = owner();
    return known ? known->onScreen(told().rect) : QRect();
}

QAccessible::Role PartInterface::role() const
{
    return static_cast<QAccessible::Role>(told().role);  // which have the same numbers
}

QAccessible::State PartInterface::state() const
{
    const WindowInterface* const known = owner();
    QAccessible::State state;
    AccessPart part;
    if (!known || !known->source() || !known->source()->GetAccessPart(id_, part)) {
        state.invalid = true;
        return state;
    }
    const auto has = [&](unsigned bit) { return (part.state & bit) != 0; };
    state.disabled = has(STATE_SYSTEM_UNAVAILABLE);
    state.selected = has(STATE_SYSTEM_SELECTED);
    state.focused = has(STATE_SYSTEM_FOCUSED) && known->hasFocus();
    state.checked = has(STATE_SYSTEM_CHECKED);
    state.readOnly = has(STATE_SYSTEM_READONLY);
    state.invisible = has(STATE_SYSTEM_INVISIBLE);
    state.offscreen = has(STATE_SYSTEM_OFFSCREEN);
    state.focusable = has(STATE_SYSTEM_FOCUSABLE);
    state.selectable = has(STATE_SYSTEM_SELECTABLE);
    state.multiSelectable = has(STATE_SYSTEM_MULTISELECTABLE);
    state.editable = has(STATE_SYSTEM_EDITABLE);
    return state;
}

void* PartInterface::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableCellInterface && told().role == ROLE_SYSTEM_CELL)
        return static_cast<QAccessibleTableCellInterface*>(this);
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    return nullptr;
}

bool PartInterface::isSelected() const { return (told().state & STATE_SYSTEM_SELECTED) != 0; }

QList<QAccessibleInterface*> PartInterface::columnHeaderCells() const
{
    WindowInterface* const known = owner();
    QAccessibleInterface* const header =
        source() ? known->part(source()->GetAccessColumnHeader(told().column)) : nullptr;
    return header ? QList<QAccessibleInterface*>{header} : QList<QAccessibleInterface*>();
}

QList<QAccessibleInterface*> PartInterface::rowHeaderCells() const
{
    WindowInterface* const known = owner();
    QAccessibleInterface* const header =
        source() ? known->part(source()->GetAccessRowHeader(told().row)) : nullptr;
    return header ? QList<QAccessibleInterface*>{header} : QList<QAccessibleInterface*>();
}

QStringList PartInterface::actionNames() const
{
    const unsigned state = told().state;
    if (state & STATE_SYSTEM_UNAVAILABLE)
        return {};
    QStringList names{pressAction()};
    if (state & STATE_SYSTEM_FOCUSABLE)
        names << setFocusAction();
    if (state & STATE_SYSTEM_SELECTABLE)
        names << toggleAction();
    return names;
}

void PartInterface::doAction(const QString& name)
{
    AccessSource* const known = source();
    if (!known || !actionNames().contains(name))
        return;
    if (name == setFocusAction())
        (void)known->AccessSetFocus(id_);
    else if (name == toggleAction())
        (void)known->AccessSelect(id_, !isSelected());
    else
        (void)known->AccessActivate(id_);
}

}  // namespace pavane
