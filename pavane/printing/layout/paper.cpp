#include "pavane/printing/layout/paper.h"

#include "pavane/printing/layout/page_geometry.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace pavane
{

namespace
{

/// Hundredths of a millimetre: from a label to a plotter's sheet.
constexpr int shortestSide = 2000;
constexpr int longestSide = 200000;

/// Where Letter is sold as the usual paper.
constexpr std::string_view letterLands = "US CA MX BZ CL CO CR GT NI PA PH PR SV VE";

int isSame(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

int readSide(const CString& text, int& side)
{
    int length = 0;
    if (!readMillimetres(text, length) || length < shortestSide || length > longestSide)
        return 0;
    side = length;
    return 1;
}

}  // namespace

const std::vector<PaperSize>& knownPapers()
{
    static const std::vector<PaperSize> papers = {
        {"A0", 84100, 118900},    {"A1", 59400, 84100},     {"A2", 42000, 59400},
        {"A3", 29700, 42000},     {"A4", 21000, 29700},     {"A5", 14800, 21000},
        {"A6", 10500, 14800},     {"Letter", 21590, 27940}, {"Legal", 21590, 35560},
        {"Tabloid", 27940, 43180}};
    return papers;
}

int readPaper(const CString& text, PaperSize& paper, CString& error)
{
    for (const PaperSize& known : knownPapers())
        if (isSame(known.name, text)) {
            paper = known;
            return 1;
        }
    const std::size_t cross = text.find_first_of("xX");
    PaperSize own{text, 0, 0};
    if (cross == CString::npos || !readSide(text.substr(0, cross), own.width) ||
        !readSide(text.substr(cross + 1), own.height)) {
        error = "there is no paper '" + plainText(text) +
                "': A0 to A6, Letter, Legal, Tabloid, or WxH in millimetres, 20 to 2000 each";
        return 0;
    }
    paper = own;
    return 1;
}

CString paperOfLocale(const CString& locale)
{
    const std::size_t land = locale.find('_');
    if (land == CString::npos)
        return "A4";
    const std::size_t end = locale.find_first_of(".@", land);
    const CString name = locale.substr(land + 1, end == CString::npos ? end : end - land - 1);
    return name.size() == 2 && letterLands.find(name) != std::string_view::npos ? "Letter" : "A4";
}

CString localePaper()
{
    for (const char* const name : {"LC_ALL", "LC_PAPER", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value && *value)
            return paperOfLocale(value);
    }
    return paperOfLocale({});
}

CSize sheetOf(const PaperSize& paper, int landscape)
{
    return landscape ? CSize{paper.height, paper.width} : CSize{paper.width, paper.height};
}

}  // namespace pavane
