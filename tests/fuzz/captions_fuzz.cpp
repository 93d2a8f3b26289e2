// Feeds any text to the layout of a page: its caption stays in half of the room, the picture is a
// rectangle or nothing. And to the readers of what a command line says of printing.
#include "pavane/printing/layout/page_texts.h"
#include "pavane/printing/layout/paper.h"
#include "pavane/printing/layout/print_arguments.h"

#include <cstdint>
#include <cstdlib>

namespace
{

class Ruler : public pavane::TextRuler
{
public:
    int widthOf(std::string_view text) override { return static_cast<int>(text.size()); }
    int lineHeight() override { return 2; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const CString text(reinterpret_cast<const char*>(data), size);
    Ruler ruler;
    for (const int width : {0, 3, 40}) {
        const PageTexts page = layOutPage({0, 0, width, 30}, 2, {1, 1, text, 1}, 2, ruler);
        if (page.caption.Height() > 15 || page.picture.left > page.picture.right ||
            page.picture.top > page.picture.bottom)
            std::abort();
    }
    (void)documentTitle(text);
    CPrintSettings settings;
    CString error;
    CRect margins;
    PaperSize paper;
    if (readPages(text, settings, error) && settings.to && settings.from > settings.to)
        std::abort();
    if (readPaper(text, paper, error) && (paper.width < 2000 || paper.height < 2000))
        std::abort();
    (void)readMargins(text, margins, error);
    (void)paperOfLocale(text);
    return 0;
}
