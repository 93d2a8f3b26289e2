#include "pavane/resources/resource_ids.h"
#include "pavane/resources/table_messages.h"
#include "pavane/resources/window_messages.h"
#include "pavane/tables/grid/text_file.h"
#include "pavane/tables/table_texts.h"
#include "platform/file_dialog.h"
#include "platform/message.h"

#include <ostream>

namespace pavane
{

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
    const TableExtent table = grid_.extent();
    const CellRange cells = selectionOnly ? selectedCells(selection_, table) : allCells(table);
    TextsOfTable texts(*this, cells);
    StreamSink sink(stream);
    return writeTableText(texts, cells, sink);
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
    int written = 0;
    {
        TableJob job{{this, "Writing"}};
        const JobScope scope(*this, job);
        written = CopyAsTextInStream(file.stream(), selectionOnly);
    }
    if (file.close(written))
        return;
    const CString stays = file.replaces() ? oldFileStays + file.place() : partIsLeft + file.place();
    (void)AfxMessageBox(stays, MB_OK | MB_ICONERROR);
}

}  // namespace pavane
