#include "apps/view/print_options.h"

#include "apps/view/options.h"
#include "pavane/printing/layout/APrnAddInfo.h"
#include "pavane/printing/layout/print_arguments.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <string_view>

namespace pavane
{

namespace
{

constexpr int leastDpi = 36;
constexpr int greatestDpi = 4800;
constexpr int mostCopies = 9999;
constexpr int mostInGrid = 20;

/// What only printing understands.
constexpr std::string_view printOnly[] = {"--pages",  "--paper",  "--landscape", "--margins",
                                          "--dpi",    "--copies", "--number",    "--caption",
                                          "--planes", "--grid"};

/// Puts the option in front of what is wrong with its value.
int blame(const char* name, std::string& error)
{
    error = std::string(name) + ": " + error;
    return 0;
}

int readNumber(const char* name, const std::string& text, int least, int greatest, int& number,
               std::string& error)
{
    int read = 0;
    if (stoval(text, read) && read >= least && read <= greatest) {
        number = read;
        return 1;
    }
    error = std::string(name) + " wants a number from " + std::to_string(least) + " to " +
            std::to_string(greatest) + ", not '" + text + "'";
    return 0;
}

int readFile(const std::string& text, ViewOptions& options, std::string&)
{
    options.print.settings.file = text;
    return 1;
}

int readPrinter(const std::string& text, ViewOptions& options, std::string&)
{
    options.print.settings.printer = text;
    return 1;
}

int readPageRange(const std::string& text, ViewOptions& options, std::string& error)
{
    return readPages(text, options.print.settings, error) || blame("--pages", error);
}

int readPaperOption(const std::string& text, ViewOptions& options, std::string& error)
{
    return readPaperName(text, options.print.settings, error) || blame("--paper", error);
}

int setLandscape(const std::string&, ViewOptions& options, std::string&)
{
    options.print.settings.landscape = 1;
    return 1;
}

int readMarginOption(const std::string& text, ViewOptions& options, std::string& error)
{
    return readMargins(text, options.print.margins, error) || blame("--margins", error);
}

int readDpi(const std::string& text, ViewOptions& options, std::string& error)
{
    return readNumber("--dpi", text, leastDpi, greatestDpi, options.print.settings.dpi, error);
}

int readCopies(const std::string& text, ViewOptions& options, std::string& error)
{
    return readNumber("--copies", text, 1, mostCopies, options.print.settings.copies, error);
}

int readFirstNumber(const std::string& text, ViewOptions& options, std::string& error)
{
    return readNumber("--number", text, 0, greatestFirstNumber, options.print.number, error);
}

int readCaption(const std::string& text, ViewOptions& options, std::string&)
{
    options.print.caption = text;
    options.print.hasCaption = 1;
    return 1;
}

int readPlanes(const std::string& text, ViewOptions& options, std::string& error)
{
    const std::string_view all = text;
    const std::size_t dash = all.find('-');
    int first = 0;
    int last = 0;
    if (!stoval(all.substr(0, dash), first) ||
        !stoval(dash == all.npos ? all : all.substr(dash + 1), last) || first < 0 || last < first) {
        error = "--planes wants FIRST-LAST, from 0, such as 0-11, not '" + text + "'";
        return 0;
    }
    options.print.firstPlane = first;
    options.print.lastPlane = last;
    return 1;
}

int readGrid(const std::string& text, ViewOptions& options, std::string& error)
{
    const std::string_view all = text;
    const std::size_t cross = all.find('x');
    int rows = 0;
    int columns = 0;
    const auto fits = [](int count) { return count >= 1 && count <= mostInGrid; };
    if (cross == all.npos || !stoval(all.substr(0, cross), rows) ||
        !stoval(all.substr(cross + 1), columns) || !fits(rows) || !fits(columns)) {
        error = "--grid wants ROWSxCOLUMNS, 1 to " + std::to_string(mostInGrid) +
                " each, such as 3x4, not '" + text + "'";
        return 0;
    }
    options.print.gridRows = rows;
    options.print.gridColumns = columns;
    return 1;
}

}  // namespace

void addPrintOptions(OptionTable<ViewOptions>& table, int traits)
{
    const auto add = [&](const OptionText& text, auto* apply, int mayBeEmpty = 0) {
        table.push_back({text, apply, traits, 0, mayBeEmpty});
    };
    add({"--print", "", "F.pdf",
         "print the map, the plot of a data file, or the --table that has no --tsv, on pages of a "
         "PDF file"},
        readFile);
    add({"--printer", "", "QUEUE", "print them on a printer, by the name of its queue"},
        readPrinter);
    add({"--pages", "", "A-B", "print these pages only: 2, 2-5 or 2-"}, readPageRange);
    add({"--paper", "", "NAME",
         "A0 to A6, Letter, Legal, Tabloid, or WxH in millimetres; without it what is usual where "
         "the locale is",
         "A0 A1 A2 A3 A4 A5 A6 Letter Legal Tabloid"},
        readPaperOption);
    add({"--landscape", "", "", "turn the paper"}, setLandscape);
    add({"--margins", "", "L,T,R,B", "left, top, right and bottom in millimetres (20,10,10,10)"},
        readMarginOption);
    add({"--dpi", "", "N", "dots per inch (600)"}, readDpi);
    add({"--copies", "", "N", "how many of them a printer makes; a file gets one"}, readCopies);
    add({"--number", "", "N",
         "number of the first page, 0 for none; without it several pages are numbered from 1"},
        readFirstNumber);
    add({"--caption", "", "TEXT",
         "text below the picture: %d is the page, ~C \"(Continued)\" from the second page on, ~U "
         "puts it above, ~L and ~R to a side; an empty one: none (object, frequency and date)"},
        readCaption, 1);
    add({"--planes", "", "A-B",
         "print these planes of a cube, from 0, beside each other with one range of colours; the "
         "table of areas is of all of them, --moment and --pv are made of them"},
        readPlanes);
    add({"--grid", "", "RxC", "rows and columns of planes on a page"}, readGrid);
}

int checkPrintOptions(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                      std::string& error)
{
    const PrintWish& print = options.print;
    // tables of areas and spectra have rows for each of the planes, maps are made of them
    const int ofTable = options.wantsTable(areaTable) || options.wantsTable(spectrumTableName) ||
                        options.made.takesPlanes();
    const auto only = std::find_if(given.options.begin(), given.options.end(), [&](const auto* o) {
        return std::count(std::begin(printOnly), std::end(printOnly), o->name) != 0 &&
               !(ofTable && o->name == std::string_view("--planes"));
    });
    if (print.lastPlane - print.firstPlane >= mostPrintedPlanes && !ofTable)
        error = "--planes prints " + std::to_string(mostPrintedPlanes) + " planes at most";
    else if (!print.wanted() && only != given.options.end())
        error = std::string((*only)->name) + " goes with --print or --printer";
    else if (!print.settings.file.empty() && !print.settings.printer.empty())
        error = "--print makes a file, --printer prints: one of them at a time";
    else if (print.gridRows && !print.hasPlanes())
        error = "--grid goes with the --planes that it is for";
    else if (print.hasPlanes() && options.plane >= 0)
        error = "--plane is one, --planes are several: one of the two";
    else if (print.hasPlanes() && options.wantsPrintedTable() &&
             options.tables.back().table != areaTable &&
             options.tables.back().table != spectrumTableName)
        error = "--planes prints pictures, --table without --tsv a table: one at a time";
    return error.empty();
}

}  // namespace pavane
