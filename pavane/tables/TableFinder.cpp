#include "pavane/tables/TableFinder.h"

#include "pavane/resources/table_messages.h"
#include "pavane/tables/LiveValues.h"
#include "pavane/tables/table_dialogs.h"
#include "pavane/tables/TableTasks.h"
#include "platform/message.h"

namespace pavane
{

class ATableWnd::Finder::Task : public TableTask
{
public:
    Task(Finder& finder, TableCell from)
        : finder_(finder), values_(finder.table_), search_(finder.what_, from)
    {
    }
    WorkState step() override { return search_.step(values_); }
    int percent() const override { return search_.percent(); }
    const char* name() const override { return searchingCells; }
    void finish() override { finder_.show(search_); }

private:
    Finder& finder_;
    LiveValues values_;
    TableSearch search_;
};

ATableWnd::Finder::Finder(ATableWnd& table) : table_(table) {}
ATableWnd::Finder::~Finder() = default;

void ATableWnd::Finder::ask()
{
    const TableWatch watch(table_);
    if (!table_.hideEditors() || watch.gone())
        return;
    if (!dialog_ || !dialog_->GetSafeHwnd()) {
        dialog_ = std::make_unique<TableFindDlg>(table_);
        if (!dialog_->CreateModeless())
            return dialog_.reset();
    }
    dialog_->show(what_);
}

void ATableWnd::Finder::next(int backward)
{
    FindWhat what = what_;
    what.backward = backward;
    if (what.text.empty())
        ask();
    else
        (void)find(what);
}

int ATableWnd::Finder::find(const FindWhat& what)
{
    const TableWatch watch(table_);
    if (what.text.empty() || table_.grid_.extent().empty() || !table_.hideEditors() || watch.gone())
        return 0;
    what_ = what;
    const TableCell from{table_.selection_.anchorRow, table_.selection_.anchorColumn};
    table_.tasks_->start(std::make_shared<Task>(*this, nearestCell(from, table_.grid_.extent())),
                         true);
    return 1;
}

/// What came of a search. The user may be editing by now.
void ATableWnd::Finder::show(const TableSearch& search)
{
    const TableWatch watch(table_);
    const TableCell cell = search.found();
    if (!table_.grid_.extent().contains(cell))
        return (void)AfxMessageBox(notFoundInTable + what_.text, MB_OK | MB_ICONINFORMATION);
    if (!table_.hideEditors() || watch.gone())
        return;
    if (!table_.takeSelection(oneCell(cell), cell))
        return;
    if (search.wrapped())
        table_.tasks_->say(what_.backward ? searchFromEnd : searchFromStart);
    if (watch.gone() || !dialog_)
        return;
    CRect place = table_.cellRect(cell.row, cell.column);
    table_.ClientToScreen(place);
    dialog_->uncover(place);
}

void ATableWnd::Finder::goToRow()
{
    const TableWatch watch(table_);
    if (!table_.hideEditors() || watch.gone() || table_.grid_.extent().empty())
        return;
    const TableCell now = nearestCell({table_.selection_.anchorRow, table_.selection_.anchorColumn},
                                      table_.grid_.extent());
    int row = now.row;
    if (!askNumber(&table_, goToRowTitle, goToRowLabel, 1, static_cast<int>(table_.rows()), row) ||
        watch.gone() || !table_.grid_.extent().contains({row, now.column}))
        return;
    (void)table_.takeSelection(oneCell({row, now.column}), {row, now.column});
}

void ATableWnd::Finder::windowGoes() { dialog_.reset(); }

int ATableWnd::FindText(const FindWhat& what) { return finder_->find(what); }

}  // namespace pavane
