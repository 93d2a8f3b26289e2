#pragma once

#include "pavane/tables/components/AComponents.h"
#include "pavane/tables/grid/table_text.h"
#include "platform/api.h"

#include <functional>
#include <string>
#include <string_view>

namespace pavane
{

/// Columns of the table of components; the header column has their numbers.
enum ComponentColumn : int {
    componentKindColumn = 1,
    componentFluxColumn,
    componentLargeAxisColumn,
    componentAxisRatioColumn,
    componentInclinationColumn,
    componentAngleColumn,
    componentDistanceColumn,
    componentWidthColumn
};
inline constexpr int componentColumns = 8;
/// The kinds that have a name, from 1.
inline constexpr int componentKinds = 7;

/// Heading of a column with its unit; of column 0 too. "" for no column.
PAVANE_API const char* componentTitle(int column);
/// "Gaussian" and the like; the number of a kind that is none of them.
PAVANE_API std::string componentKindName(int kind);
/// What a column says of a component; numbers so that they read back as they are.
PAVANE_API std::string componentText(const ACompItem& item, int column);
/// A number with as many of its digits as `fits` says that there is room for: a text that is cut at
/// its end would hide an exponent. A text that fits, or is no number, stays; so does one of which
/// not even one digit fits.
PAVANE_API std::string roomyNumber(const std::string& text,
                                   const std::function<int(const std::string&)>& fits);
/// Reads a text in place of a shown one: names of kinds in any case, or numbers. 0 when the
/// component cannot have it: it stays, and `message` says why in words for the user.
PAVANE_API int setComponentText(ACompItem& item, int column, std::string_view text,
                                std::string& message);

/// Writes the list as the window of its table does: the header line, then a line for each.
PAVANE_API int writeComponentTsv(const AComponents& model, TextSink& sink);
/// The same as one text.
PAVANE_API std::string componentTsv(const AComponents& model);

}  // namespace pavane
