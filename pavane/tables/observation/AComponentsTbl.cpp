#include "pavane/tables/observation/AComponentsTbl.h"

#include "pavane/tables/components/component_table.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"
#include "platform/controls.h"
#include "platform/message.h"

#include <iterator>

namespace pavane
{

namespace
{

constexpr int rowUnit = 13;  // eighths of a character

}  // namespace

AComponentsTbl::AComponentsTbl()
    : own_(std::make_unique<EditedComponents>()), components_(own_.get())
{
    constexpr std::uint16_t number = colChars | colEdit | colNoGlyph;
    // the headers with their units, and room for the arrow of the order
    ATableColumn columns[] = {{5, colChars}, {13, colChars | colCombo},
                              {17, number},  {21, number},
                              {13, number},  {19, number},
                              {14, number},  {20, number},
                              {10, number}};
    static_assert(std::size(columns) == componentColumns + 1);
    setColumnPar(columns, static_cast<long>(std::size(columns)));
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
               optSort);
    SetCellHeaderUnit(rowUnit);
}

AComponentsTbl::~AComponentsTbl() = default;

const char* AComponentsTbl::GetWndClassName() { return "AComponentsTbl"; }
void AComponentsTbl::OnComponentsChanged() {}
void AComponentsTbl::OnComponentSelected() {}
void AComponentsTbl::OnNotice(const CString&) {}

void AComponentsTbl::SetComponents(EditedComponents* components)
{
    const TableWatch watch(*this);
    setRows(0);  // an editor on the list before closes
    if (watch.gone())
        return;
    components_ = components ? components : own_.get();
    (void)components_->takeMoves();
    edits_ = 0;
    followList();
}

void AComponentsTbl::Refresh() { followList(); }

/// As many rows as components, and the focus on the one that the list is at.
void AComponentsTbl::followList()
{
    const TableWatch watch(*this);
    for (const EditedComponents::Move& move : components_->takeMoves()) {
        if (move.count > 0)
            recordsInserted(move.at + 1, move.count);
        else
            recordsRemoved(move.at + 1, -move.count);
        if (watch.gone())
            return;
    }
    setRows(components().count());
    if (watch.gone())
        return;
    SetUpWindow();
    if (watch.gone())
        return;
    Invalidate();
    if (components_->current() >= 0)
        SelectComponent(components_->current());
}

void AComponentsTbl::SelectComponent(int i)
{
    if (i < 0 || i >= components().count() || i >= rows())
        return;
    components_->setCurrent(i);
    if (selectedComponent() != i || getSelectRect().endRow != getSelectRect().anchorRow)
        SetSelectOneCell(rowOf(i + 1), getSelectRect().anchorColumn);
}

int AComponentsTbl::selectedComponent() const
{
    const int row = const_cast<AComponentsTbl*>(this)->getSelectRect().anchorRow;
    return row >= 1 && row <= rows() && isRow(recordOf(row)) ? recordOf(row) - 1 : -1;
}

void AComponentsTbl::sendSelectionChange(ASelectRect&, ASelectRect&)
{
    components_->setCurrent(selectedComponent());
    OnComponentSelected();
}

/// Digits, and whatever else begins a text, are no keys of menus here.
unsigned AComponentsTbl::OnGetDlgCode() { return DLGC_WANTALLKEYS | DLGC_WANTCHARS; }

// --- cells

CString AComponentsTbl::hdrCellAsStr(int row, int column, void*)
{
    return row == 0 ? CString(componentTitle(column)) : std::to_string(recordOf(row));
}

CString AComponentsTbl::cellAsStr(int row, int column, void*)
{
    const int record = recordOf(row);
    return isRow(record) ? componentText(components()(record - 1), column) : CString();
}

int AComponentsTbl::take(int row, int column, const CString& text, CString& message)
{
    const int record = recordOf(row);
    if (!isRow(record) || column < 1 || column > componentColumns)
        return 0;
    const ACompItem before = components()(record - 1);
    // what is put back as it was shown leaves every bit
    if (text == componentText(before, column))
        return 1;
    ACompItem changed = before;
    if (!setComponentText(changed, column, text, message))
        return 0;
    beginEdits("Edit of component " + std::to_string(record));
    const int done = components_->set(record - 1, changed);
    const TableWatch watch(*this);
    endEdits();
    if (!watch.gone())
        Invalidate();
    return done;
}

int AComponentsTbl::setCellStr(int row, int column, const CString& text)
{
    CString message;
    if (take(row, column, text, message))
        return 1;
    if (!message.empty())
        AfxMessageBox(message, MB_OK | MB_ICONERROR);
    return 0;
}

int AComponentsTbl::pasteCell(int row, int column, const CString& text)
{
    CString ignored;  // whoever pastes counts what is refused
    return take(row, column, text, ignored);
}

int AComponentsTbl::FillComboBox(CComboBox* list, int row, int)
{
    for (int kind = 1; kind <= componentKinds; ++kind)
        (void)list->AddString(componentKindName(kind));
    const int record = recordOf(row);
    const int kind = isRow(record) ? components()(record - 1).type : pointComponent;
    return kind >= 1 && kind <= componentKinds ? kind - 1
                                               : list->AddString(componentKindName(kind));
}

int AComponentsTbl::getFromComboBox(CComboBox* list, int row, int column)
{
    const int chosen = list->GetCurSel();
    return chosen < 0 || setCellStr(row, column, list->GetLBText(chosen));
}

void AComponentsTbl::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr),
                 column != componentKindColumn);
}

void AComponentsTbl::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    const CString text = cellAsStr(row, column, nullptr);
    if (column == componentKindColumn)
        return drawCellText(dc, rect, row, column, text, 0);
    const int room = rect.Width() - textMargins(row, column);
    const auto fits = [&](const std::string& shown) { return dc.GetTextExtent(shown).cx <= room; };
    drawCellText(dc, rect, row, column, roomyNumber(text, fits), 1);
}

}  // namespace pavane
