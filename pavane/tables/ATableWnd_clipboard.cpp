#include "pavane/resources/table_messages.h"
#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/grid/cell_forms.h"
#include "pavane/tables/grid/table_paste.h"
#include "pavane/tables/table_texts.h"
#include "platform/accessibility.h"
#include "platform/clipboard.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <ostream>
#include <streambuf>
#include <utility>

namespace pavane
{

namespace
{

/// All that is put on the clipboard at once, in bytes; and of texts in cells by a paste, where one
/// long value may fill many.
constexpr std::size_t mostCopied = std::size_t{256} << 20;
constexpr std::size_t mostPasted = mostCopied;

/// A text in memory that is not written beyond a number of bytes.
class BoundedText : public std::streambuf
{
public:
    BoundedText(CString& text, std::size_t most) : text_(text), most_(most) {}
    int isFull() const { return full_; }

protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override
    {
        full_ = full_ || most_ - text_.size() < static_cast<std::size_t>(count);
        if (full_)
            return 0;
        text_.append(bytes, static_cast<std::size_t>(count));
        return count;
    }
    int_type overflow(int_type c) override
    {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) ? c : traits_type::eof();
    }

private:
    CString& text_;
    std::size_t most_;
    int full_ = 0;
};

}  // namespace

// --- copy

int ATableWnd::CopyToClipboardAsText(int selectionOnly) { return copyCells(selectionOnly, 1); }

/// With headers the plain text is that of CopyAsTextInStream, which heirs may make; without, it is
/// what spreadsheets write. copyProblem_ says why it did not happen, null when the user stopped it.
int ATableWnd::copyCells(int selectionOnly, int headers)
{
    const TableWatch watch(*this);
    const TableExtent table = grid_.extent();
    const CellRange cells = selectionOnly ? selectedCells(selection_, table) : allCells(table);
    TableJob job{{this, "Copying"}};
    const JobScope scope(*this, job);
    copyProblem_ = clipboardRefusesText;
    CString text;
    CellForms forms;
    // each cell takes a byte at least
    auto written =
        cells.rowCount() * (cells.columnCount() + 1) > static_cast<std::int64_t>(mostCopied)
            ? CellsWritten::tooLarge
            : CellsWritten::whole;
    if (headers && written == CellsWritten::whole) {
        job.part = 0.5;
        BoundedText bounded(text, mostCopied);
        std::ostream stream(&bounded);
        if (!CopyAsTextInStream(stream, selectionOnly))
            written = bounded.isFull() ? CellsWritten::tooLarge : CellsWritten::stopped;
        job.from = 0.5;
    }
    if (!watch.gone() && written == CellsWritten::whole) {
        TextsOfTable texts(*this, cells);
        written = writeCellForms(texts, cells, headers, mostCopied - text.size(), forms);
    }
    if (watch.gone())
        return 0;
    if (written == CellsWritten::tooLarge)
        copyProblem_ = tooMuchForClipboard;
    if (job.stopped)
        copyProblem_ = nullptr;
    if (written != CellsWritten::whole)
        return 0;
    std::vector<ClipboardData> all;
    all.push_back({"text/plain", headers ? std::move(text) : forms.block});
    all.push_back({cellBlockType, std::move(forms.block)});
    if (!forms.csv.empty())
        all.push_back({"text/csv", std::move(forms.csv)});
    if (!forms.html.empty())
        all.push_back({"text/html", std::move(forms.html)});
    return SetClipboardData(all);
}

void ATableWnd::tellOfCopy(int copied)
{
    const char* const problem = copied ? nullptr : std::exchange(copyProblem_, nullptr);
    if (problem)
        (void)AfxMessageBox(problem, MB_OK | MB_ICONERROR);
}

void ATableWnd::OnCopyClbrAll()
{
    const TableWatch watch(*this);
    copyProblem_ = clipboardRefusesText;
    const int copied = CopyToClipboardAsText(0);
    if (!watch.gone())
        tellOfCopy(copied);
}

void ATableWnd::OnCopyClbrSel()
{
    const TableWatch watch(*this);
    copyProblem_ = clipboardRefusesText;
    const int copied = CopyToClipboardAsText(1);
    if (!watch.gone())
        tellOfCopy(copied);
}

void ATableWnd::OnCopyClbrCells()
{
    const TableWatch watch(*this);
    if (!isTime(TableWhen::hasSelection))
        return;
    const int copied = copyCells(1, 0);
    if (!watch.gone())
        tellOfCopy(copied);
}

// --- paste, clear

/// Stores texts in the cells that can be edited, as one step, with a box that says how far it is.
class ATableWnd::EditingPaste : public PasteTarget
{
public:
    EditingPaste(ATableWnd& table, CString what, const CString& label)
        : table_(table), watch_(table), life_(table.life_), job_{{&table, std::move(what)}},
          scope_(table, job_)
    {
        table.beginEdits(label);
    }
    Answer put(TableCell cell, std::string_view text) override
    {
        room_ -= std::min(room_, text.size());
        if (room_ == 0)
            return Answer::stop;
        return edit(cell, [&] { return table_.pasteCell(cell.row, cell.column, CString(text)); });
    }
    Answer edit(TableCell cell, const std::function<int()>& store)
    {
        const int can = table_.canEdit(cell.row, cell.column);
        if (watch_.gone())
            return Answer::stop;
        canEdit_ = can;
        const int taken = can && table_.editCell(cell.row, cell.column, store);
        if (watch_.gone())
            return Answer::stop;
        return taken ? Answer::taken : Answer::refused;
    }
    int goesOn(double done) override { return !watch_.gone() && job_.show(done) && !watch_.gone(); }
    /// The last cell could be edited.
    int canEdit() const { return canEdit_; }
    int isTooLarge() const { return room_ == 0; }
    /// Ends the step, also of a table without its window, and repaints; 0 when the window is gone.
    int end()
    {
        if (life_.alive()) {
            table_.hiddenList_.reset();
            table_.endEdits();
        }
        if (!watch_.gone())
            table_.Invalidate();
        if (!watch_.gone())
            table_.tellAccess(EVENT_OBJECT_VALUECHANGE,
                              {table_.selection_.anchorRow, table_.selection_.anchorColumn});
        return !watch_.gone();
    }

private:
    ATableWnd& table_;
    TableWatch watch_;
    LifeWatch life_;
    TableJob job_;
    JobScope scope_;
    int canEdit_ = 0;
    std::size_t room_ = mostPasted;
};

/// Whether a column of these has an editor; asks no hook.
int ATableWnd::mayHoldEditable(int firstColumn, int lastColumn) const
{
    for (int c = firstColumn; c <= lastColumn; ++c)
        if (grid_.columns().flags(c) & (colEdit | colCombo))
            return 1;
    return 0;
}

CString ATableWnd::cellTitle(int row, int column)
{
    constexpr std::size_t longest = 60;
    const TableWatch watch(*this);
    const auto part = [&](CString header, const CString& without) {
        std::size_t length = std::min(header.size(), longest);
        while (length > 0 && length < header.size() && (header[length] & 0xC0) == 0x80)
            --length;  // not inside a character
        header = validText(header.substr(0, length));
        for (char& c : header)
            c = (c >= 0 && c < ' ') || c == '\x7f' ? ' ' : c;
        return header.find_first_not_of(' ') == CString::npos ? without : header;
    };
    CString title = part(hdrCellAsStr(0, column, nullptr), "column " + std::to_string(column));
    if (!watch.gone())
        title += ' ' + part(hdrCellAsStr(row, 0, nullptr), std::to_string(row));
    return title;
}

void ATableWnd::OnPasteClbr()
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone() || grid_.extent().empty())
        return;
    CString text;
    if (!GetClipboardData(cellBlockType, text) && !GetClipboardText(text))
        return (void)AfxMessageBox(clipboardHasNoText, MB_OK | MB_ICONINFORMATION);
    const TableCell at =
        nearestCell({selection_.anchorRow, selection_.anchorColumn}, grid_.extent());
    const CString title = cellTitle(at.row, at.column);
    if (watch.gone())
        return;
    PasteResult result;
    CString told;
    {
        EditingPaste paste(*this, "Pasting", "Paste at " + title);
        result =
            paste.goesOn(0) ? pasteText(text, selection_, grid_.extent(), paste) : PasteResult();
        if (!paste.end())
            return;
        if (result.stopped)
            told = (paste.isTooLarge() ? pasteTooLarge : pasteStopped) +
                   std::to_string(result.taken) + ". ";
    }
    if (result.left) {
        const bool isHere =
            result.firstLeftRow <= grid_.rows() && result.firstLeftColumn <= columns();
        told += std::to_string(result.left) + " of " + std::to_string(result.left + result.taken) +
                cellsNotPasted;
        told += isHere ? cellTitle(static_cast<int>(result.firstLeftRow),
                                   static_cast<int>(result.firstLeftColumn))
                       : "row " + std::to_string(result.firstLeftRow) + ", column " +
                             std::to_string(result.firstLeftColumn) + beyondTheTable;
    }
    if (!told.empty() && !watch.gone())
        (void)AfxMessageBox(told, MB_OK | MB_ICONINFORMATION);
}

void ATableWnd::OnClearCells()
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone() || !isTime(TableWhen::canClear))
        return;
    const CellRange cells = selectedCells(selection_, grid_.extent());
    const std::int64_t count = cells.rowCount() * cells.columnCount();
    const CString what = count == 1 ? cellTitle(cells.firstRow, cells.firstColumn)
                                    : std::to_string(count) + " cells";
    if (watch.gone())
        return;
    std::int64_t refused = 0;
    TableCell first;
    {
        EditingPaste clear(*this, "Clearing", "Clearing of " + what);
        const auto clearOne = [&](TableCell cell) {
            const auto answer = clear.edit(cell, [&] { return clearCell(cell.row, cell.column); });
            if (answer == PasteTarget::Answer::refused && clear.canEdit() && refused++ == 0)
                first = cell;
            return answer != PasteTarget::Answer::stop;
        };
        bool goesOn = true;
        for (std::int64_t r = cells.firstRow; goesOn && r <= cells.lastRow; ++r)
            for (int c = cells.firstColumn; goesOn && c <= cells.lastColumn; ++c)
                goesOn = clear.goesOn(static_cast<double>(r - cells.firstRow) /
                                      static_cast<double>(cells.rowCount())) &&
                         (!mayHoldEditable(c, c) || clearOne({static_cast<int>(r), c}));
        if (!clear.end())
            return;
    }
    if (!refused)
        return;
    const CString title = cellTitle(first.row, first.column);
    if (!watch.gone())
        (void)AfxMessageBox(std::to_string(refused) + cellsNotCleared + title,
                            MB_OK | MB_ICONINFORMATION);
}

}  // namespace pavane
