#include "pavane/tables/observation/AObservationTbl.h"

#include "pavane/progress/slices.h"
#include "pavane/resources/observation_texts.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CMenu.h"

#include <algorithm>
#include <chrono>
#include <vector>

namespace pavane
{

namespace
{

/// Of the slices that are read while nothing else is to be done.
constexpr unsigned fillTimer = 4001;
constexpr unsigned fillPause = 5;
/// A key that comes meanwhile waits no longer than an eye does.
constexpr std::chrono::milliseconds fillShare(15);
constexpr int headerChars = 8;

ATableColumn charsWide(int characters) { return {static_cast<std::int16_t>(characters), colChars}; }

}  // namespace

AObservationTbl::AObservationTbl(UvTable table, MarkItems items) : AMarkTable(items), table_(table)
{
    std::vector<ATableColumn> columns = {charsWide(headerChars)};
    for (const UvColumn& column : uvTableLook(table).columns)
        columns.push_back(charsWide(column.width));
    setColumnPar(columns.data(), static_cast<long>(columns.size()));
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
               optSort);
}

AObservationTbl::~AObservationTbl()
{
    if (observation_)
        observation_->removeObserver(this);
}

const char* AObservationTbl::GetWndClassName() { return "AObservationTbl"; }
CString AObservationTbl::profileSection()
{
    return CString("Table of ") + uvTableLook(table_).name;
}

int AObservationTbl::PreCreateWindow(CREATESTRUCT& cs)
{
    if (cs.title.empty())
        cs.title = uvTableLook(table_).title;
    return AMarkTable::PreCreateWindow(cs);
}

int AObservationTbl::OnCreate(CREATESTRUCT& cs)
{
    const int result = AMarkTable::OnCreate(cs);
    if (result == 0)
        goOn();
    return result;
}

// --- what it shows

CString AObservationTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row > 0)
        return std::to_string(recordOf(row));
    if (observation_)
        return observation_->text(table_, 0, column);
    return column > 0 && column <= UvObservation::columns(table_)
               ? uvTableLook(table_).columns[static_cast<std::size_t>(column) - 1].title
               : "";
}

CString AObservationTbl::cellAsStr(int row, int column, void*)
{
    return observation_ && row > 0 ? observation_->text(table_, recordOf(row), column) : CString();
}

int AObservationTbl::cellNumber(int row, int column, double& value)
{
    return observation_ && observation_->number(table_, recordOf(row), column, value);
}

int AObservationTbl::isTextRight(int column)
{
    return column == 0 ||
           (column <= UvObservation::columns(table_) &&
            uvTableLook(table_).columns[static_cast<std::size_t>(column) - 1].number);
}

CString AObservationTbl::OnToolTip(CPoint point)
{
    const TableCell cell = grid().cellAt(point);
    if (cell.row != 0 || !cellRect(cell.row, cell.column).PtInRect(point))
        return AMarkTable::OnToolTip(point);
    if (cell.column == 0)
        return StateText();
    return uvTableLook(table_).columns[static_cast<std::size_t>(cell.column) - 1].tip;
}

// --- records

void AObservationTbl::SetObservation(UvObservation* observation)
{
    if (observation_)
        observation_->removeObserver(this);
    observation_ = observation;
    if (observation_)
        observation_->addObserver(this);
    const TableWatch watch(*this);
    showRecords(0);
    if (!watch.gone())
        goOn();
}

void AObservationTbl::ObservationEnds()
{
    observation_ = nullptr;
    showRecords(0);
}

void AObservationTbl::RecordsChanged(UvTable table)
{
    const TableWatch watch(*this);
    if (table == table_)
        showRecords(1);
    if (!watch.gone() && table == table_)
        goOn();
}

/// Takes the rows over. `stay`: marks and the focus go with their records, which the observation
/// knows how to find; else there are new ones.
void AObservationTbl::showRecords(int stay)
{
    const TableWatch watch(*this);
    const int count = observation_ ? observation_->rows(table_) : 0;
    const auto now = [&](int record) { return stay ? observation_->recordNow(table_, record) : 0; };
    ABitArray marks(markItems() == MarkItems::rows ? count : 0);
    for (int i = std::max(GetMark().firstOne(), 0); i < markCount(); ++i)
        if (isMarked(i))
            marks.set(now(i + 1) - 1);
    ASelectRect selection = getSelectRect();
    const SortedBy by = stay ? sortedBy() : SortedBy{};
    if (!stay)
        (void)SortRows({});
    if (watch.gone())
        return;
    const int onOneRow = selection.anchorRow == selection.endRow;
    const int focus = onOneRow ? now(recordOf(selection.anchorRow)) : 0;
    setRows(count);
    if (watch.gone())
        return;
    if (!(marks == GetMark())) {
        SetMarkCount(marks.count());
        SetMark(marks);
    }
    if (watch.gone())
        return;
    if (focus > 0)
        selection.anchorRow = selection.endRow = rowOf(focus);
    ReConstruct(selection);
    // what counts the visibilities has other numbers now
    if (!watch.gone() && by.column > 0)
        (void)SortRows(by);
}

// --- filling

int AObservationTbl::isFilling() const
{
    return observation_ && observation_->isFilling() && observation_->needsGroups(table_);
}

CString AObservationTbl::StateText() const
{
    return observation_ ? observation_->stateText(table_) : CString();
}

void AObservationTbl::goOn()
{
    if (isFilling() && GetSafeHwnd())
        (void)SetTimer(fillTimer, fillPause);
}

void AObservationTbl::StopFilling()
{
    if (isFilling())
        observation_->stop();
}

void AObservationTbl::ResumeFilling()
{
    if (observation_)
        observation_->resume();
}

void AObservationTbl::OnTimer(unsigned id)
{
    if (id != fillTimer)
        return AMarkTable::OnTimer(id);
    const TableWatch watch(*this);
    if (!isFilling())
        return (void)KillTimer(fillTimer);
    (void)runSlice(fillShare, [&] { return observation_->step() && !watch.gone() && isFilling(); });
}

void AObservationTbl::FillingChanged()
{
    if (!observation_ || !observation_->needsGroups(table_))
        return;
    goOn();
    const CString part = observation_->partText(table_);
    if (part != shownPart_)
        InvalidateRect(cellRect(0, 0));
    shownPart_ = part;
    OnFilling();
}

void AObservationTbl::OnFilling()
{
    if (CWnd* const parent = GetSafeHwnd() ? GetParent() : nullptr)
        (void)parent->SendMessage(WM_COMMAND, (GetDlgCtrlID() & 0xFFFF) | WPARAM{OTN_FILLING} << 16,
                                  static_cast<LPARAM>(GetSafeHwnd()));
}

void AObservationTbl::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    // a dialog stays open: the key was for the reading
    if (key == VK_ESCAPE && isFilling() && !isWorking())
        return StopFilling();
    AMarkTable::OnKeyDown(key, repeat, flags);
}

void AObservationTbl::amMenuParse(CMenu* popup)
{
    const TableWatch watch(*this);
    AMarkTable::amMenuParse(popup);
    if (watch.gone() || !observation_ || !observation_->needsGroups(table_))
        return;
    const int canGoOn = observation_->isStopped();
    if (!canGoOn && !isFilling())
        return;
    popup->AppendSeparator();
    popup->AppendMenu(canGoOn ? fillingGoOnText : fillingStopText,
                      canGoOn ? ID_FILLING_GO_ON : ID_FILLING_STOP);
}

int AObservationTbl::RunTableCommand(unsigned id)
{
    switch (id) {
    case ID_FILLING_STOP:
        return StopFilling(), 1;
    case ID_FILLING_GO_ON:
        return ResumeFilling(), 1;
    default:
        return AMarkTable::RunTableCommand(id);
    }
}

}  // namespace pavane
