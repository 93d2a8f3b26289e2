#pragma once

#include "platform/qt/access.h"

#include <QPointer>
#include <QWidget>

namespace pavane
{

/// One part of a drawing window, perhaps a cell. It asks its window each time, so it may outlive
/// part and window.
class PartInterface : public QAccessibleInterface,
                      public QAccessibleTableCellInterface,
                      public QAccessibleActionInterface
{
public:
    PartInterface(QWidget* widget, AccessId id) : widget_(widget), id_(id) {}
    AccessId id() const { return id_; }

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return owner(); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString& text) override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    bool isSelected() const override;
    QList<QAccessibleInterface*> columnHeaderCells() const override;
    QList<QAccessibleInterface*> rowHeaderCells() const override;
    int columnIndex() const override { return told().column; }
    int rowIndex() const override { return told().row; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return owner(); }

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    /// Null when the widget is gone.
    WindowInterface* owner() const;
    AccessSource* source() const;
    AccessPart told() const;

    QPointer<QWidget> widget_;
    AccessId id_;
};

}  // namespace pavane
