#pragma once

#include "apps/options/option_table.h"
#include "pavane/printing/layout/page_geometry.h"
#include "platform/print_settings.h"

#include <string>

namespace pavane
{

struct ViewOptions;

/// What the command line says of printing without a window.
struct PrintWish {
    CPrintSettings settings;  ///< a file or a queue; neither: nothing is printed
    CRect margins = standardMargins;
    int number = -1;  ///< of the first page, 0 for no numbers; -1: as the pages need it
    int hasCaption = 0;
    std::string caption;
    int firstPlane = -1, lastPlane = -1;  ///< of a cube, from 0; -1: none were chosen
    int gridRows = 0, gridColumns = 0;    ///< pictures on a page; 0: as many as there are planes

    int wanted() const { return !settings.file.empty() || !settings.printer.empty(); }
    int hasPlanes() const { return firstPlane >= 0; }
};

/// Planes that one command prints at most.
inline constexpr int mostPrintedPlanes = 10000;

/// The options of printing, all of which have `traits`, behind those that stand in the table.
void addPrintOptions(OptionTable<ViewOptions>& table, int traits);
/// Whether those that were given go together; else `error` is one line.
int checkPrintOptions(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                      std::string& error);

}  // namespace pavane
