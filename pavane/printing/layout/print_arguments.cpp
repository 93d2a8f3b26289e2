#include "pavane/printing/layout/print_arguments.h"

#include "pavane/printing/layout/page_geometry.h"
#include "pavane/printing/layout/paper.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <array>

namespace pavane
{

namespace
{

int readPage(const CString& text, int& page)
{
    const bool isPlain = text.find_first_not_of("0123456789") == CString::npos;
    return isPlain && stoval(text, page) && page > 0;
}

}  // namespace

int readPages(const CString& text, CPrintSettings& settings, CString& error)
{
    const std::size_t dash = text.find('-');
    int from = 0;
    int to = 0;
    int known = readPage(text.substr(0, dash), from);
    if (dash == CString::npos)
        to = from;
    else if (dash + 1 < text.size())
        known = known && readPage(text.substr(dash + 1), to) && from <= to;
    if (!known) {
        error = '\'';
        error += plainText(text) + "' are no pages, such as 2, 2-5 or 2-";
        return 0;
    }
    settings.from = from;
    settings.to = to;
    return 1;
}

int readPaperName(const CString& text, CPrintSettings& settings, CString& error)
{
    PaperSize paper;
    if (!readPaper(text, paper, error))
        return 0;
    settings.paper = paper.name;
    return 1;
}

int readMargins(const CString& text, CRect& margins, CString& error)
{
    std::array<int, 4> read{};
    std::size_t at = 0;
    int known = 1;
    for (std::size_t i = 0; i < read.size(); ++i) {
        const std::size_t comma = i + 1 < read.size() ? text.find(',', at) : text.size();
        known = known && comma != CString::npos &&
                readMillimetres(text.substr(at, comma - at), read[i]);
        if (!known)
            break;
        at = comma + 1;
    }
    if (!known) {
        error = '\'';
        error +=
            plainText(text) +
            "' are no margins: left, top, right and bottom in millimetres, such as 20,10,10,10";
        return 0;
    }
    margins = CRect(read[0], read[1], read[2], read[3]);
    return 1;
}

}  // namespace pavane
