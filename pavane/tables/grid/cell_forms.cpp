#include "pavane/tables/grid/cell_forms.h"

#include "tessel/plain_text.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace pavane
{

namespace
{

// Texts keep their blanks, tabs and line ends: `pre` for who draws the table, references for who
// reads it, since line ends that stand as they are would become line feeds.
constexpr std::string_view htmlHead =
    "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/></head>"
    "<body><table style=\"white-space:pre\">\n";
constexpr std::string_view htmlTail = "</table></body></html>\n";

void putQuoted(CString& to, std::string_view text)
{
    to += '"';
    for (std::size_t at = 0;;) {
        const std::size_t quote = text.find('"', at);
        to.append(text, at, quote - at);
        if (quote == std::string_view::npos)
            break;
        to += "\"\"";
        at = quote + 1;
    }
    to += '"';
}

void putBlockField(CString& to, std::string_view text)
{
    if (text.find_first_of("\t\r\n") != std::string_view::npos || text.substr(0, 1) == "\"")
        putQuoted(to, text);
    else
        to += text;
}

/// `alone`: the only field of its line, which must not look like no line at all.
void putCsvField(CString& to, std::string_view text, bool alone)
{
    if (text.find_first_of(",\"\r\n") != std::string_view::npos || (alone && text.empty()))
        putQuoted(to, text);
    else
        to += text;
}

void putHtmlText(CString& to, std::string_view text)
{
    for (const char c : text)
        switch (c) {
        case '&':
            to += "&amp;";
            break;
        case '<':
            to += "&lt;";
            break;
        case '>':
            to += "&gt;";
            break;
        case '"':
            to += "&quot;";
            break;
        case '\t':
            to += "&#9;";
            break;
        case '\n':
            to += "&#10;";
            break;
        case '\r':
            to += "&#13;";
            break;
        case '\0':
            to += "\xEF\xBF\xBD";
            break;
        default:
            to += c;
        }
}

class FormWriter
{
public:
    FormWriter(CellForms& forms, std::size_t most) : forms_(forms), most_(most)
    {
        forms = {};
        forms.html = htmlHead;
    }
    void beginLine()
    {
        place_ = 0;
        places_ = 0;
        if (html_)
            forms_.html += "<tr>";
    }
    /// `alone`: the only field of the line in csv.
    void put(std::string_view text, bool header, bool alone)
    {
        if (!header) {
            if (places_++)
                forms_.block += '\t';
            putBlockField(forms_.block, text);
        }
        if (!csv_)
            return;
        const bool plain =
            std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
        const CString mended = plain ? CString() : validText(text);
        const std::string_view valid = plain ? text : std::string_view(mended);
        if (place_++)
            forms_.csv += ',';
        putCsvField(forms_.csv, valid, alone);
        if (!html_)
            return;
        forms_.html += header ? "<th>" : "<td>";
        putHtmlText(forms_.html, valid);
        forms_.html += header ? "</th>" : "</td>";
    }
    void endLine(bool headerLine)
    {
        if (!headerLine)
            forms_.block += '\n';
        if (csv_)
            forms_.csv += "\r\n";
        if (html_)
            forms_.html += "</tr>\n";
    }
    /// 0 when not even the block fits.
    int fit()
    {
        const auto size = [&] {
            return forms_.block.size() + forms_.csv.size() + forms_.html.size();
        };
        if (html_ && size() > most_)
            html_ = false, CString().swap(forms_.html);
        if (csv_ && size() > most_)
            csv_ = false, CString().swap(forms_.csv);
        return size() <= most_;
    }
    void end()
    {
        if (html_)
            forms_.html += htmlTail;
    }

private:
    CellForms& forms_;
    std::size_t most_;
    bool csv_ = true;
    bool html_ = true;
    int place_ = 0;   ///< fields so far in this line of csv
    int places_ = 0;  ///< and of the block
};

CellsWritten putLine(TableTexts& table, int row, const CellRange& cells, int headers,
                     FormWriter& writer, CString& text)
{
    const int lastColumn = std::min(cells.lastColumn, table.extent().lastColumn);
    const bool alone = !headers && lastColumn <= cells.firstColumn;
    const auto put = [&](int column) {
        if (!table.text({row, column}, text))
            return CellsWritten::stopped;
        writer.put(text, row == 0 || column == 0, alone || lastColumn < cells.firstColumn);
        return writer.fit() ? CellsWritten::whole : CellsWritten::tooLarge;
    };
    writer.beginLine();
    CellsWritten written = headers ? put(0) : CellsWritten::whole;
    for (int column = cells.firstColumn; column <= lastColumn && written == CellsWritten::whole;
         ++column)
        written = put(column);
    writer.endLine(row == 0);
    return written;
}

}  // namespace

CellsWritten writeCellForms(TableTexts& table, const CellRange& cells, int headers,
                            std::size_t most, CellForms& forms)
{
    FormWriter writer(forms, most);
    CString text;  // one for all cells
    CellsWritten written = CellsWritten::whole;
    if (headers)
        written = putLine(table, 0, cells, 1, writer, text);
    for (std::int64_t row = cells.firstRow;
         written == CellsWritten::whole && row <= std::min(cells.lastRow, table.extent().rows);
         ++row)
        written = putLine(table, static_cast<int>(row), cells, headers, writer, text);
    writer.end();
    return written;
}

}  // namespace pavane
