#include "pavane/resources/resource_ids.h"
#include "pavane/resources/table_messages.h"
#include "pavane/resources/window_messages.h"
#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/grid/table_text.h"
#include "pavane/tables/grid/text_file.h"
#include "pavane/tables/TableWatch.h"
#include "platform/clipboard.h"
#include "platform/file_dialog.h"
#include "platform/message.h"

#include <ostream>
#include <sstream>

namespace pavane
{

/// The texts of a table, for as long as it is there.
class ATableWnd::TextsOfTable : public TableTexts
{
public:
    explicit TextsOfTable(ATableWnd& table) : table_(table), watch_(table) {}
    TableExtent extent() override { return watch_.gone() ? TableExtent{} : table_.grid_.extent(); }
    int text(TableCell cell, CString& text) override
    {
        if (watch_.gone())
            return 0;
        const bool header = cell.row == 0 || cell.column == 0;
        text = header ? table_.hdrCellAsStr(cell.row, cell.column, nullptr)
                      : table_.cellAsStr(cell.row, cell.column, nullptr);
        return !watch_.gone();
    }

private:
    ATableWnd& table_;
    TableWatch watch_;
};

namespace
{

class StreamSink : public TextSink
{
public:
    explicit StreamSink(std::ostream& stream) : stream_(stream) {}
    int write(const char* bytes, std::size_t count) override
    {
        stream_.write(bytes, static_cast<std::streamsize>(count));
        return !stream_.fail();
    }

private:
    std::ostream& stream_;
};

}  // namespace

int ATableWnd::CopyAsTextInStream(std::ostream& stream, int selectionOnly)
{
    TextsOfTable texts(*this);
    StreamSink sink(stream);
    const TableExtent table = grid_.extent();
    const CellRange cells = selectionOnly ? selectedCells(selection_, table) : allCells(table);
    return writeTableText(texts, cells, sink);
}

int ATableWnd::CopyToClipboardAsText(int selectionOnly)
{
    std::ostringstream text;
    return CopyAsTextInStream(text, selectionOnly) && SetClipboardText(text.str());
}

void ATableWnd::OnCopyClbrAll()
{
    if (!CopyToClipboardAsText(0))
        (void)AfxMessageBox(clipboardRefusesText, MB_OK | MB_ICONERROR);
}

void ATableWnd::OnCopyClbrSel()
{
    if (!CopyToClipboardAsText(1))
        (void)AfxMessageBox(clipboardRefusesText, MB_OK | MB_ICONERROR);
}

void ATableWnd::OnCopyInFileAll() { saveText(0); }
void ATableWnd::OnCopyInFileSel() { saveText(1); }

void ATableWnd::saveText(int selectionOnly)
{
    const TableWatch watch(*this);
    // Deliberate: a name that is an extension only, of another kind of file; users' habits and
    // hosts' scripts know the dialog so.
    CString name = ".uvx";
    const int chosen = fnFileDialog1(name, "Text file (*.txt)|*.txt|All files (*.*)|*.*||",
                                     saveTableTitle, 0, "*.uvx", OFN_HIDEREADONLY, this);
    if (!chosen || watch.gone())
        return;
    TextFile file;
    if (!file.open(name))
        return (void)AfxMessageBox(cannotCreateFile + name, MB_OK | MB_ICONERROR);
    const int written = CopyAsTextInStream(file.stream(), selectionOnly);
    if (file.close(written))
        return;
    const CString stays = file.replaces() ? oldFileStays + file.place() : partIsLeft + file.place();
    (void)AfxMessageBox(stays, MB_OK | MB_ICONERROR);
}

}  // namespace pavane
