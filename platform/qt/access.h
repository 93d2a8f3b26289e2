#pragma once

#include "platform/accessibility.h"

#include <QAccessibleWidget>
#include <unordered_map>

namespace pavane
{

class PartInterface;

/// A drawing window for the desktop's screen readers: what its AccessSource tells, its child
/// windows behind that.
class WindowInterface : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    explicit WindowInterface(QWidget* widget) : QAccessibleWidget(widget) {}
    ~WindowInterface() override;

    /// Null when the window is gone or tells nothing.
    AccessSource* source() const;
    /// The object of a part; null when there is no such part.
    QAccessibleInterface* part(AccessId id);
    /// Screen coordinates.
    QRect onScreen(const CRect& client) const;
    bool hasFocus() const;
    /// Lets go of objects that nobody will ask for again, when there are many.
    void forgetOldParts();

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QAccessible::Role role() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;
    /// A window that is a link or a button as a whole is pressed.
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override;
    int selectedCellCount() const override;
    QList<QAccessibleInterface*> selectedCells() const override;
    QString columnDescription(int column) const override;
    QString rowDescription(int row) const override;
    int selectedColumnCount() const override;
    int selectedRowCount() const override;
    int columnCount() const override;
    int rowCount() const override;
    QList<int> selectedColumns() const override;
    QList<int> selectedRows() const override;
    bool isColumnSelected(int column) const override;
    bool isRowSelected(int row) const override;
    bool selectRow(int row) override;
    bool selectColumn(int column) override;
    bool unselectRow(int row) override;
    bool unselectColumn(int column) override;
    void modelChange(QAccessibleTableModelChangeEvent* event) override;

private:
    bool isPressed() const;
    /// Whole rows or columns that are selected.
    CRect wholeRows() const;
    CRect wholeColumns() const;
    QString nameOf(AccessId id) const;
    bool select(AccessId header, bool on);

    std::unordered_map<AccessId, QAccessible::Id> parts_;
};

/// What the toolkit asks when it wants to know of a widget.
QAccessibleInterface* accessFactory(const QString& className, QObject* object);

}  // namespace pavane
