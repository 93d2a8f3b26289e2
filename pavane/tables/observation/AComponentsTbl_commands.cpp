#include "pavane/resources/component_commands.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/tables/observation/AComponentsTbl.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CMenu.h"

#include <algorithm>

namespace pavane
{

namespace
{

CString countText(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " component" : " components");
}

}  // namespace

// --- steps

void AComponentsTbl::beginEdits(const CString& label)
{
    ++edits_;
    components_->begin(label);
}

void AComponentsTbl::endEdits()
{
    if (edits_ == 0)
        return;
    --edits_;
    stepEnded(components_->end());
}

void AComponentsTbl::stepEnded(EditRecorded recorded)
{
    if (edits_ > 0 || recorded == editUnchanged)
        return;
    const TableWatch watch(*this);
    Invalidate();
    OnComponentsChanged();
    if (!watch.gone() && (recorded == editLost || recorded == editGaveUpOld))
        OnNotice(recorded == editLost ? allStepsGone : oldStepsGone);
}

int AComponentsTbl::canUndo() { return components_->history().canUndo(); }
int AComponentsTbl::canRedo() { return components_->history().canRedo(); }
int AComponentsTbl::Undo() { return walkHistory(0); }
int AComponentsTbl::Redo() { return walkHistory(1); }
CString AComponentsTbl::undoLabel() { return CString(components_->history().undoLabel()); }
CString AComponentsTbl::redoLabel() { return CString(components_->history().redoLabel()); }

int AComponentsTbl::walkHistory(int forward)
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone())
        return 0;
    const int done = forward ? components_->redo() : components_->undo();
    if (!done)
        return 0;
    const EditRecorded loss = components_->history().takeLoss();
    followList();
    if (!watch.gone())
        OnComponentsChanged();
    if (!watch.gone() && loss == editUndoneInPart)
        OnNotice(undoneInPart);
    return 1;
}

// --- rows

/// From 0, rising.
std::vector<int> AComponentsTbl::selectedRecords() const
{
    std::vector<int> records;
    const ASelectRect selection = const_cast<AComponentsTbl*>(this)->getSelectRect();
    const CellRange cells = selectedCells(selection, grid().extent());
    for (std::int64_t row = cells.firstRow; row <= cells.lastRow; ++row)
        if (isRow(recordOf(static_cast<int>(row))))
            records.push_back(recordOf(static_cast<int>(row)) - 1);
    std::ranges::sort(records);
    return records;
}

int AComponentsTbl::AddComponent()
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone())
        return 0;
    const int at = selectedComponent() + 1;
    const ACompItem fresh;
    components_->begin("Addition of a component");
    const int done = components_->insert(at, &fresh, 1);
    if (done)
        components_->setCurrent(at);
    const EditRecorded recorded = components_->end();
    if (done)
        followList();
    if (!watch.gone())
        stepEnded(recorded);
    return done;
}

int AComponentsTbl::CopyComponents()
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone())
        return 0;
    const std::vector<int> records = selectedRecords();
    if (records.empty())
        return 0;
    std::vector<ACompItem> copies;
    copies.reserve(records.size());
    for (const int record : records)
        copies.push_back(components()(record));
    const int at = records.back() + 1;
    components_->begin("Copy of " + countText(copies.size()));
    const int done = components_->insert(at, copies.data(), static_cast<int>(copies.size()));
    if (done)
        components_->setCurrent(at);
    const EditRecorded recorded = components_->end();
    if (done)
        followList();
    if (watch.gone())
        return done;
    if (done && rowOf(at + 1) == at + 1) {
        // all copies, to be moved or changed at once
        ASelectRect previous = getSelectRect();
        getSelectRect().endRow = at + static_cast<int>(copies.size());
        InvalidateSelect();
        sendSelectionChange(getSelectRect(), previous);
    }
    if (!watch.gone())
        stepEnded(recorded);
    return done;
}

int AComponentsTbl::DeleteComponents()
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone())
        return 0;
    const std::vector<int> records = selectedRecords();
    if (records.empty())
        return 0;
    components_->begin("Deletion of " + countText(records.size()));
    int done = 1;
    // from the last on, each run of neighbours at once
    for (std::size_t end = records.size(); done && end > 0;) {
        std::size_t first = end - 1;
        while (first > 0 && records[first - 1] == records[first] - 1)
            --first;
        done = components_->remove(records[first], static_cast<int>(end - first));
        end = first;
    }
    components_->setCurrent(std::min(records.front(), components().count() - 1));
    const EditRecorded recorded = components_->end();
    followList();
    if (!watch.gone())
        stepEnded(recorded);
    return done;
}

// --- commands

int AComponentsTbl::GetMenuID() { return static_cast<int>(IDR_COMPONENTS_MENU); }

void AComponentsTbl::amMenuParse(CMenu* popup)
{
    const TableWatch watch(*this);
    ATableWnd::amMenuParse(popup);
    for (const TableCommand& command : componentCommands) {
        if (watch.gone())
            return;
        (void)popup->EnableMenuItem(command.id, isTime(command.when) ? MF_ENABLED : MF_GRAYED);
    }
}

int AComponentsTbl::RunTableCommand(unsigned id)
{
    switch (id) {
    case ID_COMPONENT_ADD:
        return (void)AddComponent(), 1;
    case ID_COMPONENT_COPY:
        return (void)CopyComponents(), 1;
    case ID_COMPONENT_DELETE:
        return (void)DeleteComponents(), 1;
    default:
        return ATableWnd::RunTableCommand(id);
    }
}

void AComponentsTbl::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const int held = (GetKeyState(VK_CONTROL) < 0 ? tableControl : 0) |
                     (GetKeyState(VK_SHIFT) < 0 ? tableShift : 0);
    if (GetKeyState(VK_MENU) >= 0)
        for (const TableCommand& command : componentCommands)
            if (command.key == static_cast<int>(key) && command.held == held)
                return (void)RunTableCommand(command.id);
    ATableWnd::OnKeyDown(key, repeat, flags);
}

}  // namespace pavane
