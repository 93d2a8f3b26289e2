#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/TablePaper.h"

namespace pavane
{

CString ATableWnd::GetSubscript() { return "Table 1. ~U~C"; }

int ATableWnd::GetPages(CDC& dc)
{
    paper_->count(dc);
    return paper_->pages();
}

int ATableWnd::GetPrintPercent(CDC& dc)
{
    paper_->count(dc);
    return paper_->percent();
}

void ATableWnd::PrintWindow(CDC& dc, CRect& rect, int page) { paper_->print(dc, rect, page); }

void ATableWnd::SetPrintSplit(int on) { paper_->setSplit(on); }
int ATableWnd::GetPrintSplit() const { return paper_->split(); }

}  // namespace pavane
